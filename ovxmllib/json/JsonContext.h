// The options of JSON.
#pragma once

#include <cstdint>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// How much of a document its JSON form keeps, by the names of its members. A child element is a member with its name,
/// an element that repeats a member with an array. What else there is:
///
///     mode                  attribute x    text beside other members    namespaces and derived types
///     RoundTripNone         "x"            "" (not readable)            not written
///     RoundTripAttributes   "@x"           "#text"                      not written
///     RoundTripFull         "@p:x"         "#text"                      "@xmlns", "@xmlns:p", "@xsi:type", "p:name"
///
/// JSON is read in the mode in which it was written. Where namespaces are not written, reading ignores them.
enum JsonRoundTrip : std::int32_t {
  RoundTripNone = 0,        ///< short and plain; attributes cannot be told from elements
  RoundTripAttributes = 1,  ///< attributes and text come back, namespaces do not
  RoundTripFull = 2,        ///< everything comes back
};

/// How JSON is written and read: part of a CSerializationContext, which owns it and hands it out by GetJsonContext.
/// Change it before it is used; then any number of threads may use it.
class OVXMLLIB_API CJsonContext {
 public:
  CJsonContext() = default;
  CJsonContext(const CJsonContext&) = default;
  CJsonContext& operator=(const CJsonContext&) = default;
  virtual ~CJsonContext() = default;

  /// What the JSON form keeps. Default RoundTripFull.
  JsonRoundTrip GetSupportRoundtrip() const noexcept { return m_supportRoundtrip; }
  void SetSupportRoundtrip(JsonRoundTrip mode) noexcept { m_supportRoundtrip = mode; }

  /// The name of the element that a text is the content of, for JSON that does not name its root; empty for none, which
  /// is the default. Reading takes the text as if `{ "name":` stood ahead of it and `}` behind. Writing passes it by.
  WString GetRootElementName() const { return m_strRootElementName; }
  void SetRootElementName(const WChar* name) { m_strRootElementName = ViewOf(name); }

  /// Whether comments, from `/*` to `*/` and from `//` to the end of the line, are passed over in reading. Otherwise
  /// they are errors. Default true.
  bool GetAllowComments() const noexcept { return m_bAllowComments; }
  /// Deliberate: the setter has the getter's name.
  void GetAllowComments(bool allow) noexcept { m_bAllowComments = allow; }

 private:
  JsonRoundTrip m_supportRoundtrip = RoundTripFull;
  WString m_strRootElementName;
  bool m_bAllowComments = true;
};

}  // namespace OvXmlLib16
