// Reading and writing XML, each road as a ratio to bare Expat on the same document.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "bench/ExpatFeed.h"
#include "bench/Roads.h"
#include "bench/WriterScript.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/collections/Element.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/document/XmlTextWriter.h"
#include "ovxmllib/foundation/OvZip.h"
#include "ovxmllib/foundation/TextStream.h"

namespace {

using namespace OvXmlLib16;
using namespace OvXmlLib16::bench;

void OnStartElement(void*, const XML_Char*, const XML_Char**) {}
void OnEndElement(void*, const XML_Char*) {}
void OnStartNamespace(void*, const XML_Char*, const XML_Char*) {}
void OnEndNamespace(void*, const XML_Char*) {}
void OnText(void*, const XML_Char*, int) {}

/// What a reader on Expat pays before it has done anything of its own.
void ParseWithIdleHandlers(std::string_view document) {
  const ExpatParser parser = MakeExpatNs();
  XML_SetElementHandler(parser.get(), OnStartElement, OnEndElement);
  XML_SetNamespaceDeclHandler(parser.get(), OnStartNamespace, OnEndNamespace);
  XML_SetCharacterDataHandler(parser.get(), OnText);
  FeedExpat(parser.get(), document);
}

/// The sweep behind the choice of kExpatPiece.
void AddPieceSizes() {
  for (std::size_t kilobytes = 4; kilobytes <= 64 * 1024; kilobytes *= 4) {
    AddRoad("ExpatPiece" + std::to_string(kilobytes) + "K",
            [bytes = kilobytes * 1024](std::string_view document) { FeedExpat(MakeExpat().get(), document, bytes); });
  }
}

const unsigned char* Bytes(std::string_view text) { return reinterpret_cast<const unsigned char*>(text.data()); }

void ReadTree(std::string_view document) { CXmlDocument().LoadXmlStream(Bytes(document), document.size()); }

/// Drops each child of the root when it ends.
void ReadDropping(std::string_view document) {
  const auto isChildOfRoot = [](CXmlElement* element) {
    return element->GetParentElm() != nullptr && element->GetParentElm()->GetParentElm() == nullptr;
  };
  CXmlDocument(isChildOfRoot).LoadXmlStream(Bytes(document), document.size());
}

CSmartPtr<CElement> ReadElement(std::string_view document) {
  CSmartPtr<CElement> element(new CElement(u"root"));
  element->FromXmlStream(Bytes(document), document.size());
  return element;
}

Pass PrepareElementWrite(std::string_view document) {
  return [element = ReadElement(document)] {
    const CBinaryData bytes = element->ToXmlStream(/*header=*/true, /*formatted=*/false);
    if (bytes.GetLength() == 0) throw COvException(u"Nothing was written.");
  };
}

Pass PrepareWrite(std::string_view document, XmlEncoding encoding) {
  return [script = std::make_shared<const WriterScript>(document), encoding] {
    CTextStream stream(encoding);
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.SetDefaultNamespace(u"urn:example:orders");
    script->Replay(writer);
    writer.Close();
    if (encoding == XmlEncoding_None ? stream.GetText().empty() : stream.GetBytes().GetLength() == 0) {
      throw COvException(u"Nothing was written.");
    }
  };
}

void Gzip(std::string_view document) { Compress(Bytes(document), document.size(), CompressionType_GZip); }

Pass PrepareReadGzip(std::string_view document) {
  return [packed = Compress(Bytes(document), document.size(), CompressionType_GZip)] {
    CXmlDocument().LoadXmlStream(packed.GetData(), packed.GetLength());
  };
}

std::shared_ptr<const void> KeepTree(std::string_view document) {
  const auto tree = std::make_shared<CXmlDocument>();
  tree->LoadXmlStream(Bytes(document), document.size());
  return tree;
}

/// What is there at the end of reading, when the document's tree has not gone yet.
std::shared_ptr<const void> KeepElementAndTree(std::string_view document) {
  struct Kept {
    CXmlDocument tree;
    CSmartPtr<CElement> element{new CElement(u"root")};
  };
  const auto kept = std::make_shared<Kept>();
  kept->tree.LoadXmlStream(Bytes(document), document.size());
  kept->element->FromXmlElement(kept->tree.GetDocumentElement());
  return kept;
}

std::shared_ptr<const void> KeepElement(std::string_view document) {
  return std::make_shared<CSmartPtr<CElement>>(ReadElement(document));
}

}  // namespace

int main(int argc, char** argv) {
  CXmlObjectBase::Register(16, 1);
  AddRoad("ExpatNs", [](std::string_view document) { FeedExpat(MakeExpatNs().get(), document); });
  AddRoad("ExpatNsIdleHandlers", ParseWithIdleHandlers);
  AddRoad("Tree", ReadTree);
  AddRoad("TreeDropping", ReadDropping);
  AddRoad("ElementRead", [](std::string_view document) { ReadElement(document); });
  AddPreparedRoad("ElementWrite", PrepareElementWrite);
  AddPreparedRoad("WriteUtf8", [](std::string_view d) { return PrepareWrite(d, XmlEncoding_UTF8); });
  AddPreparedRoad("WriteUtf16", [](std::string_view d) { return PrepareWrite(d, XmlEncoding_UTF16); });
  AddPreparedRoad("WriteText", [](std::string_view d) { return PrepareWrite(d, XmlEncoding_None); });
  AddRoad("Gzip", Gzip);
  AddPreparedRoad("TreeFromGzip", PrepareReadGzip);
  AddHeapFigure("TreeHeap", KeepTree);
  AddHeapFigure("ElementHeap", KeepElement);
  AddHeapFigure("ElementReadPeakHeap", KeepElementAndTree);
  AddPieceSizes();
  return RunRoads(argc, argv);
}
