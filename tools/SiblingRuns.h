// Which elements of a document follow each other under one name.
#pragma once

#include <vector>

#include "tools/DocumentEvents.h"

namespace ovxml {

class Source;

/// For each element, in document order, whether its neighbours have its name; two bits an element.
class SiblingRuns {
 public:
  /// None.
  SiblingRuns() = default;
  /// Reads all of `source`. Throws COvException.
  SiblingRuns(const Source& source, bool namespacesCount, Progress& progress);

  /// Whether the sibling ahead of, or behind, the element with this number, from 0, has the same name.
  bool Continues(std::size_t element) const { return m_continues[element]; }
  bool IsContinued(std::size_t element) const { return m_isContinued[element]; }

 private:
  class Survey;

  std::vector<bool> m_continues, m_isContinued;
};

}  // namespace ovxml
