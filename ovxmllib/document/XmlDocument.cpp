#include "ovxmllib/document/XmlDocument.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/document/ExpatReader.h"
#include "ovxmllib/document/PlainReader.h"
#include "ovxmllib/document/SlabCache.h"
#include "ovxmllib/fastinfoset/FastInfosetReader.h"
#include "ovxmllib/foundation/OvZip.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

namespace {

const unsigned char* Bytes(const void* data) { return static_cast<const unsigned char*>(data); }

WString Found(const WString* text) { return text == nullptr ? WString() : *text; }

}  // namespace

CXmlDocument::CXmlDocument() : CXmlDocument(nullptr, CSerializationContext::GetDefaultContext()) {}
CXmlDocument::CXmlDocument(const CSerializationContext& context) : CXmlDocument(nullptr, context) {}
CXmlDocument::CXmlDocument(ElementComplete callback)
    : CXmlDocument(callback, CSerializationContext::GetDefaultContext()) {}
CXmlDocument::CXmlDocument(ElementComplete callback, const CSerializationContext& context)
    : CInstanceMonitor(Record()),
      m_context(&context),
      m_tree(std::make_unique<DocumentTree>(*this, callback, context)) {}

CXmlDocument::~CXmlDocument() = default;

CInstanceMonitor::ClassType& CXmlDocument::Record() {
  static ClassType& record = FindClass(u"CXmlDocument");
  return record;
}

void CXmlDocument::LoadXml(const char* text) { LoadXml(text == nullptr ? std::string_view() : std::string_view(text)); }

void CXmlDocument::LoadXml(std::string_view text) {
  Cleanup();
  if (text.empty()) throw COvException(u"XML String is empty!");
  CheckInputLength(text.size());
  ParseText(Bytes(text.data()), text.size());
}

void CXmlDocument::LoadXml(const WChar* text) {
  Cleanup();
  const WStringView view = ViewOf(text);
  if (view.empty()) throw COvException(u"XML String is empty!");
  const std::size_t length = view.size() * sizeof(WChar);
  CheckInputLength(length);
  if (ReadPlain(view)) return;
  // The byte order mark tells the parser this machine's order. Text decoded from a file may still have its own.
  constexpr WChar kByteOrderMark = 0xFEFF;
  CExpatReader reader(*m_tree, *m_context);
  reader.OpenUtf16();
  if (view.front() != kByteOrderMark) {
    reader.Parse(Bytes(&kByteOrderMark), sizeof kByteOrderMark, /*isFinal=*/false);
  }
  reader.Parse(Bytes(view.data()), length, /*isFinal=*/true);
}

void CXmlDocument::LoadXmlStream(const unsigned char* data, std::size_t length) {
  Cleanup();
  if (length == 0) throw COvException(u"XML Stream is empty!");
  CheckInputLength(length);
  Parse(data, length);
}

// Bytes of unknown kind.
void CXmlDocument::Parse(const unsigned char* data, std::size_t length) {
  const auto inflated = Decompress(data, length, m_context->GetMaxDecompressedBytes());
  if (inflated) {
    data = inflated->GetData();
    length = inflated->GetLength();
  }
  if (!CFastInfosetReader::IsDocument(data, length)) return ParseText(data, length);
  CFastInfosetReader(*m_context->GetFIContext(), *m_context, *m_tree, data, length).ParseDocument();
}

void CXmlDocument::ParseText(const unsigned char* data, std::size_t length) {
  if (ReadPlain(data, length, DeclaredEncoding::Valid)) return;
  CExpatReader reader(*m_tree, *m_context);
  reader.Open();
  reader.Parse(data, length, /*isFinal=*/true);
}

bool CXmlDocument::ReadPlain(WStringView text) {
  const auto measured = unicode::MeasureUtf8(text);
  if (measured.read != text.size() || !m_tree->ReadsUnseen()) return false;
  const auto bytes = std::make_unique_for_overwrite<unsigned char[]>(measured.written);
  return ReadPlain(bytes.get(), unicode::WideToUtf8(text, bytes.get()).written, DeclaredEncoding::Outdated);
}

// False when the parser has to read the text.
bool CXmlDocument::ReadPlain(const unsigned char* data, std::size_t length, DeclaredEncoding declared) {
  if (!m_tree->ReadsUnseen()) return false;
  try {
    if (PlainReader(*m_tree, *m_context, declared).Read(data, length)) return true;
  } catch (const COvException&) {
    // The parser comes to the same limit, and knows the place.
  }
  m_tree->Clear();
  return false;
}

void CXmlDocument::CheckInputLength(std::uint64_t length) const {
  const std::uint64_t limit = m_context->GetMaxInputBytes();
  if (limit == 0 || length <= limit) return;
  throw COvException(FormatString(
      u"The document is longer than %d bytes. CSerializationContext::SetMaxInputBytes sets this limit.", limit));
}

CXmlElement* CXmlDocument::GetDocumentElement() const noexcept { return m_tree->GetDocumentElement(); }
std::size_t CXmlDocument::GetElementCount() const noexcept { return m_tree->GetElementCount(); }

WString CXmlDocument::LookupNamespaceFromAlias(const WChar* alias) const {
  return Found(m_tree->FindNamespace(ViewOf(alias)));
}

WString CXmlDocument::LookupAliasFromNamespace(const WChar* uri) const { return Found(m_tree->FindAlias(ViewOf(uri))); }

void CXmlDocument::ReleaseSpareMemory() noexcept { TrimSlabCache(); }

void CXmlDocument::AddPlace(COvException& exception, const std::function<void(CXmlDocument&)>& load) const {
  const DocumentTree::Spot spot = m_tree->FindSpot(exception.GetPath());
  if (spot.element == 0) return;
  CXmlDocument again([](CXmlElement*) { return true; }, *m_context);
  again.m_tree->StopAt(spot);
  try {
    load(again);
  } catch (const COvException& there) {
    exception.SetPlace(there.GetLine(), there.GetColumn());
  }
}

void CXmlDocument::Cleanup() { m_tree->Clear(); }

}  // namespace OvXmlLib16
