// The name of the elements or attributes of a document.
#pragma once

#include <cstddef>
#include <utility>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/document/SharedName.h"
#include "ovxmllib/foundation/KeptNames.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class CXmlDocument;

/// The name of an element or attribute (Namespaces in XML 1.0, section 2.1). Within one document equal names are one
/// object, and equal namespaces one string.
struct OVXMLLIB_API ExpandedName {
  /// `kept` is what LookForKeptName finds for the namespace.
  ExpandedName(const CXmlDocument& document_, const WString& ns, const std::size_t* kept, WString name)
      : document(&document_), namespaceURI(&ns), localName(std::move(name)), keptNamespace(PlaceOf(kept)) {}

  /// Whether it is this name, and of the namespace unless that is not to count. What is kept is equal when it is kept
  /// at one place.
  bool Is(const PreparedName& name, bool inAnyNamespace) const noexcept {
    if (keptLocalName == name.GetKeptLocalName() && keptNamespace == name.GetKeptNamespace()) return true;
    return !(IsKept() && name.IsKept() && !inAnyNamespace) && HasTextsOf(name, inAnyNamespace);
  }

  const CXmlDocument* document;  ///< never null; not owned
  const WString* namespaceURI;   ///< never null; not owned
  WString localName;
  SharedNameSlot shared;  ///< for objects that outlive the document
  /// What LookForKeptName finds, which metadata compare with, or a place where nothing is kept.
  const std::size_t* keptNamespace;
  const std::size_t* keptLocalName = PlaceOf(LookForKeptName(localName));

  static const std::size_t* PlaceOf(const std::size_t* kept) noexcept { return kept != nullptr ? kept : &kNotKept; }

 private:
  bool IsKept() const noexcept { return keptNamespace != &kNotKept && keptLocalName != &kNotKept; }
  bool HasTextsOf(const PreparedName& name, bool inAnyNamespace) const noexcept;

  static const std::size_t kNotKept;
};

}  // namespace OvXmlLib16
