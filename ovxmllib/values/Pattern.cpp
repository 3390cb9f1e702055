#include "ovxmllib/values/Pattern.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <list>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <unordered_map>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/values/PatternTranslator.h"

namespace OvXmlLib16 {

namespace {

template <auto kFree>
struct FreeBy {
  template <class T>
  void operator()(T* pointer) const noexcept {
    kFree(pointer);
  }
};
using Code = std::unique_ptr<pcre2_code, FreeBy<pcre2_code_free>>;
using CompileContext = std::unique_ptr<pcre2_compile_context, FreeBy<pcre2_compile_context_free>>;
using MatchContext = std::unique_ptr<pcre2_match_context, FreeBy<pcre2_match_context_free>>;
using MatchData = std::unique_ptr<pcre2_match_data, FreeBy<pcre2_match_data_free>>;
using JitStack = std::unique_ptr<pcre2_jit_stack, FreeBy<pcre2_jit_stack_free>>;

template <class T>
T* Allocated(T* pointer) {
  if (pointer == nullptr) throw std::bad_alloc();
  return pointer;
}

PCRE2_SPTR BytesOf(std::string_view text) noexcept { return reinterpret_cast<PCRE2_SPTR>(text.data()); }

// The memory of a text, for hashing and comparing.
std::string_view MemoryOf(std::string_view text) noexcept { return text; }
std::string_view MemoryOf(WStringView text) noexcept {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(WChar)};
}

std::string ReasonOf(int error) {
  std::array<PCRE2_UCHAR, 256> text{};
  pcre2_get_error_message(error, text.data(), text.size());
  return reinterpret_cast<const char*>(text.data());
}

// UTF-8 of a value, for as long as the object lives; on the stack where it is of usual length.
class Utf8Text {
 public:
  explicit Utf8Text(WStringView text) {
    unsigned char* out = m_short.data();
    if (text.size() > kShortUnits) {
      m_long = std::make_unique_for_overwrite<unsigned char[]>(text.size() * unicode::kMaxUtf8PerUnit);
      out = m_long.get();
    }
    const unicode::Progress done = unicode::WideToUtf8(text, out);
    if (done.read != text.size()) unicode::ThrowUnwritable(text, done.read);
    m_view = {reinterpret_cast<const char*>(out), done.written};
  }
  Utf8Text(const Utf8Text&) = delete;
  Utf8Text& operator=(const Utf8Text&) = delete;

  std::string_view View() const noexcept { return m_view; }

 private:
  static constexpr std::size_t kShortUnits = 256;

  std::array<unsigned char, kShortUnits * unicode::kMaxUtf8PerUnit> m_short;  // not initialised
  std::unique_ptr<unsigned char[]> m_long;
  std::string_view m_view;
};

// Never changes, so that threads share it.
class CompiledPattern {
 public:
  explicit CompiledPattern(std::string_view pattern)
      : m_pattern(pattern), m_wide(ToWide(pattern)), m_code(Compile(pattern)) {
    // Without machine code, as where the system forbids making any, the pattern is interpreted.
    m_hasJit = pcre2_jit_compile(m_code.get(), PCRE2_JIT_COMPLETE) == 0;
  }

  const std::string& Pattern() const noexcept { return m_pattern; }
  bool Is(std::string_view pattern) const noexcept { return m_pattern == pattern; }
  bool Is(WStringView pattern) const noexcept { return AreSame(m_wide, pattern); }
  const pcre2_code* GetCode() const noexcept { return m_code.get(); }
  bool HasJit() const noexcept { return m_hasJit; }
  std::size_t Bytes() const noexcept {
    return sizeof *this + 3 * m_pattern.size() + Size(PCRE2_INFO_SIZE) + Size(PCRE2_INFO_JITSIZE);
  }

 private:
  static Code Compile(std::string_view pattern) {
    // In this form the end of the match needs no look: other than $ it does not stand before a last line feed, and a
    // branch that stops short of it is backtracked into.
    const std::string translated = "(?:" + TranslatePattern(pattern) + ")\\z";
    const CompileContext context(Allocated(pcre2_compile_context_create(nullptr)));
    pcre2_set_parens_nest_limit(context.get(), 2 * kMaxPatternNesting + 3);
    int error = 0;
    PCRE2_SIZE place = 0;
    Code code(pcre2_compile(BytesOf(translated), translated.size(),
                            PCRE2_UTF | PCRE2_ANCHORED | PCRE2_NEVER_UCP | PCRE2_NEVER_BACKSLASH_C, &error, &place,
                            context.get()));
    if (code == nullptr) ThrowNotCompiled(pattern, error);
    return code;
  }

  [[noreturn]] static void ThrowNotCompiled(std::string_view pattern, int error) {
    if (error == PCRE2_ERROR_HEAP_FAILED) throw std::bad_alloc();
    ThrowInvalidPattern(pattern, ReasonOf(error));
  }

  std::size_t Size(std::uint32_t what) const noexcept {
    std::size_t size = 0;
    pcre2_pattern_info(m_code.get(), what, &size);
    return size;
  }

  std::string m_pattern;
  WString m_wide;
  Code m_code;
  bool m_hasJit = false;
};

// What the larger stack of a match begins with; it grows up to kMaxPatternMemory.
constexpr std::size_t kFirstJitStack = 1'048'576;

using SharedPattern = std::shared_ptr<const CompiledPattern>;

// The patterns of the process. Never destroyed: values may be checked while static objects are.
class PatternCache {
 public:
  static PatternCache& Instance() {
    static PatternCache& instance = *new PatternCache;
    return instance;
  }

  SharedPattern Get(std::string_view pattern) {
    if (SharedPattern known = Find(pattern)) return known;
    // Compiled without the lock. Where two threads do so at once, one of the results is as good as the other.
    return Keep(std::make_shared<const CompiledPattern>(pattern));
  }

 private:
  SharedPattern Find(std::string_view pattern) {
    const std::lock_guard guard(m_lock);
    const auto found = m_byPattern.find(pattern);
    if (found == m_byPattern.end()) return nullptr;
    m_lastUsed.splice(m_lastUsed.begin(), m_lastUsed, found->second);
    return m_lastUsed.front();
  }

  SharedPattern Keep(SharedPattern pattern) {
    const std::lock_guard guard(m_lock);
    if (m_byPattern.contains(pattern->Pattern())) return pattern;
    m_lastUsed.push_front(pattern);
    try {
      m_byPattern.emplace(pattern->Pattern(), m_lastUsed.begin());
    } catch (...) {
      m_lastUsed.pop_front();
      throw;
    }
    m_bytes += pattern->Bytes();
    while (m_lastUsed.size() > kMaxCachedPatterns || m_bytes > kMaxCachedPatternBytes) DropOldest();
    return pattern;
  }

  void DropOldest() {
    m_bytes -= m_lastUsed.back()->Bytes();
    m_byPattern.erase(m_lastUsed.back()->Pattern());
    m_lastUsed.pop_back();
  }

  using Patterns = std::list<SharedPattern>;

  std::mutex m_lock;
  Patterns m_lastUsed;                                                   // the last used first
  std::unordered_map<std::string_view, Patterns::iterator> m_byPattern;  // keys stand in the patterns
  std::size_t m_bytes = 0;
};

// What one thread keeps between matches, so that a repeated one takes no lock and no memory.
class Matcher {
 public:
  Matcher()
      : m_context(Allocated(pcre2_match_context_create(nullptr))),
        m_data(Allocated(pcre2_match_data_create(1, nullptr))) {
    pcre2_set_heap_limit(m_context.get(), kMaxPatternMemory / 1'024);
    pcre2_set_depth_limit(m_context.get(), kMaxPatternSteps);
    SetSteps(kMaxPatternSteps);
  }

  // Takes the pattern as UTF-8 or UTF-16.
  template <class View>
  bool Matches(View pattern, std::string_view value) {
    const CompiledPattern& compiled = Get(pattern);
    SetSteps(StepsFor(value.size()));
    const int result = compiled.HasJit() ? RunJit(compiled, value) : Interpret(compiled, value);
    if (result >= 0) return true;
    if (result == PCRE2_ERROR_NOMATCH) return false;
    ThrowStopped(compiled.Pattern(), result);
  }

 private:
  template <class View>
  const CompiledPattern& Get(View pattern) {
    SharedPattern& known = m_patterns[SlotOf(MemoryOf(pattern))];
    if (known == nullptr || !known->Is(pattern)) known = Share(pattern);
    return *known;
  }

  static SharedPattern Share(std::string_view pattern) { return PatternCache::Instance().Get(pattern); }
  static SharedPattern Share(WStringView pattern) { return Share(ToUtf8(pattern)); }

  // Patterns of one schema often begin alike or end alike, seldom both with the same length.
  static std::size_t SlotOf(std::string_view pattern) noexcept {
    std::uint64_t first = 0, last = 0;
    if (pattern.size() >= sizeof first) {
      std::memcpy(&first, pattern.data(), sizeof first);
      std::memcpy(&last, pattern.data() + pattern.size() - sizeof last, sizeof last);
    } else {
      for (const char c : pattern) first = first << 8 | static_cast<unsigned char>(c);
    }
    const std::uint64_t mixed = ((first ^ pattern.size()) * 3 + last) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(mixed >> 32) % kPatternsPerThread;
  }

  static std::uint32_t StepsFor(std::size_t bytes) noexcept {
    if (bytes <= kMaxPatternWork / kMaxPatternSteps) return kMaxPatternSteps;
    return static_cast<std::uint32_t>(kMaxPatternWork / bytes);
  }

  void SetSteps(std::uint32_t steps) noexcept {
    if (steps == m_steps) return;
    m_steps = steps;
    pcre2_set_match_limit(m_context.get(), steps);
  }

  int RunJit(const CompiledPattern& compiled, std::string_view value) {
    const int result = JitMatch(compiled, value);
    if (result != PCRE2_ERROR_JIT_STACKLIMIT) return result;
    // The 32 KiB of machine stack that machine code makes do with by itself are not enough.
    const JitStack stack(Allocated(pcre2_jit_stack_create(kFirstJitStack, kMaxPatternMemory, nullptr)));
    pcre2_jit_stack_assign(m_context.get(), nullptr, stack.get());
    const int again = JitMatch(compiled, value);
    pcre2_jit_stack_assign(m_context.get(), nullptr, nullptr);
    return again;
  }

  int JitMatch(const CompiledPattern& compiled, std::string_view value) noexcept {
    return pcre2_jit_match(compiled.GetCode(), BytesOf(value), value.size(), 0, 0, m_data.get(), m_context.get());
  }

  // The interpreter leaves its memory with the match data, which therefore is not kept.
  int Interpret(const CompiledPattern& compiled, std::string_view value) {
    const MatchData data(Allocated(pcre2_match_data_create(1, nullptr)));
    return pcre2_match(compiled.GetCode(), BytesOf(value), value.size(), 0, PCRE2_NO_UTF_CHECK, data.get(),
                       m_context.get());
  }

  [[noreturn]] static void ThrowStopped(std::string_view pattern, int result) {
    if (result == PCRE2_ERROR_NOMEMORY) throw std::bad_alloc();
    throw COvException(
        FormatString(u"The check of a value against the regular expression %s was given up, as it takes too long or "
                     u"too much memory. ('%s')",
                     pattern, ReasonOf(result)));
  }

  MatchContext m_context;
  MatchData m_data;
  std::uint32_t m_steps = 0;
  std::array<SharedPattern, kPatternsPerThread> m_patterns;
};

// A thread's matcher is made at its first match and goes with the thread. What is checked later still, by destructors
// of other thread-local objects, makes do without.
constinit thread_local Matcher* t_matcher = nullptr;
constinit thread_local bool t_isOver = false;

struct MatcherOwner {
  MatcherOwner() : matcher(std::make_unique<Matcher>()) { t_matcher = matcher.get(); }
  ~MatcherOwner() {
    t_matcher = nullptr;
    t_isOver = true;
  }
  MatcherOwner(const MatcherOwner&) = delete;
  MatcherOwner& operator=(const MatcherOwner&) = delete;

  std::unique_ptr<Matcher> matcher;
};

[[gnu::noinline]] Matcher& MakeMatcher() {
  thread_local const MatcherOwner owner;
  return *owner.matcher;
}

template <class View>
bool Match(View pattern, WStringView value) {
  const Utf8Text text(value);
  if (t_matcher != nullptr) return t_matcher->Matches(pattern, text.View());
  return t_isOver ? Matcher().Matches(pattern, text.View()) : MakeMatcher().Matches(pattern, text.View());
}

}  // namespace

bool MatchesPattern(std::string_view utf8Pattern, WStringView value) { return Match(utf8Pattern, value); }

bool MatchesPattern(WStringView pattern, WStringView value) { return Match(pattern, value); }

}  // namespace OvXmlLib16
