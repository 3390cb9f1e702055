#include "tools/SiblingRuns.h"

#include "tools/Source.h"

namespace ovxml {

class SiblingRuns::Survey : public DocumentEvents {
 public:
  Survey(SiblingRuns& result, bool namespacesCount) : m_result(result), m_namespacesCount(namespacesCount) {}

  void OnStart(const CXmlElement& element) override {
    const std::size_t number = m_result.m_continues.size();
    LastChild& last = m_lastChildren[m_depth++];
    const bool continues = last.number != kNone && last.local == element.GetLocalName() &&
                           (!m_namespacesCount || last.ns == element.GetNamespaceURI());
    if (continues) {
      m_result.m_isContinued[last.number] = true;
    } else {
      last.local = element.GetLocalName();
      last.ns = element.GetNamespaceURI();
    }
    last.number = number;
    m_result.m_continues.push_back(continues);
    m_result.m_isContinued.push_back(false);
    if (m_lastChildren.size() == m_depth) m_lastChildren.emplace_back();
    m_lastChildren[m_depth].number = kNone;
  }

  void OnEnd(const CXmlElement&) override { --m_depth; }

 private:
  static constexpr std::size_t kNone = ~std::size_t{0};

  // The child that started last, of an element that is open.
  struct LastChild {
    std::size_t number = kNone;
    WString local, ns;
  };

  SiblingRuns& m_result;
  const bool m_namespacesCount;
  std::size_t m_depth = 0;
  std::vector<LastChild> m_lastChildren = std::vector<LastChild>(1);  // by the depth of the parent
};

SiblingRuns::SiblingRuns(const Source& source, bool namespacesCount, Progress& progress) {
  Survey survey(*this, namespacesCount);
  source.Read(survey, progress);
}

}  // namespace ovxml
