// What comes out of each binder of a document that went in: every value and attribute, compared one by one.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/ExpatFeed.h"
#include "bench/OrdersByHandValues.h"
#include "bench/OrdersDocument.h"
#include "bench/peers/Peers.h"
#include "ovxmllib/binding/OvException.h"

namespace {

using namespace OvXmlLib16::bench;

/// Where a value stands, by local names, "order/item/price" or "order/@id", and its text.
using Value = std::pair<std::string, std::string>;

/// The values of a document in their order: attributes, sorted, and texts of elements without children.
class Flattening {
 public:
  static std::vector<Value> Of(std::string_view document) {
    Flattening flattening;
    const ExpatParser parser = MakeExpatNs();
    XML_SetUserData(parser.get(), &flattening);
    XML_SetElementHandler(parser.get(), OnStart, OnEnd);
    XML_SetCharacterDataHandler(parser.get(), OnText);
    FeedExpat(parser.get(), document);
    return std::move(flattening.m_values);
  }

 private:
  static std::string_view LocalName(std::string_view name) { return name.substr(name.rfind('|') + 1); }

  static void OnStart(void* data, const XML_Char* name, const XML_Char** attributes) {
    auto& self = *static_cast<Flattening*>(data);
    if (self.m_depth++ > 0) self.m_path.append(self.m_path.empty() ? "" : "/").append(LocalName(name));
    self.m_text.clear();
    self.m_isLeaf = true;
    const std::size_t first = self.m_values.size();
    for (; *attributes != nullptr; attributes += 2) {
      self.m_values.emplace_back(self.m_path + "/@" + std::string(LocalName(attributes[0])), attributes[1]);
    }
    std::sort(self.m_values.begin() + static_cast<std::ptrdiff_t>(first), self.m_values.end());
  }

  static void OnEnd(void* data, const XML_Char*) {
    auto& self = *static_cast<Flattening*>(data);
    if (self.m_isLeaf) self.m_values.emplace_back(self.m_path, self.m_text);
    self.m_isLeaf = false;
    const std::size_t slash = self.m_path.rfind('/');
    self.m_path.erase(slash == std::string::npos ? 0 : slash);
  }

  static void OnText(void* data, const XML_Char* text, int length) {
    static_cast<Flattening*>(data)->m_text.append(text, static_cast<std::size_t>(length));
  }

  std::vector<Value> m_values;
  std::string m_path, m_text;
  int m_depth = 0;
  bool m_isLeaf = false;
};

/// The text that all texts of the same value share: no zeros behind a fraction. Any other text is itself.
template <class T>
std::optional<std::string> Canonical(const std::string& text) {
  try {
    T value;
    byhand::Parse(text, value);
    if constexpr (std::is_same_v<T, byhand::Amount>) {
      for (; value.places > 0 && value.digits % 10 == 0; --value.places) value.digits /= 10;
    }
    std::string canonical;
    byhand::Append(canonical, value);
    return canonical;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

std::string CanonicalOf(const std::string& text) {
  if (const auto moment = Canonical<byhand::DateTime>(text)) return *moment;
  return Canonical<byhand::Amount>(text).value_or(text);
}

struct Tally {
  std::size_t values = 0, rewritten = 0, changed = 0;
  std::string example;  // of a change

  void Count(const std::string& in, const std::string& out) {
    ++values;
    if (in == out) return;
    if (CanonicalOf(in) == CanonicalOf(out)) return void(++rewritten);
    if (changed++ == 0) example = in + " became " + out;
  }
};

std::string Shown(const std::vector<Value>& values, std::size_t index) {
  return index < values.size() ? values[index].first + " '" + values[index].second + '\'' : "nothing";
}

/// Compares value by value as long as the same stand at the same places.
void PrintDifferences(const std::vector<Value>& in, const std::vector<Value>& out) {
  std::map<std::string, Tally> tallies;
  std::size_t i = 0;
  for (; i < in.size() && i < out.size() && in[i].first == out[i].first; ++i)
    tallies[in[i].first].Count(in[i].second, out[i].second);
  std::size_t rewritten = 0, differing = 0;
  for (const auto& [place, tally] : tallies) {
    rewritten += tally.rewritten;
    if (tally.changed == 0) continue;
    differing += tally.changed;
    std::printf("    %-22s %6zu of %6zu differ: %s\n", place.c_str(), tally.changed, tally.values,
                tally.example.c_str());
  }
  std::printf("    %zu of %zu values changed, %zu more are the same value in other characters\n", differing, in.size(),
              rewritten);
  if (i < in.size() || i < out.size()) {
    std::printf("    from value %zu on the documents differ: in %s, out %s\n", i + 1, Shown(in, i).c_str(),
                Shown(out, i).c_str());
  }
}

template <class PassThrough>
void PrintPeer(const std::string& name, const std::string& document, PassThrough pass) {
  std::printf("  %s\n", name.c_str());
  try {
    pass([&](std::string_view written) { PrintDifferences(Flattening::Of(document), Flattening::Of(written)); });
  } catch (const std::exception& failure) {
    std::printf("    fails: %s\n", failure.what());
  } catch (const OvXmlLib16::COvException& failure) {
    std::printf("    fails: %s\n", OvXmlLib16::ToUtf8(failure.GetMessage()).c_str());
  }
}

std::string ReadingsWith(const char* required, const char* optional) {
  return std::string("<readings xmlns=\"urn:example:orders\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">")
      .append(required)
      .append(optional)
      .append("</readings>");
}

}  // namespace

int main() {
  const std::vector<Peer> peers = MakePeers();
  const std::string orders = MakeOrdersDocument(100'000);
  std::printf("The orders document of 100 KB, read into objects and written:\n");
  for (const Peer& peer : peers) {
    PrintPeer(peer.name, orders, [&](const auto& take) { peer.write(peer.read(orders).get(), take); });
  }

  const std::string readings[] = {
      ReadingsWith("<required xsi:nil=\"true\"/>", ""),
      ReadingsWith("<required>0.10</required>", "<optional xsi:nil=\"true\"/>"),
      ReadingsWith("<required>12345678901234567890.123456789</required>", "<optional>388.70</optional>")};
  for (const std::string& document : readings) {
    std::printf("%s\n", document.c_str());
    for (const Peer& peer : peers) {
      if (!peer.passReadings) continue;
      PrintPeer(peer.name, document, [&](const auto& take) { peer.passReadings(document, take); });
    }
  }
  return 0;
}
