#include "tools/Copiers.h"

namespace ovxml {

namespace {

using OvXmlLib16::CXmlWriter;
using OvXmlLib16::ItemType_string;

class FastInfosetCopier : public DocumentEvents {
 public:
  FastInfosetCopier(CXmlWriter& writer, const CopyPlan& plan) : m_writer(writer) {
    plan.namespaces.DeclareAtRoot(writer);
  }

  void OnStart(const CXmlElement& element) override {
    m_writer.StartElement(element.GetLocalName(), element.GetNamespaceURI());
    ForEachAttribute(element, [this](const CXmlAttribute& attribute) {
      m_writer.WriteAttribute(attribute.GetLocalName(), attribute.GetNamespaceURI(), attribute.GetValueView(),
                              ItemType_string);
    });
  }
  void OnText(const TextPiece& piece) override { m_writer.WriteText(piece.text, ItemType_string); }
  void OnEnd(const CXmlElement&) override { m_writer.EndElement(); }

 private:
  CXmlWriter& m_writer;
};

}  // namespace

std::unique_ptr<DocumentEvents> MakeFastInfosetCopier(CXmlWriter& writer, const CopyPlan& plan) {
  return std::make_unique<FastInfosetCopier>(writer, plan);
}

}  // namespace ovxml
