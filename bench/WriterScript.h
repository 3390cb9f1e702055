// A document as the calls that write it.
#pragma once

#include <compare>
#include <cstdint>
#include <set>
#include <string_view>
#include <vector>

#include "ovxmllib/document/XmlElement.h"
#include "ovxmllib/document/XmlWriter.h"

namespace OvXmlLib16::bench {

/// Records the calls that write a document again, with their strings ready, so that a replay measures the writer alone.
class WriterScript {
 public:
  explicit WriterScript(std::string_view document);

  /// Makes the calls, without Open and Close.
  void Replay(CXmlWriter& writer) const;

 private:
  enum class Call : std::uint32_t { Start, Attribute, Text, End };

  struct Name {
    WString local, ns;
    auto operator<=>(const Name&) const = default;
  };

  // Small, and all texts in one string: reading the script shall not be what is measured.
  struct Step {
    const Name* name;
    std::uint32_t textLength;
    Call call;
  };

  void Record(const CXmlElement& element);
  void Add(Call call, const WString& name, const WString& ns, WStringView text);

  std::vector<Step> m_steps;
  std::set<Name> m_names;
  WString m_texts;
};

}  // namespace OvXmlLib16::bench
