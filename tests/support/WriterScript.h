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

/// What a script may say beyond CXmlWriter.
struct PlainDialect {
  /// The type of a text or value, which may take what tells it off its text.
  ItemType TakeType(WStringView&) const { return type; }
  /// A token that stands for no call of CXmlWriter, by its first character and the rest.
  void Call(WChar, WStringView) const {}

  ItemType type = ItemType_string;
};

/// Makes a call for each token of a script; blanks separate them. XSI and XML stand for their namespaces.
///
///     <ns|name    StartElement          >       EndElement
///     @ns|name=v  WriteAttribute        'text   WriteText
///     :ns|alias   AddNamespace          =ns|    SetDefaultNamespace
///     ^ns|type    WriteXsiType          0       WriteXsiNil
///     ?text       WriteProcessingInstruction    !text   WriteComment
///     +text       WriteInlineSchema     [ ]     SetArrayState(1) and (3)
template <class Dialect = PlainDialect>
void Perform(CXmlWriter& writer, WStringView script, const Dialect& dialect = {}) {
  while (!script.empty()) {
    WStringView token = script_detail::TakeUntil(script, u' ');
    if (token.empty()) continue;
    const WChar call = token.front();
    token.remove_prefix(1);
    const bool hasNamespace = WStringView(u"<@:=^").find(call) != WStringView::npos;
    const WStringView ns = hasNamespace ? script_detail::TakeNamespace(token) : WStringView();
    const WStringView name = call == u'@' ? script_detail::TakeUntil(token, u'=') : token;
    switch (call) {
      case u'<':
        writer.StartElement(name, ns);
        break;
      case u'>':
        writer.EndElement();
        break;
      case u'@': {
        const ItemType type = dialect.TakeType(token);
        writer.WriteAttribute(name, ns, token, type);
        break;
      }
      case u'\'':
        writer.WriteText(token, dialect.type);
        break;
      case u':':
        writer.AddNamespace(name, ns);
        break;
      case u'=':
        writer.SetDefaultNamespace(ns);
        break;
      case u'^':
        writer.WriteXsiType(ns, name, dialect.type);
        break;
      case u'?':
        writer.WriteProcessingInstruction(token);
        break;
      case u'!':
        writer.WriteComment(token);
        break;
      case u'+':
        writer.WriteInlineSchema(token);
        break;
      case u'[':
      case u']':
        writer.SetArrayState(call == u'[' ? 1 : 3);
        break;
      default:
        call == u'0' && token.empty() ? writer.WriteXsiNil() : dialect.Call(call, token);
    }
  }
}

}  // namespace OvXmlLib16::test
