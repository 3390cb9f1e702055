#include "ovxmllib/fastinfoset/SkippedItems.h"

namespace OvXmlLib16::fastinfoset {

namespace {

using Skip = void (*)(OctetReader&);

// A component that is there when its bit is set.
struct Component {
  unsigned bit;
  Skip skip;
};

void SkipComponents(OctetReader& in, std::span<const Component> components, unsigned present) {
  for (const Component& component : components) {
    if ((present & component.bit) != 0) component.skip(in);
  }
}

// NonEmptyOctetString with a bit of padding (C.22).
void SkipOctetString(OctetReader& in) { in.TakeCounted<kLengthOnSecondBit>(in.Read()); }

// IdentifyingStringOrIndex (C.13).
void SkipIdentifyingString(OctetReader& in) {
  const unsigned first = in.Read();
  if ((first & octet::kIndex) != 0) {
    in.ReadIndex<kIndexOnSecondBit>(first);
  } else {
    in.TakeCounted<kLengthOnSecondBit>(first);
  }
}

// NonIdentifyingStringOrIndex (C.14).
void SkipValue(OctetReader& in) {
  const unsigned first = in.Read();
  if ((first & octet::kIndex) != 0) {
    in.ReadIndex<kIndexOrZeroOnSecondBit>(first);
  } else {
    ReadString<kStringOnThirdBit>(in, first);
  }
}

void SkipEncodedString(OctetReader& in) { ReadString<kStringOnThirdBit>(in, in.Read()); }

// NameSurrogate (C.16): which parts there are, and the index of each.
void SkipNameSurrogate(OctetReader& in) {
  const unsigned parts = in.Read();
  if ((parts & octet::kPrefixFollows) != 0) in.ReadIndex<kIndexOnSecondBit>(in.Read());
  if ((parts & octet::kNamespaceFollows) != 0) in.ReadIndex<kIndexOnSecondBit>(in.Read());
  in.ReadIndex<kIndexOnSecondBit>(in.Read());
}

// C.2.4: an identifier and data.
void SkipAdditionalDatum(OctetReader& in) {
  SkipOctetString(in);
  SkipOctetString(in);
}

template <Skip kSkipItem>
void SkipSequence(OctetReader& in) {
  for (std::uint64_t left = in.ReadNumber<kSequenceLength>(in.Read()); left != 0; --left) kSkipItem(in);
}

// Deliberate: nothing of an initial vocabulary is kept; the only prepared tables are those of the context.
constexpr Component kVocabularyTables[] = {
    // C.2.5
    {0x1000, SkipOctetString},                  // external vocabulary
    {0x0800, SkipSequence<SkipOctetString>},    // restricted alphabets
    {0x0400, SkipSequence<SkipOctetString>},    // encoding algorithms
    {0x0200, SkipSequence<SkipOctetString>},    // prefixes
    {0x0100, SkipSequence<SkipOctetString>},    // namespace names
    {0x0080, SkipSequence<SkipOctetString>},    // local names
    {0x0040, SkipSequence<SkipOctetString>},    // other names
    {0x0020, SkipSequence<SkipOctetString>},    // other URIs
    {0x0010, SkipSequence<SkipEncodedString>},  // attribute values
    {0x0008, SkipSequence<SkipEncodedString>},  // character chunks
    {0x0004, SkipSequence<SkipEncodedString>},  // other strings
    {0x0002, SkipSequence<SkipNameSurrogate>},  // element names
    {0x0001, SkipSequence<SkipNameSurrogate>},  // attribute names
};

void SkipInitialVocabulary(OctetReader& in) {
  const unsigned high = in.Read();
  SkipComponents(in, kVocabularyTables, high << 8 | in.Read());
}

void SkipExternalIdentifiers(OctetReader& in, unsigned first) {
  if ((first & 0x02) != 0) SkipIdentifyingString(in);  // system
  if ((first & 0x01) != 0) SkipIdentifyingString(in);  // public
}

// C.2.6, C.11.
void SkipNotations(OctetReader& in) {
  for (unsigned first = in.Read(); (first & 0xFC) == 0xC0; first = in.Read()) {
    SkipIdentifyingString(in);
    SkipExternalIdentifiers(in, first);
  }
}

// C.2.7, C.10.
void SkipUnparsedEntities(OctetReader& in) {
  for (unsigned first = in.Read(); (first & 0xFE) == 0xD0; first = in.Read()) {
    SkipIdentifyingString(in);
    SkipIdentifyingString(in);                           // system
    if ((first & 0x01) != 0) SkipIdentifyingString(in);  // public
    SkipIdentifyingString(in);                           // notation
  }
}

void SkipOctet(OctetReader& in) { in.Read(); }

constexpr Component kDocumentComponents[] = {
    // C.2.3
    {0x40, SkipSequence<SkipAdditionalDatum>},
    {0x20, SkipInitialVocabulary},
    {0x10, SkipNotations},
    {0x08, SkipUnparsedEntities},
    {0x04, SkipOctetString},  // character encoding scheme
    {0x02, SkipOctet},        // standalone
    {0x01, SkipValue},        // version
};

}  // namespace

void SkipDocumentHead(OctetReader& in) { SkipComponents(in, kDocumentComponents, in.Read()); }

void SkipProcessingInstruction(OctetReader& in) {
  SkipIdentifyingString(in);
  SkipValue(in);
}

void SkipComment(OctetReader& in) { SkipValue(in); }

void SkipDocumentTypeDeclaration(OctetReader& in, unsigned first) {
  SkipExternalIdentifiers(in, first);
  while (true) {
    const unsigned child = in.Read();
    if (IsTerminator(child)) return;
    if (IsProcessingInstruction(child)) {
      SkipProcessingInstruction(in);
    } else if (IsComment(child)) {
      SkipComment(in);
    } else {
      in.Fail(u"Failed to parse FastInfoset. Invalid Encoding of Document Type Declaration.");
    }
  }
}

void SkipEntityReference(OctetReader& in, unsigned first) {
  SkipIdentifyingString(in);
  SkipExternalIdentifiers(in, first);
}

}  // namespace OvXmlLib16::fastinfoset
