// A document as a sequence of events.
#pragma once

#include "ovxmllib/ovxmllib.h"
#include "tools/Input.h"
#include "tools/Progress.h"

namespace ovxml {

using OvXmlLib16::CSerializationContext;
using OvXmlLib16::CXmlAttribute;
using OvXmlLib16::CXmlElement;
using OvXmlLib16::WString;
using OvXmlLib16::WStringView;

/// A part of an element's text: what stands between two tags.
struct TextPiece {
  WStringView text;  ///< never empty; valid during the call
  bool behindChild;  ///< a child element ended ahead of it
  bool beforeChild;  ///< a child element starts behind it
};

/// What is told of a document, in its order.
class DocumentEvents {
 public:
  DocumentEvents() = default;
  DocumentEvents(const DocumentEvents&) = delete;
  DocumentEvents& operator=(const DocumentEvents&) = delete;
  virtual ~DocumentEvents() = default;

  /// The attributes are complete; text and children are not to be looked at.
  virtual void OnStart(const CXmlElement&) {}
  virtual void OnText(const TextPiece&) {}
  virtual void OnEnd(const CXmlElement&) {}
};

/// Reads `input`, which is XML, and reports it to `events`. Of the document there is never more in memory than the
/// elements that are open and their text; a compressed file is in memory as a whole. Throws COvException, and what
/// `events` throws. One reading at a time in a thread.
void ReadText(const Input& input, const CSerializationContext& context, DocumentEvents& events, Progress& progress);

/// Reports the tree under `root` to `events`. All text of an element comes ahead of its children: its place is not
/// kept.
void WalkTree(const CXmlElement& root, DocumentEvents& events, Progress& progress);

/// Calls `action` with each attribute, in their order.
template <class Action>
void ForEachAttribute(const CXmlElement& element, Action&& action) {
  for (const CXmlAttribute* a = element.GetFirstAttribute(); a != nullptr; a = CXmlElement::GetNextAttribute(*a)) {
    action(*a);
  }
}

}  // namespace ovxml
