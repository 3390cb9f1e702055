// A file read in chunks and as a whole, against the same bytes in memory.
//
// Input: two bytes of the context (Document.h), a byte of the elements that the callback drops, a byte of the size of
// the chunks, then the document.

#include "fuzz/Document.h"
#include "fuzz/MemoryFile.h"
#include "ovxmllib/document/ReadChunk.h"

namespace OvXmlLib16::fuzz {
namespace {

template <class Load>
Outcome Read(const CSerializationContext& context, unsigned drops, const Load& load) {
  const Application application(drops);
  CXmlDocument document(&Application::OnComplete, context);
  return OutcomeOf([&](AnyObject& object) {
    load(document);
    object.FromXmlElement(document.GetDocumentElement(), context);
  });
}

Outcome ReadFile(const MemoryFile& file, bool inChunks, const CSerializationContext& context, unsigned drops) {
  AsyncFromXmlFile(inChunks);
  return Read(context, drops, [&](CXmlDocument& document) { document.Load(file.GetPath()); });
}

// What chunks may change: the parser reports a text that goes over a border in pieces, and the place of a text that is
// too long is that of the piece; and of a name behind the document element it complains before it has seen the name's
// end, which may be wrong in itself.
bool AreSame(Outcome inChunks, const Outcome& asText) {
  if (asText.message.find(u"SetMaxTextLength") != WString::npos) {
    inChunks.line = asText.line;
    inChunks.column = asText.column;
  }
  if (inChunks.message.starts_with(u"junk after document element")) return asText.tree == nullptr;
  return inChunks == asText && inChunks.path == asText.path;
}

// Up to 128 bytes at first, then in steps of 64.
std::size_t TakeChunk(Input& input) {
  const unsigned chunk = input.TakeByte();
  return chunk < 0x80 ? 1 + chunk : 64 * (chunk - 0x7F);
}

void Run(Input input) {
  static MemoryFile file;
  const CSerializationContext context = TakeContext(input);
  const unsigned drops = input.TakeByte();
  const std::size_t chunk = TakeChunk(input);
  const Bytes bytes = input.TakeRest();
  // UTF-16 without a byte order mark is told from the first two bytes.
  const bool needsTwo = bytes.size() > 1 && bytes[1] == 0;
  SetReadChunkForTest(needsTwo ? std::max<std::size_t>(chunk, 2) : chunk);
  file.Write(bytes);

  const Outcome whole = ReadFile(file, /*inChunks=*/false, context, drops);
  const Outcome inChunks = ReadFile(file, /*inChunks=*/true, context, drops);
  if (bytes.empty()) {
    Require(whole.message == u"no element found at line 1" && inChunks == whole, "an empty file has no element");
    return;
  }
  const Outcome inMemory =
      Read(context, drops, [&](CXmlDocument& document) { document.LoadXmlStream(bytes.data(), bytes.size()); });
  Require(whole == inMemory && whole.path == inMemory.path, "a file reads as its bytes do");

  // In chunks, compression is not looked for, and some come before it is known that there are too many.
  const Outcome asText = Read(context, drops, [&](CXmlDocument& document) { document.LoadXml(CharactersOf(bytes)); });
  const bool isTooLong = context.GetMaxInputBytes() != 0 && bytes.size() > context.GetMaxInputBytes();
  Require(isTooLong ? inChunks.tree == nullptr : AreSame(inChunks, asText), "chunks make no difference");
  RequireNothingLeft();
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::fuzz::Run({data, size});
  return 0;
}
