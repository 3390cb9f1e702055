#include "tools/FiListing.h"

#include <algorithm>
#include <ostream>

#include "tools/FiPrinter.h"
#include "tools/FiTables.h"

namespace ovxml::fi {

namespace {

constexpr unsigned kTerminator = 0xF0, kDoubleTerminator = 0xFF;
constexpr std::string_view kIdentification("\xE0\x00\x00\x01", 4);

std::string With(bool present, const char* what) { return present ? std::string(", ") + what : std::string(); }

class Lister {
 public:
  Lister(Octets document, std::ostream& out) : m_in(document), m_printer(m_in, out) {}

  void List() {
    try {
      ListHead();
      ListItems();
    } catch (const Fault& fault) {
      m_printer.Line("not understood");
      throw Fault(std::string(fault.what()) + ". Octet " + std::to_string(m_in.GetOffset()) + " of " +
                  std::to_string(m_in.GetAll().size()) + '.');
    }
  }

 private:
  enum Place : unsigned { kInDocument = 1, kInElement = 2, kInDoctype = 4 };

  // What an octet begins, and where it may (clause 7).
  struct Item {
    unsigned mask, match, places;
    void (Lister::*list)(unsigned first);
  };
  // What is there when its bit is set.
  struct Component {
    unsigned bit;
    void (Lister::*list)();
  };
  static const Item kItems[];
  static const Component kDocumentComponents[], kVocabularyParts[];

  void ListHead();
  void ListIf(const Component& component, unsigned present) {
    if ((present & component.bit) != 0) (this->*component.list)();
  }
  void ListItems();

  void ListElement(unsigned first);
  void ListNamespaceAttributes();
  void ListAttributes();
  void ListChunk(unsigned first);
  void ListInstruction(unsigned first);
  void ListComment(unsigned first);
  void ListDoctype(unsigned first);
  void ListEntityReference(unsigned first);
  void ListTerminator(unsigned first);

  void ListAdditionalData();
  void ListInitialVocabulary();
  void ListNotations();
  void ListUnparsedEntities();
  void ListEncodingScheme() { m_printer.Line("character encoding scheme " + Shown(TakeOctets())); }
  void ListStandalone() { m_printer.Line(m_in.Read() == 0 ? "standalone: no" : "standalone: yes"); }
  void ListVersion() { ListValue("version", m_tables.otherStrings); }

  void ListExternalVocabulary();
  void ListAlphabets();
  void ListAlgorithms();
  template <TextTable Tables::*kTable>
  void ListTexts();
  template <ValueTable Tables::*kTable>
  void ListValues();
  template <NameTable Tables::*kTable>
  void ListSurrogates();

  void Open(Place place) {
    m_open.push_back(place);
    m_printer.Indent();
  }
  void Close() {
    m_open.pop_back();
    m_printer.Outdent();
  }

  Octets TakeOctets() { return m_in.Take(ReadNumber(m_in, NumberForm::kLengthOnSecondBit, m_in.Read())); }
  std::uint64_t ListCount(const std::string& what);
  void ListName(const std::string& start, NameTable& names, NumberForm form, unsigned first, unsigned literal);
  Octets ListText(TextTable& texts, const std::string& what);
  void ListIdentifiers(unsigned first);
  void ListValue(const std::string& what, ValueTable& values);
  void ListLiteral(const std::string& what, ValueTable& values, bool isAdded, const StoredString& string);
  StoredString ReadString(unsigned first, unsigned shift, NumberForm length);
  std::string Find(const ValueTable& values, std::uint64_t index);

  Cursor m_in;
  Printer m_printer;
  Tables m_tables;
  std::vector<Place> m_open;  // the document first
};

const Lister::Item Lister::kItems[] = {
    {0x80, 0x00, kInDocument | kInElement, &Lister::ListElement},
    {0xC0, 0x80, kInElement, &Lister::ListChunk},
    {0xFF, 0xE1, kInDocument | kInElement | kInDoctype, &Lister::ListInstruction},
    {0xFF, 0xE2, kInDocument | kInElement, &Lister::ListComment},
    {0xFC, 0xC4, kInDocument, &Lister::ListDoctype},
    {0xFC, 0xC8, kInElement, &Lister::ListEntityReference},
    {0xFF, kTerminator, kInDocument | kInElement | kInDoctype, &Lister::ListTerminator},
    {0xFF, kDoubleTerminator, kInElement | kInDoctype, &Lister::ListTerminator},
};

const Lister::Component Lister::kDocumentComponents[] = {
    // C.2.3
    {0x40, &Lister::ListAdditionalData},   {0x20, &Lister::ListInitialVocabulary}, {0x10, &Lister::ListNotations},
    {0x08, &Lister::ListUnparsedEntities}, {0x04, &Lister::ListEncodingScheme},    {0x02, &Lister::ListStandalone},
    {0x01, &Lister::ListVersion},
};

const Lister::Component Lister::kVocabularyParts[] = {
    // C.2.5
    {0x1000, &Lister::ListExternalVocabulary},
    {0x0800, &Lister::ListAlphabets},
    {0x0400, &Lister::ListAlgorithms},
    {0x0200, &Lister::ListTexts<&Tables::prefixes>},
    {0x0100, &Lister::ListTexts<&Tables::namespaces>},
    {0x0080, &Lister::ListTexts<&Tables::localNames>},
    {0x0040, &Lister::ListTexts<&Tables::otherNames>},
    {0x0020, &Lister::ListTexts<&Tables::otherUris>},
    {0x0010, &Lister::ListValues<&Tables::attributeValues>},
    {0x0008, &Lister::ListValues<&Tables::chunks>},
    {0x0004, &Lister::ListValues<&Tables::otherStrings>},
    {0x0002, &Lister::ListSurrogates<&Tables::elementNames>},
    {0x0001, &Lister::ListSurrogates<&Tables::attributeNames>},
};

void Lister::ListHead() {
  if (m_in.GetAll().starts_with("<?xml ")) {
    const std::size_t end = m_in.GetAll().find("?>");
    m_in.Take(end == Octets::npos ? end : end + 2);
    m_printer.Line("XML declaration (12.3)");
  }
  if (m_in.Take(kIdentification.size()) != kIdentification) throw Fault("there is no identification (12.6)");
  m_printer.Line("identification, version 1 (12.6)");
  const unsigned present = m_in.Read();
  if (present >= 0x80) throw Fault("the first bit is padding, and is set (C.2.3)");
  m_printer.Line(present == 0 ? "document, no optional components (C.2.3)" : "document, optional components (C.2.3)");
  Open(kInDocument);
  for (const Component& component : kDocumentComponents) ListIf(component, present);
}

void Lister::ListItems() {
  while (!m_open.empty()) {
    const unsigned first = m_in.Read();
    const Item* const item = std::find_if(std::begin(kItems), std::end(kItems), [&](const Item& one) {
      return (first & one.mask) == one.match && (one.places & m_open.back()) != 0;
    });
    if (item == std::end(kItems)) throw Fault("no item begins so here (clause 7)");
    (this->*item->list)(first);
  }
  if (m_in.IsAtEnd()) return;
  m_in.Take(m_in.GetAll().size() - m_in.GetOffset());
  m_printer.Line("behind the end of the document");
}

void Lister::ListElement(unsigned first) {
  const bool hasAttributes = (first & 0x40) != 0;
  const std::string start = "element" + With(hasAttributes, "attributes");
  if ((first & 0x3F) == 0x38) {
    m_printer.Line(start + ", namespace attributes (C.3)");
    ListNamespaceAttributes();
    first = m_in.Read();
    if (first >= 0x40) throw Fault("no name begins so (C.3.4)");
    ListName("", m_tables.elementNames, NumberForm::kIndexOnThirdBit, first, 0x3C);
  } else {
    ListName(start + ", ", m_tables.elementNames, NumberForm::kIndexOnThirdBit, first & 0x3F, 0x3C);
  }
  Open(kInElement);
  if (hasAttributes) ListAttributes();
}

// C.12.
void Lister::ListNamespaceAttributes() {
  m_printer.Indent();
  unsigned first = m_in.Read();
  for (; (first & 0xFC) == 0xCC; first = m_in.Read()) {
    m_printer.Line("namespace attribute" + With((first & 2) != 0, "prefix") + With((first & 1) != 0, "namespace"));
    m_printer.Indent();
    if ((first & 2) != 0) ListText(m_tables.prefixes, "prefix");
    if ((first & 1) != 0) ListText(m_tables.namespaces, "namespace");
    m_printer.Outdent();
  }
  if (first != kTerminator) throw Fault("neither a namespace attribute nor their end (C.3.4)");
  m_printer.Line("end of the namespace attributes");
  m_printer.Outdent();
}

// C.4.
void Lister::ListAttributes() {
  unsigned first = m_in.Read();
  for (; first < 0x80; first = m_in.Read()) {
    ListName("attribute, ", m_tables.attributeNames, NumberForm::kIndexOnSecondBit, first, 0x78);
    m_printer.Indent();
    ListValue("value", m_tables.attributeValues);
    m_printer.Outdent();
  }
  if (first != kTerminator && first != kDoubleTerminator) throw Fault("neither an attribute nor their end (C.3.6)");
  m_printer.Line(first == kTerminator ? "end of the attributes" : "end of the attributes and of the element");
  if (first == kDoubleTerminator) Close();
}

// C.7, with C.15.
void Lister::ListChunk(unsigned first) {
  if ((first & 0x20) != 0) {
    const std::uint64_t index = ReadNumber(m_in, NumberForm::kIndexOnFourthBit, first);
    return m_printer.Line("text " + std::to_string(index) + Find(m_tables.chunks, index));
  }
  ListLiteral("text", m_tables.chunks, (first & 0x10) != 0, ReadString(first, 2, NumberForm::kLengthOnSeventhBit));
}

void Lister::ListInstruction(unsigned) {
  m_printer.Line("processing instruction (C.5)");
  m_printer.Indent();
  ListText(m_tables.otherNames, "target");
  ListValue("content", m_tables.otherStrings);
  m_printer.Outdent();
}

void Lister::ListComment(unsigned) {
  m_printer.Line("comment (C.8)");
  m_printer.Indent();
  ListValue("content", m_tables.otherStrings);
  m_printer.Outdent();
}

void Lister::ListDoctype(unsigned first) {
  m_printer.Line("document type declaration (C.9)");
  Open(kInDoctype);
  ListIdentifiers(first);
}

void Lister::ListEntityReference(unsigned first) {
  m_printer.Line("entity reference (C.6)");
  m_printer.Indent();
  ListText(m_tables.otherNames, "name");
  ListIdentifiers(first);
  m_printer.Outdent();
}

// An octet ends one item, or two that end together (C.3.8).
void Lister::ListTerminator(unsigned first) {
  constexpr auto kNameOf = [](Place place) {
    return place == kInDocument ? "the document" : place == kInElement ? "the element" : "the declaration";
  };
  std::string meaning;
  for (int ends = first == kTerminator ? 1 : 2; ends != 0; --ends) {
    meaning += (meaning.empty() ? "end of " : " and of ") + std::string(kNameOf(m_open.back()));
    Close();
  }
  m_printer.Line(meaning);
}

// C.2.4.
void Lister::ListAdditionalData() {
  for (std::uint64_t left = ListCount("additional data"); left != 0; --left) {
    m_printer.Line("identifier " + Shown(TakeOctets()));
    const std::size_t length = TakeOctets().size();
    m_printer.Line("data, octets: " + std::to_string(length));
  }
}

void Lister::ListInitialVocabulary() {
  const unsigned high = m_in.Read(), present = high << 8 | m_in.Read();
  if (high >= 0x20) throw Fault("the first bits are padding, and are set (C.2.5)");
  m_printer.Line("initial vocabulary (C.2.5)");
  m_printer.Indent();
  for (const Component& part : kVocabularyParts) ListIf(part, present);
  m_printer.Outdent();
}

// C.2.6, C.11.
void Lister::ListNotations() {
  unsigned first = m_in.Read();
  for (; (first & 0xFC) == 0xC0; first = m_in.Read()) {
    m_printer.Line("notation (C.11)");
    m_printer.Indent();
    ListText(m_tables.otherNames, "name");
    ListIdentifiers(first);
    m_printer.Outdent();
  }
  if (first != kTerminator) throw Fault("neither a notation nor their end (C.2.6)");
  m_printer.Line("end of the notations");
}

// C.2.7, C.10.
void Lister::ListUnparsedEntities() {
  unsigned first = m_in.Read();
  for (; (first & 0xFE) == 0xD0; first = m_in.Read()) {
    m_printer.Line("unparsed entity (C.10)");
    m_printer.Indent();
    ListText(m_tables.otherNames, "name");
    ListIdentifiers((first & 1) | 2);
    ListText(m_tables.otherNames, "notation");
    m_printer.Outdent();
  }
  if (first != kTerminator) throw Fault("neither an unparsed entity nor their end (C.2.7)");
  m_printer.Line("end of the unparsed entities");
}

// What it holds is unknown here, so indexes tell nothing from now on.
void Lister::ListExternalVocabulary() {
  m_printer.Line("external vocabulary " + Shown(TakeOctets()));
  m_tables.hasUnknownEntries = true;
}

void Lister::ListAlphabets() {
  auto& alphabets = m_tables.encodings.alphabets;
  for (std::uint64_t left = ListCount("restricted alphabets"); left != 0; --left) {
    const Octets characters = TakeOctets();
    alphabets.push_back(WideOf(characters));
    m_printer.Line("alphabet " + std::to_string(Encodings::kFirstAlphabet + alphabets.size() - 1) + ": " +
                   Shown(characters));
  }
}

void Lister::ListAlgorithms() {
  auto& algorithms = m_tables.encodings.algorithms;
  for (std::uint64_t left = ListCount("encoding algorithms"); left != 0; --left) {
    algorithms.push_back(TakeOctets());
    m_printer.Line("algorithm " + std::to_string(Encodings::kFirstAlgorithm + algorithms.size() - 1) + ": " +
                   Shown(algorithms.back()));
  }
}

template <TextTable Tables::*kTable>
void Lister::ListTexts() {
  TextTable& table = m_tables.*kTable;
  for (std::uint64_t left = ListCount(table.name + " entries"); left != 0; --left) {
    const Octets text = TakeOctets();
    table.Add(text);
    m_printer.Line(table.name + " " + m_tables.NumberOfLast(table) + Shown(text));
  }
}

template <ValueTable Tables::*kTable>
void Lister::ListValues() {
  ValueTable& table = m_tables.*kTable;
  for (std::uint64_t left = ListCount(table.name + " entries"); left != 0; --left) {
    ListLiteral(table.name, table, /*isAdded=*/true, ReadString(m_in.Read(), 4, NumberForm::kLengthOnFifthBit));
  }
}

// C.16.
template <NameTable Tables::*kTable>
void Lister::ListSurrogates() {
  NameTable& table = m_tables.*kTable;
  for (std::uint64_t left = ListCount(table.name + " entries"); left != 0; --left) {
    const unsigned parts = m_in.Read();
    const auto part = [&](const TextTable& texts) {
      return m_tables.Get(texts, ReadNumber(m_in, NumberForm::kIndexOnSecondBit, m_in.Read()));
    };
    QName name;
    if ((parts & 2) != 0) name.prefix = part(m_tables.prefixes);
    if ((parts & 1) != 0) part(m_tables.namespaces);
    name.local = part(m_tables.localNames);
    table.Add(name);
    m_printer.Line(table.name + " " + m_tables.NumberOfLast(table) + name.Print());
  }
}

std::uint64_t Lister::ListCount(const std::string& what) {
  const std::uint64_t count = ReadNumber(m_in, NumberForm::kItems, m_in.Read());
  m_printer.Line(what + ": " + std::to_string(count));
  return count;
}

// QualifiedNameOrIndex (C.17, C.18).
void Lister::ListName(const std::string& start, NameTable& names, NumberForm form, unsigned first, unsigned literal) {
  if (first < literal) {
    const std::uint64_t index = ReadNumber(m_in, form, first);
    return m_printer.Line(start + "name " + std::to_string(index) + ": " + m_tables.Get(names, index).Print());
  }
  const bool hasPrefix = (first & 2) != 0, hasNamespace = (first & 1) != 0;
  if (first > literal + 3) throw Fault("no name begins so (C.17)");
  if (hasPrefix && !hasNamespace) throw Fault("a name has a prefix and no namespace (7.16)");
  const bool isAdded = names.Add({});
  m_printer.Line(start + "name " + m_tables.NumberOfLast(names) + "as follows");
  m_printer.Indent();
  QName name;
  if (hasPrefix) name.prefix = ListText(m_tables.prefixes, "prefix");
  if (hasNamespace) ListText(m_tables.namespaces, "namespace");
  name.local = ListText(m_tables.localNames, "local name");
  if (isAdded) names.SetLast(name);
  m_printer.Outdent();
}

// IdentifyingStringOrIndex (C.13).
Octets Lister::ListText(TextTable& texts, const std::string& what) {
  const unsigned first = m_in.Read();
  if ((first & 0x80) != 0) {
    const std::uint64_t index = ReadNumber(m_in, NumberForm::kIndexOnSecondBit, first);
    const Octets text = m_tables.Get(texts, index);
    m_printer.Line(what + " " + std::to_string(index) + ": " + Shown(text));
    return text;
  }
  const Octets text = m_in.Take(ReadNumber(m_in, NumberForm::kLengthOnSecondBit, first));
  texts.Add(text);
  m_printer.Line(what + " " + m_tables.NumberOfLast(texts) + Shown(text));
  return text;
}

void Lister::ListIdentifiers(unsigned first) {
  if ((first & 2) != 0) ListText(m_tables.otherUris, "system identifier");
  if ((first & 1) != 0) ListText(m_tables.otherUris, "public identifier");
}

// NonIdentifyingStringOrIndex on the first bit (C.14).
void Lister::ListValue(const std::string& what, ValueTable& values) {
  const unsigned first = m_in.Read();
  if ((first & 0x80) == 0) {
    return ListLiteral(what, values, (first & 0x40) != 0, ReadString(first, 4, NumberForm::kLengthOnFifthBit));
  }
  const std::uint64_t index = ReadNumber(m_in, NumberForm::kIndexOrZeroOnSecondBit, first);
  if (index == 0) return m_printer.Line(what + ", empty");
  m_printer.Line(what + " " + std::to_string(index) + Find(values, index));
}

void Lister::ListLiteral(const std::string& what, ValueTable& values, bool isAdded, const StoredString& string) {
  if (isAdded) values.Add(string);
  m_printer.Line(what + " " + (isAdded ? m_tables.NumberOfLast(values) : std::string()) +
                 Shown(Decode(string, m_tables.encodings)) + " in " + FormOf(string));
}

// C.19, C.20. `shift` bits of the first octet stand behind the form.
StoredString Lister::ReadString(unsigned first, unsigned shift, NumberForm length) {
  StoredString string{static_cast<Characters>(first >> shift & 3), 0, {}};
  if (string.characters == Characters::kAlphabet || string.characters == Characters::kAlgorithm) {
    const unsigned next = m_in.Read();
    string.index = ((first << (8 - shift) & 0xFF) | next >> shift) + 1;
    first = next;
  }
  string.octets = m_in.Take(ReadNumber(m_in, length, first));
  return string;
}

std::string Lister::Find(const ValueTable& values, std::uint64_t index) {
  const StoredString string = m_tables.Get(values, index);
  return string.octets.empty() ? ": unknown" : ": " + Shown(Decode(string, m_tables.encodings));
}

}  // namespace

void List(Octets document, std::ostream& out) { Lister(document, out).List(); }

}  // namespace ovxml::fi
