// The namespace constraint of a wildcard, shared by all that is under it.
#pragma once

#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// A namespace list in the form of the schema's `namespace` attribute (XML Schema Part 1, section 3.10.2) and the
/// target namespace that it is evaluated against. A value that never changes; copies share what it holds, and the one
/// that allows everything, which nearly all are, holds nothing.
class NamespaceRule {
 public:
  /// "##any", without a target namespace.
  NamespaceRule() noexcept;
  NamespaceRule(WStringView restriction, WStringView target);
  NamespaceRule(const NamespaceRule&);
  NamespaceRule& operator=(const NamespaceRule&);
  ~NamespaceRule();

  WStringView GetRestriction() const noexcept;
  WStringView GetTarget() const noexcept;

  bool IsDefault() const noexcept { return m_record == nullptr; }
  bool Allows(WStringView ns) const { return m_record == nullptr || DoesRecordAllow(ns); }
  /// Throws COvInvalidNamespaceException when the rule does not allow `ns`.
  void Test(WStringView ns) const;

  /// What holds for the content of an element that is under this rule: everything is allowed, the target stays.
  NamespaceRule ForContent() const;

 private:
  class Record;

  explicit NamespaceRule(const Record* record);
  bool DoesRecordAllow(WStringView ns) const;

  CSmartPtr<const Record> m_record;  // null: "##any", no target
};

}  // namespace OvXmlLib16
