#include "bench/WriterScript.h"

#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlDocument.h"

namespace OvXmlLib16::bench {

WriterScript::WriterScript(std::string_view document) {
  CXmlDocument tree;
  tree.LoadXmlStream(reinterpret_cast<const unsigned char*>(document.data()), document.size());
  Record(*tree.GetDocumentElement());
}

void WriterScript::Add(Call call, const WString& name, const WString& ns, WStringView text) {
  const Name& kept = *m_names.insert({name, ns}).first;
  m_steps.push_back({&kept, static_cast<std::uint32_t>(text.size()), call});
  m_texts += text;
}

void WriterScript::Record(const CXmlElement& element) {
  Add(Call::Start, element.GetLocalName(), element.GetNamespaceURI(), {});
  for (const CXmlAttribute* a = element.GetFirstAttribute(); a != nullptr; a = CXmlElement::GetNextAttribute(*a)) {
    Add(Call::Attribute, a->GetLocalName(), a->GetNamespaceURI(), a->GetValueView());
  }
  for (const CXmlElement* child = element.GetFirstElement(); child != nullptr; child = child->GetNextSiblingElement()) {
    Record(*child);
  }
  // The white space between child elements is what a formatting writer makes anew.
  if (element.GetFirstElement() == nullptr) Add(Call::Text, {}, {}, element.GetTextView());
  Add(Call::End, {}, {}, {});
}

void WriterScript::Replay(CXmlWriter& writer) const {
  const WChar* texts = m_texts.data();
  for (const Step& step : m_steps) {
    const WStringView text(texts, step.textLength);
    texts += step.textLength;
    switch (step.call) {
      case Call::Start:
        writer.StartElement(step.name->local, step.name->ns);
        break;
      case Call::Attribute:
        writer.WriteAttribute(step.name->local, step.name->ns, text, ItemType_string);
        break;
      case Call::Text:
        writer.WriteText(text, ItemType_string);
        break;
      case Call::End:
        writer.EndElement();
        break;
    }
  }
}

}  // namespace OvXmlLib16::bench
