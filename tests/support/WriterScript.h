// The calls of a writer as text, for tables of cases.
#pragma once

#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlWriter.h"

namespace OvXmlLib16::test {

namespace script_detail {

// The part of `text` ahead of `end`, or all of it; `text` keeps what stands behind.
inline WStringView TakeUntil(WStringView& text, WChar end) {
  const WStringView taken = text.substr(0, text.find(end));
  text.remove_prefix(std::min(taken.size() + 1, text.size()));
  return taken;
}

inline WStringView TakeNamespace(WStringView& text) {
  if (text.find(u'|') == WStringView::npos) return {};
  const WStringView ns = TakeUntil(text, u'|');
  return ns == u"XSI" ? kXsiNamespace : ns == u"XML" ? kXmlNamespace : ns;
}

}  // namespace script_detail

/// Makes a call for each token of a script; blanks separate them. XSI and XML stand for their namespaces. Texts and
/// values are of `type`; what is no call of CXmlWriter is nothing.
///
///     <ns|name    StartElement          >       EndElement
///     @ns|name=v  WriteAttribute        'text   WriteText
///     :ns|alias   AddNamespace          =ns|    SetDefaultNamespace
///     ^ns|type    WriteXsiType          0       WriteXsiNil
///     ?text       WriteProcessingInstruction    !text   WriteComment
///     +text       WriteInlineSchema
inline void Perform(CXmlWriter& writer, WStringView script, ItemType type = ItemType_string) {
  while (!script.empty()) {
    WStringView token = script_detail::TakeUntil(script, u' ');
    const WChar call = token.front();
    token.remove_prefix(1);
    const bool hasNamespace = WStringView(u"<@:=^").find(call) != WStringView::npos;
    const WStringView ns = hasNamespace ? script_detail::TakeNamespace(token) : WStringView();
    const WStringView name = call == u'@' ? script_detail::TakeUntil(token, u'=') : token;
    if (call == u'<') writer.StartElement(name, ns);
    if (call == u'>') writer.EndElement();
    if (call == u'@') writer.WriteAttribute(name, ns, token, type);
    if (call == u'\'') writer.WriteText(token, type);
    if (call == u':') writer.AddNamespace(name, ns);
    if (call == u'=') writer.SetDefaultNamespace(ns);
    if (call == u'^') writer.WriteXsiType(ns, name, type);
    if (call == u'0') writer.WriteXsiNil();
    if (call == u'?') writer.WriteProcessingInstruction(token);
    if (call == u'!') writer.WriteComment(token);
    if (call == u'+') writer.WriteInlineSchema(token);
  }
}

}  // namespace OvXmlLib16::test
