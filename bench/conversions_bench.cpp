// Values of the primitive types from text and to text, as ratios to std::from_chars and std::to_chars on the same
// digits. The library's way is that of a document: the whitespace rule, a view in UTF-16, a buffer used again.

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <memory>
#include <string>
#include <vector>

#include "bench/Comparison.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/values/PrimitiveText.h"

namespace {

using namespace OvXmlLib16;

using Texts = std::vector<std::string>;

std::size_t BytesOf(const Texts& texts) {
  std::size_t bytes = 0;
  for (const std::string& text : texts) bytes += text.size();
  return bytes;
}

template <ItemType kType>
bench::Work Reading(const Texts& texts) {
  std::vector<WString> wide;
  for (const std::string& text : texts) wide.push_back(ToWide(text));
  return [wide] {
    WString scratch;
    for (const WString& text : wide) {
      const WStringView collapsed =
          CWhitespaceUtils::ApplyRule(CWhitespaceUtils::WhitespaceRule_Collapse, text, scratch);
      benchmark::DoNotOptimize(ParsePrimitive<kType>(collapsed));
    }
  };
}

template <ItemType kType>
bench::Work Printing(const Texts& texts) {
  std::vector<typename Primitive<kType>::Value> values;
  for (const std::string& text : texts) values.push_back(ParsePrimitive<kType>(ToWide(text)));
  return [values, out = std::make_shared<WString>()] {
    for (const auto& value : values) {
      out->clear();
      AppendPrimitive<kType>(value, *out);
      benchmark::DoNotOptimize(out->data());
    }
  };
}

template <class T>
bench::Work ReadingStd(const Texts& texts) {
  return [texts] {
    for (const std::string& text : texts) {
      T value = 0;
      std::from_chars(text.data(), text.data() + text.size(), value);
      benchmark::DoNotOptimize(value);
    }
  };
}

template <class T>
bench::Work PrintingStd(const Texts& texts) {
  std::vector<T> values(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    std::from_chars(texts[i].data(), texts[i].data() + texts[i].size(), values[i]);
  }
  return [values] {
    for (const T value : values) {
      std::array<char, 32> out;
      benchmark::DoNotOptimize(std::to_chars(out.data(), out.data() + out.size(), value).ptr);
    }
  };
}

template <ItemType kType, class T>
void AddNumbers(const std::string& name, const Texts& texts) {
  const std::size_t bytes = BytesOf(texts);
  bench::AddComparison("read " + name, bytes, ReadingStd<T>(texts), "Primitive", Reading<kType>(texts));
  bench::AddComparison("print " + name, bytes, PrintingStd<T>(texts), "Primitive", Printing<kType>(texts));
}

// The numbers in a dateTime one by one, which is the least that reading it by the standard library takes.
void AddDateTimes(const Texts& texts) {
  static constexpr std::array<std::size_t, 6> kStarts = {0, 5, 8, 11, 14, 17};
  const auto read = [texts] {
    for (const std::string& text : texts) {
      for (const std::size_t start : kStarts) {
        int number = 0;
        std::from_chars(text.data() + start, text.data() + text.size(), number);
        benchmark::DoNotOptimize(number);
      }
    }
  };
  const auto print = [count = texts.size()] {
    for (std::size_t i = 0; i < count; ++i) {
      std::array<char, 32> out;
      char* end = out.data();
      for (const int number : {2026, 11, 22, 12, 34, 56}) end = std::to_chars(end, out.data() + out.size(), number).ptr;
      benchmark::DoNotOptimize(end);
    }
  };
  bench::AddComparison("read dateTime", BytesOf(texts), read, "Primitive", Reading<ItemType_datetime>(texts));
  bench::AddComparison("print dateTime", BytesOf(texts), print, "Primitive", Printing<ItemType_datetime>(texts));
}

}  // namespace

int main(int argc, char** argv) {
  AddNumbers<ItemType_i4, int>("i4", {"7", "-42", "1500", "20261122", "-2147483648", "99"});
  AddNumbers<ItemType_r8, double>("r8", {"12.5", "1999.99", "-0.05", "123456.789", "0.000125", "42", "6.02214076e23"});
  AddNumbers<ItemType_decimal, double>("decimal",
                                       {"12.5", "1999.99", "-0.05", "123456.789", "0.000125", "42", "98765432.1"});
  AddNumbers<ItemType_integer, long long>("integer", {"7", "-42", "1500", "20261122", "123456789012345678", "99"});
  AddDateTimes({"2026-11-22T12:34:56", "2026-01-02T03:04:05Z", "1999-12-31T23:59:59.5+01:00"});
  return bench::RunComparisons(argc, argv);
}
