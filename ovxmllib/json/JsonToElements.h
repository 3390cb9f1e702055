// The convention by which JSON stands for elements: from the events of a text to the calls that write elements.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ovxmllib/json/JsonContext.h"

namespace OvXmlLib16 {

/// Takes the events of JsonParser and calls an output: StartDocument, StartElement(name), WriteAttribute(name, value),
/// WriteText(value), EndElement. Names have their prefixes. The output is also told of what has no meaning, by
/// functions that do not return: FailEmptyName, FailNamelessArray, FailAttributeArray(name), FailOutside(value,
/// isAttribute). Its type StoredName is what names are kept in: a string, or a view where names last as long as the
/// document.
///
///     member                   becomes
///     "a": "x"                 element a with text x; numbers and words likewise
///     "a": null, "a": {}       empty element a
///     "a": { "b": 1 }          element a with child b
///     "a": [ 1, {} ]           an element a for each item
///     "@x": "1"                attribute x, unless the mode is RoundTripNone
///     "#text": "t"             text of the element around, which it ends; not in RoundTripNone either
///
/// The object at the top of a document is no element: its members are.
template <class Unit, class Output>
class JsonToElements {
 public:
  using View = std::basic_string_view<Unit>;

  /// The output is not owned.
  JsonToElements(Output& output, JsonRoundTrip mode) : m_output(output), m_hasAttributes(mode != RoundTripNone) {}

  void StartDocument() {
    m_open = 0;
    m_arrays.clear();
    m_output.StartDocument();
  }
  void EndDocument() {}

  void Name(View name) {
    if (name.empty()) m_output.FailEmptyName();
    if (m_hasAttributes && name.front() == '@') {
      m_isAttribute = true;
      m_name = StoredName(name.substr(1));
    } else if (m_hasAttributes && IsTextName(name)) {
      m_isText = true;
      m_isAttribute = false;
    } else {
      OpenElement(name);
    }
  }

  void String(View value) {
    FindItemElement();
    if (m_open == 0) m_output.FailOutside(value, m_isAttribute);
    m_isAttribute ? m_output.WriteAttribute(m_name, value) : m_output.WriteText(value);
    EndValue();
  }
  void Number(View value) { String(value); }
  void Bool(bool value) {
    constexpr Unit kTrue[] = {'t', 'r', 'u', 'e'}, kFalse[] = {'f', 'a', 'l', 's', 'e'};
    String(value ? View(kTrue, 4) : View(kFalse, 5));
  }
  void Null() {
    FindItemElement();
    EndValue();
  }

  void StartObject() {
    if (m_name.empty() && !m_arrays.empty()) OpenItem();
  }
  void EndObject() {
    if (!m_isText) {
      m_isAttribute = false;
      EndValue();
    }
    m_isText = false;
  }

  // The first item is the element that the name has opened; the others open their own.
  void StartArray() {
    if (m_name.empty()) m_output.FailNamelessArray();
    // Decided: see docs/decisions.md.
    if (m_isAttribute) m_output.FailAttributeArray(m_name);
    m_arrays.push_back(m_name);
  }
  void EndArray() {
    assert(!m_arrays.empty() && "m_arrayStack.size() > 0");
    m_arrays.pop_back();
  }

 private:
  using StoredName = typename Output::StoredName;

  static bool IsTextName(View name) noexcept {
    constexpr std::string_view kText = "#text";
    return std::equal(name.begin(), name.end(), kText.begin(), kText.end());
  }

  void OpenElement(View name) {
    m_isAttribute = false;
    m_name = StoredName(name);
    m_output.StartElement(name);
    ++m_open;
  }

  void OpenItem() {
    m_isAttribute = false;
    m_name = m_arrays.back();
    m_output.StartElement(m_name);
    ++m_open;
  }

  // Of a value that stands in an array itself.
  void FindItemElement() {
    if (!m_isText && m_name.empty() && !m_arrays.empty()) OpenItem();
  }

  void EndValue() {
    m_name = {};
    if (m_isAttribute || m_open == 0) return;
    --m_open;
    m_output.EndElement();
  }

  Output& m_output;
  const bool m_hasAttributes;
  std::size_t m_open = 0;            // elements
  std::vector<StoredName> m_arrays;  // the names of the open arrays
  StoredName m_name{};               // of the member being read; empty when none is pending
  bool m_isAttribute = false;        // the member is an attribute
  bool m_isText = false;             // the object being read had a text member
};

}  // namespace OvXmlLib16
