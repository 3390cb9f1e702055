// Bytes to a bound object and back, with and without the element callback.
//
// Input: two bytes of the context (Document.h), a byte of the elements that the callback drops, a byte of the element
// at which it throws, a byte of the options of writing, then the document.

#include <optional>
#include <vector>

#include "fuzz/Document.h"
#include "fuzz/ExpatTree.h"
#include "fuzz/ReadBack.h"
#include "ovxmllib/fastinfoset/FastInfosetReader.h"
#include "ovxmllib/foundation/OvZip.h"

namespace OvXmlLib16::fuzz {
namespace {

struct WriteOptions {
  XmlEncoding encoding;  // none: as text
  bool header, formatted;
  EOLType eol;
  CompressionType compression;
};

WriteOptions TakeWriteOptions(Input& input) {
  const unsigned bits = input.TakeByte();
  constexpr CompressionType kTypes[] = {CompressionType_None, CompressionType_GZip, CompressionType_ZLib,
                                        CompressionType_None};
  return {static_cast<XmlEncoding>(bits & 3), (bits & 4) != 0, (bits & 8) != 0,
          (bits & 16) != 0 ? EOLType_CRLF : EOLType_LF, kTypes[bits >> 5 & 3]};
}

void RequireWithinLimits(const AnyObject& object, const CSerializationContext& context, std::size_t depth = 1) {
  const auto isWithin = [](std::size_t size, std::size_t limit) { return limit == 0 || size <= limit; };
  Require(isWithin(depth, context.GetMaxElementDepth()), "the limit on depth holds");
  Require(isWithin(object.attributes.size(), context.GetMaxAttributesPerElement()), "the limit on attributes holds");
  Require(isWithin(object.GetElementName().size(), context.GetMaxNameLength()), "the limit on names holds");
  Require(isWithin(object.text.size(), context.GetMaxTextLength()), "the limit on text holds");
  for (const AnyObject::Attribute& attribute : object.attributes) {
    Require(isWithin(attribute.name.size(), context.GetMaxNameLength()), "the limit on names holds for attributes");
    Require(isWithin(attribute.value.size(), context.GetMaxTextLength()), "the limit on text holds for attributes");
  }
  for (const AnyObject* child : object.children) RequireWithinLimits(*child, context, depth + 1);
}

Outcome ReadObject(Bytes document, const CSerializationContext& context) {
  Outcome outcome = OutcomeOf([&](AnyObject& object) {
    if (const auto failure = FailureOf([&] { object.FromXmlStream(document.data(), document.size(), context); })) {
      object.FromXml("<again><b/></again>");
      Require(object.GetElementName() == u"again" && object.children.size() == 1,
              "an object can be read again after a failure");
      throw *failure;
    }
  });
  const bool isTooLong = context.GetMaxInputBytes() != 0 && document.size() > context.GetMaxInputBytes();
  const bool hasDoctype = CharactersOf(document).starts_with("<!DOCTYPE");
  Require(outcome.tree == nullptr || !isTooLong, "the limit on input holds");
  Require(outcome.tree == nullptr || !hasDoctype || context.GetAllowDoctype(), "a DOCTYPE is refused");
  if (outcome.tree != nullptr) RequireWithinLimits(*outcome.tree, context);
  return outcome;
}

// That format has a target of its own. It is read by its first bytes, and the callback is not asked.
bool IsFastInfoset(Bytes document) {
  constexpr std::uint64_t kMaxBytes = 1 << 20;
  std::optional<CBinaryData> expanded;
  FailureOf([&] { expanded = Decompress(document.data(), document.size(), kMaxBytes); });
  const Bytes bytes = expanded ? BytesOf(*expanded) : document;
  return CFastInfosetReader::IsDocument(bytes.data(), bytes.size());
}

void CompareWithExpat(Bytes document, const CSerializationContext& context, const Outcome& whole) {
  // Limits are the library's own.
  if (document.empty() || whole.message.find(u"CSerializationContext::Set") != WString::npos) return;
  const auto expanded = Decompress(document.data(), document.size(), context.GetMaxDecompressedBytes());
  const Outcome expected = ExpatTree::Read(expanded ? BytesOf(*expanded) : document, context);
  Require(whole == expected, "a document reads as the parser reports it");
}

// Takes what the application drops from the tree of a document that was read without dropping.
void Prune(AnyObject& object, const Application& application, std::size_t& number) {
  std::vector<Tree> kept;
  for (const Tree& child : object.children) {
    Prune(*child, application, number);
    if (!application.Drops(number++)) kept.push_back(child);
  }
  object.children = kept;
}

// One document, loaded again and again.
class CallbackCheck {
 public:
  CallbackCheck(Bytes bytes, const CSerializationContext& context)
      : m_bytes(bytes), m_context(context), m_document(&Application::OnComplete, context) {}

  void Run(const Outcome& whole, unsigned drops, std::size_t stopAt) {
    const Application keeping(0);
    const Outcome kept = Load();
    Require(kept == whole, "a callback that keeps all changes nothing");

    const Application dropping(drops);
    const Outcome pruned = Load();
    Require(dropping.CountEnded() == keeping.CountEnded(), "elements end as often when some are dropped");
    if (whole.tree == nullptr) {
      Require(pruned.tree == nullptr && pruned.IsSameFailure(whole), "dropping does not change a failure");
    } else {
      std::size_t number = 0;
      Prune(*kept.tree, dropping, number);
      Require(number + 1 == keeping.CountEnded(), "every element ends once");
      Require(*pruned.tree == *kept.tree, "the elements that are dropped, and no others, are gone");
    }
    CheckStop(whole, keeping.CountEnded(), drops, stopAt);
  }

 private:
  Outcome Load() {
    return OutcomeOf([&](AnyObject& object) {
      m_document.LoadXmlStream(m_bytes.data(), m_bytes.size());
      object.FromXmlElement(m_document.GetDocumentElement(), m_context);
    });
  }

  void CheckStop(const Outcome& whole, std::size_t ended, unsigned drops, std::size_t stopAt) {
    const Application stopping(drops, stopAt);
    Outcome outcome;
    const auto stop = FailureOf<Application::Stop>([&] { outcome = Load(); });
    Require(stop.has_value() == (stopAt < ended), "what the callback throws arrives");
    if (stop) return Require(stop->at == stopAt, "what the callback throws arrives unchanged");
    Require((outcome.tree == nullptr) == (whole.tree == nullptr), "a callback that does not throw changes nothing");
  }

  const Bytes m_bytes;
  const CSerializationContext& m_context;
  CXmlDocument m_document;
};

// Namespaces are written as attribute values are: a carriage return is left out and a tab reads as a blank, by which
// two may become one, or one that must not be declared.
bool HasExpressibleNamespaces(const AnyObject& object) {
  const auto isExpressible = [](const WString& ns) { return ns.find_first_of(u"\r\t") == WString::npos; };
  if (!isExpressible(object.ns)) return false;
  for (const AnyObject::Attribute& attribute : object.attributes) {
    if (!isExpressible(attribute.ns)) return false;
  }
  return std::all_of(object.children.begin(), object.children.end(),
                     [](const AnyObject* child) { return HasExpressibleNamespaces(*child); });
}

// Makes an object what it is after it was written and read.
void Normalize(AnyObject& object, bool stripsSections) {
  object.text = ReadText(object.text, stripsSections);
  for (AnyObject::Attribute& attribute : object.attributes) attribute.value = ReadValue(attribute.value);
  for (AnyObject* child : object.children) Normalize(*child, stripsSections);
}

// Takes off the line ends and the indentation that formatted output puts around child elements.
void Unformat(const AnyObject& expected, AnyObject& object) {
  const bool added = !object.children.empty() && object.text.starts_with(expected.text) &&
                     object.text.find_first_not_of(u"\n\t", expected.text.size()) == WString::npos;
  if (added) object.text = expected.text;
  for (std::size_t i = 0; i < std::min(object.children.size(), expected.children.size()); ++i) {
    Unformat(*expected.children[i], *object.children[i]);
  }
}

void WriteAndRead(const AnyObject& object, AnyObject& back, const WriteOptions& options,
                  const CSerializationContext& context) {
  if (options.encoding == XmlEncoding_None) {
    return back.FromXml(object.ToXml(options.header, options.formatted, options.eol).c_str(), context);
  }
  const auto write = [&](CompressionType compression) {
    return object.ToXmlStream(options.header, options.formatted, options.encoding, options.eol,
                              CSerializationContext::GetDefaultContext(), compression);
  };
  CBinaryData data;
  const auto failure = FailureOf([&] { data = write(options.compression); });
  if (failure) {
    Require(options.compression != CompressionType_None, "what was read can be written");
    Require(failure->GetMessage() == u"Failed to compress data. [Error Code: 0]", "compression fails for want of room");
    data = write(CompressionType_None);
  }
  back.FromXmlStream(data, context);
}

void CheckRoundTrip(AnyObject& object, const WriteOptions& options, const CSerializationContext& readContext) {
  CSerializationContext context;
  context.SetStripCDATA(readContext.GetStripCDATA());
  context.SetSchemaType(readContext.GetSchemaType());
  context.SetMaxElementDepth(0);
  context.SetMaxAttributesPerElement(0);

  const Tree back(new AnyObject);
  if (!HasExpressibleNamespaces(object)) {
    FailureOf([&] { WriteAndRead(object, *back, options, context); });
    return;
  }
  WriteAndRead(object, *back, options, context);
  Normalize(object, context.GetStripCDATA());
  if (options.formatted) Unformat(object, *back);
  Require(*back == object, "what was written reads as it was");
}

void Run(Input input) {
  const CSerializationContext context = TakeContext(input);
  const unsigned drops = input.TakeByte();
  const std::size_t stopAt = input.TakeByte();
  const WriteOptions writing = TakeWriteOptions(input);
  const Bytes document = input.TakeRest();
  if (IsFastInfoset(document)) return;
  const Outcome whole = ReadObject(document, context);
  CompareWithExpat(document, context, whole);
  CallbackCheck(document, context).Run(whole, drops, stopAt);
  if (whole.tree != nullptr) CheckRoundTrip(*whole.tree, writing, context);
  RequireNothingLeft();
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::fuzz::Run({data, size});
  return 0;
}
