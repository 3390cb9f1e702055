// The binders that are measured beside each other, all behind one interface.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace OvXmlLib16::bench {

/// One way between a document and objects. All functions throw for a document that the binder refuses.
struct Peer {
  /// What has been read; destroying it frees everything that the document took.
  using Objects = std::shared_ptr<const void>;
  /// Gets the text that was written, which is gone when it returns.
  using TakeText = std::function<void(std::string_view text)>;

  std::string name;
  std::function<Objects(std::string_view document)> read;
  /// Writes what `read` gave as UTF-8, indented.
  std::function<void(const void* objects, const TakeText& take)> write;
  /// Reads and writes a `readings` document, which has elements that may be nil; empty where there is no class for it.
  std::function<void(std::string_view document, const TakeText& take)> passReadings;
};

/// gSOAP as its generator maps the schema by itself, decimals and dates without time as text ("GsoapText"), and with
/// decimals as numbers ("GsoapNumber").
Peer MakeGsoapTextPeer();
Peer MakeGsoapNumberPeer();

/// CodeSynthesis XSD, the tree mapping on Xerces-C++.
Peer MakeXsdPeer();

/// Bound objects of this library.
Peer MakeObjectPeer();

/// Plain structs, by hand on Expat.
Peer MakeByHandPeer();

/// The parser alone: reads nothing into objects, and writes nothing.
Peer MakeExpatPeer();

/// All binders, ours first.
std::vector<Peer> MakePeers();

}  // namespace OvXmlLib16::bench
