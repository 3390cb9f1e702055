// A document as an object that can be written.
#pragma once

#include "tools/Copiers.h"
#include "tools/Source.h"

namespace ovxml {

/// Has nothing in it: it is read while it is written. Names, namespaces, attributes and text come out as they were, and
/// in the same order. The aliases that the document declares, wherever it does, are declared at the root.
///
/// Formatted as XML, the white space around child elements is left to the writer, but for one blank where a text ends
/// ahead of a tag.
class DocumentCopy : public OvXmlLib16::CXmlObjectBase {
 public:
  /// Nothing is owned, and all must outlive the object.
  DocumentCopy(const Source& source, const CopyPlan& plan, MakeCopier* makeCopier, Progress& progress)
      : m_source(source), m_plan(plan), m_makeCopier(makeCopier), m_progress(progress) {}

  CXmlObjectBase* GetBase() override { return this; }
  WString GetNamespace() const override { return {}; }

 protected:
  WString GetTargetNamespace() const override { return {}; }
  void ToXml_Int(OvXmlLib16::CXmlWriter* writer, bool isRoot, const OvXmlLib16::WChar* ns,
                 const CSerializationContext& context, bool optionalChoice) const override;
  CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CSerializationContext&, bool) override { return nullptr; }

 private:
  const Source& m_source;
  const CopyPlan m_plan;
  MakeCopier* m_makeCopier;
  Progress& m_progress;
};

}  // namespace ovxml
