#include "ovxmllib/fastinfoset/FastInfosetContext.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/binding/SerializationContext.h"

namespace OvXmlLib16 {
namespace {

std::string TextOf(const CFIVocabulary::CFIStringTable& table) {
  std::string text;
  for (const WString& entry : table) text += ToUtf8(entry) + ' ';
  return text;
}

std::string TextOf(const CFIVocabulary::CFIQNameTable& table) {
  std::string text;
  for (const auto& parts : table) {
    for (const std::uint32_t index : {parts.m_dwPrefixIndex, parts.m_dwNamespaceIndex, parts.m_dwLocalNameIndex}) {
      text += std::to_string(index) + ' ';
    }
  }
  return text;
}

void Fill(CFIVocabulary& vocabulary) {
  vocabulary.AddElement(u"", u"", u"a");
  vocabulary.AddElement(u"p", u"u", u"a");
  vocabulary.AddElement(u"p", u"u", u"a");
  vocabulary.AddElement(u"q", u"u", u"a");
  vocabulary.AddAttribute(u"p", u"u", u"a");
  vocabulary.AddAttribute(u"", u"v", u"b");
  vocabulary.AddAttributeValue(u"1");
  vocabulary.AddElementValue(u"2");
}

TEST(FIVocabulary, SharesThePartsOfNames) {
  CFIVocabulary vocabulary;
  Fill(vocabulary);
  EXPECT_EQ(TextOf(vocabulary.GetElementNamesTable()), "0 0 1 2 2 1 3 2 1 ");
  EXPECT_EQ(TextOf(vocabulary.GetAttributeNamesTable()), "2 2 1 0 3 2 ");
  EXPECT_EQ(TextOf(vocabulary.GetPrefixNamesTable()), "xml p q ");
  EXPECT_EQ(TextOf(vocabulary.GetNamespaceNamesTable()), "http://www.w3.org/XML/1998/namespace u v ");
  EXPECT_EQ(TextOf(vocabulary.GetLocalNamesTable()), "a b ");
}

// The readers' tables take a string twice, the writers' index does not.
TEST(FIVocabulary, DumpsItsIndexesAsSpecified) {
  CFIVocabulary vocabulary;
  Fill(vocabulary);
  vocabulary.AddLocalName(u"b");
  EXPECT_EQ(TextOf(vocabulary.GetLocalNamesTable()), "a b b ");
  vocabulary.AddLocalName(u"B");
  testing::internal::CaptureStdout();
  vocabulary.Dump();
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "\n** Dumping FI Tables **\n\nAttr Names\na\1u\1p, 1\nb\1v\1, 2\n\nAttr Values\n1, 1\n"
            "\nCharacter Chunks\n2, 1\n\nElement Names\na\1\1, 1\na\1u\1p, 2\na\1u\1q, 3\n"
            "\nLocal Names\nB, 3\na, 1\nb, 2\n\nNamespace Names\nhttp://www.w3.org/XML/1998/namespace, 1\nu, 2\nv, 3\n"
            "\nPrefix Names\np, 2\nq, 3\nxml, 1\n");
}

TEST(FastInfosetContext, CopiesAreTheirOwn) {
  CSerializationContext source;
  CFastInfosetContext* const options = source.GetFIContext();
  Fill(*options->GetVocabulary());
  options->SetElementMaxAddLength(9);
  options->SetExternalVocabularyURI(u"urn:v");
  CSerializationContext copy(source), assigned;
  CFastInfosetContext* const before = assigned.GetFIContext();
  assigned = source;
  EXPECT_EQ(assigned.GetFIContext(), before) << "the pointer stays";
  options->GetVocabulary()->AddLocalName(u"late");
  for (const CSerializationContext* context : {&copy, &assigned}) {
    EXPECT_NE(context->GetFIContext(), options);
    EXPECT_EQ(context->GetFIContext()->GetElementMaxAddLength(), 9u);
    EXPECT_EQ(context->GetFIContext()->GetExternalVocabularyURI(), u"urn:v");
    EXPECT_EQ(TextOf(context->GetFIContext()->GetVocabulary()->GetLocalNamesTable()), "a b ");
  }
  assigned = CSerializationContext();
  EXPECT_EQ(before->GetElementMaxAddLength(), 6u);
}

TEST(FastInfosetContext, SuggestsEncodingsAndLeavesTheOthers) {
  CFastInfosetContext context;
  context.SetEncoding(ItemType_string, {1, 1});
  context.SetSuggestedValues();
  std::string encodings;
  for (std::uint32_t type = 0; type <= ItemType_XmlCollection; ++type) {
    encodings += std::to_string(context.GetEncoding(type).m_dwType) +
                 (context.GetEncoding(type).m_dwType == 0 ? "" : std::to_string(context.GetEncoding(type).m_dwIndex)) +
                 ' ';
  }
  EXPECT_EQ(encodings, "0 21 22 23 23 24 25 23 24 25 25 27 28 0 12 12 12 12 12 12 12 12 0 11 26 11 11 0 0 ");
  EXPECT_THROW(context.GetEncoding(29), COvInvalidParamException);
  EXPECT_THROW(context.SetEncoding(29, {}), COvInvalidParamException);
}

TEST(ThreadsFastInfosetContext, AreMadeOnce) {
  for (int round = 0; round < 50; ++round) {
    const CSerializationContext context;
    std::vector<CFastInfosetContext*> got(4);
    std::vector<std::thread> threads;
    for (CFastInfosetContext*& mine : got) threads.emplace_back([&] { mine = context.GetFIContext(); });
    for (std::thread& thread : threads) thread.join();
    for (const CFastInfosetContext* mine : got) EXPECT_EQ(mine, got[0]);
  }
}

}  // namespace
}  // namespace OvXmlLib16
