#include "ovxmllib/collections/NamespaceRule.h"

#include <atomic>
#include <cstdint>

#include "ovxmllib/values/NamespaceList.h"

namespace OvXmlLib16 {

namespace {

constexpr WStringView kAny = u"##any";

}  // namespace

class NamespaceRule::Record {
 public:
  Record(WStringView ruleRestriction, WStringView ruleTarget)
      : restriction(ruleRestriction), target(ruleTarget), content(MakeContent()) {}

  void AddRef() const noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }
  void Release() const noexcept {
    if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }

  const WString restriction;
  const WString target;
  const CSmartPtr<const Record> content;  // null: this one, or nothing at all when there is no target

 private:
  const Record* MakeContent() const {
    return restriction == kAny || target.empty() ? nullptr : new Record(kAny, target);
  }

  mutable std::atomic<std::int64_t> m_references = 0;
};

NamespaceRule::NamespaceRule() noexcept = default;
NamespaceRule::NamespaceRule(WStringView restriction, WStringView target)
    : m_record(restriction == kAny && target.empty() ? nullptr : new Record(restriction, target)) {}
NamespaceRule::NamespaceRule(const Record* record) : m_record(record) {}
NamespaceRule::NamespaceRule(const NamespaceRule&) = default;
NamespaceRule& NamespaceRule::operator=(const NamespaceRule&) = default;
NamespaceRule::~NamespaceRule() = default;

WStringView NamespaceRule::GetRestriction() const noexcept {
  return m_record == nullptr ? kAny : WStringView(m_record->restriction);
}

WStringView NamespaceRule::GetTarget() const noexcept {
  return m_record == nullptr ? WStringView() : WStringView(m_record->target);
}

bool NamespaceRule::DoesRecordAllow(WStringView ns) const {
  return IsNamespaceInList(ns, m_record->restriction, m_record->target);
}

void NamespaceRule::Test(WStringView ns) const {
  if (!Allows(ns)) TestNamespace(ns, GetRestriction(), GetTarget());
}

NamespaceRule NamespaceRule::ForContent() const {
  if (m_record == nullptr || m_record->target.empty()) return {};
  return m_record->restriction == kAny ? *this : NamespaceRule(m_record->content);
}

}  // namespace OvXmlLib16
