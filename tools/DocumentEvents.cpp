#include "tools/DocumentEvents.h"

#include <utility>
#include <vector>

namespace ovxml {

namespace {

/// Makes starts, texts and ends out of the ends of elements, which are all that the document tells. An element's start
/// is reported when the first element below it ends, or its own end. At that moment the text that it has is what stands
/// ahead of that child, so texts are reported in their places though the document keeps them in one.
class EventWalk {
 public:
  EventWalk(DocumentEvents& events, Progress& progress) : m_events(events), m_progress(progress) {}

  void TakeEnded(const CXmlElement& ended) {
    // Elements that were dropped may share an address, but only with those that started after them.
    if (m_open.empty() || m_open.back().element != &ended) StartDownTo(ended);
    ReportText(/*beforeChild=*/false);
    m_events.OnEnd(ended);
    m_open.pop_back();
    m_progress.Tick();
  }

 private:
  struct Open {
    const CXmlElement* element;
    std::size_t reported;  // code units of its text
    bool hasChild;
  };

  void StartDownTo(const CXmlElement& ended) {
    const CXmlElement* const known = m_open.empty() ? nullptr : m_open.back().element;
    m_path.clear();
    for (const CXmlElement* e = &ended; e != known; e = e->GetParentElm()) m_path.push_back(e);
    for (; !m_path.empty(); m_path.pop_back()) {
      if (!m_open.empty()) ReportText(/*beforeChild=*/true);
      m_open.push_back({m_path.back(), 0, false});
      m_events.OnStart(*m_path.back());
    }
  }

  void ReportText(bool beforeChild) {
    Open& open = m_open.back();
    const WStringView text = open.element->GetTextView().substr(open.reported);
    const bool behindChild = std::exchange(open.hasChild, open.hasChild || beforeChild);
    open.reported += text.size();
    if (!text.empty()) m_events.OnText({text, behindChild, beforeChild});
  }

  DocumentEvents& m_events;
  Progress& m_progress;
  std::vector<Open> m_open;                // reported as started, the root first
  std::vector<const CXmlElement*> m_path;  // scratch
};

// The callback is handed the element and nothing else.
thread_local EventWalk* t_walk = nullptr;

bool ReportAndDrop(CXmlElement* element) {
  t_walk->TakeEnded(*element);
  return true;
}

void ReportStart(const CXmlElement& element, DocumentEvents& events) {
  events.OnStart(element);
  const WStringView text = element.GetTextView();
  if (!text.empty()) events.OnText({text, /*behindChild=*/false, element.GetFirstElement() != nullptr});
}

}  // namespace

void ReadText(const Input& input, const CSerializationContext& context, DocumentEvents& events, Progress& progress) {
  EventWalk walk(events, progress);
  t_walk = &walk;
  OvXmlLib16::CXmlDocument document(&ReportAndDrop, context);
  OvXmlLib16::AsyncFromXmlFile(!input.IsCompressed());
  document.Load(input.GetPath());
}

void WalkTree(const CXmlElement& root, DocumentEvents& events, Progress& progress) {
  const CXmlElement* element = &root;
  while (true) {
    ReportStart(*element, events);
    if (const CXmlElement* const child = element->GetFirstElement()) {
      element = child;
      continue;
    }
    while (true) {
      events.OnEnd(*element);
      progress.Tick();
      if (element == &root) return;
      const CXmlElement* const next = element->GetNextSiblingElement();
      element = next == nullptr ? element->GetParentElm() : next;
      if (next != nullptr) break;
    }
  }
}

}  // namespace ovxml
