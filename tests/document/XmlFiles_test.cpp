// The entry points for files and for bytes.

#include <gtest/gtest.h>

#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/foundation/OvZip.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Bytes.h"
#include "tests/support/Documents.h"
#include "tests/support/FileTest.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using std::filesystem::path;
using test::AnyObject;
using test::MessageOf;
using test::ReadFile;
using test::TextOf;
using XmlFiles = test::FileTest;

std::string Expanded(const std::string& bytes) {
  const auto data = Decompress(test::Bytes(bytes), bytes.size(), /*maxBytes=*/0);
  return data.has_value() ? TextOf(*data) : bytes;
}

struct Form {
  XmlEncoding encoding = XmlEncoding_UTF8;
  CompressionType compression = CompressionType_None;
  EOLType eol = EOLType_LF;
};

void WriteTo(const path& file, const AnyObject& object, const Form& form) {
  object.ToXmlFile(file, /*header=*/true, /*formatted=*/false, form.encoding, form.eol, {}, form.compression);
}

// Something of everything, some of it 100 times, so that it goes out in several pieces.
CSmartPtr<AnyObject> LargeSample() {
  CSmartPtr<AnyObject> sample(new AnyObject);
  sample->FromXml(test::kSample.data());
  const std::vector<CSmartPtr<AnyObject>> children = sample->children;
  for (int i = 0; i < 100; ++i) sample->children.insert(sample->children.end(), children.begin(), children.end());
  return sample;
}

CBinaryData StreamOf(const AnyObject& object, const Form& form) {
  return object.ToXmlStream(/*header=*/true, /*formatted=*/false, form.encoding, form.eol, {}, form.compression);
}

TEST_F(XmlFiles, KeepTheTreeByEveryWay) {
  const std::string headers[] = {"", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
                                 test::Utf16(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>"),
                                 test::Utf16(u"<?xml version=\"1.0\"?>")};
  const std::string wrappers[] = {"", "\x1F\x8B", "\x78"};
  const CSmartPtr<AnyObject> sample = LargeSample();
  const path file = m_folder / "f\xC3\xBC";
  for (int i = 0; i < 18; ++i) {
    const Form form = {XmlEncoding(1 + i % 3), CompressionType(i / 3 % 3), EOLType(i / 9)};
    SCOPED_TRACE(testing::Message() << form.encoding << form.compression << form.eol);
    const bool isPlain = form.compression == CompressionType_None;
    const CBinaryData data = StreamOf(*sample, form);
    const std::string plain = TextOf(StreamOf(*sample, {form.encoding, CompressionType_None, form.eol}));
    const std::string mark = form.encoding == XmlEncoding_UTF8 ? "" : "\xFF\xFE";
    EXPECT_TRUE(TextOf(data).starts_with(isPlain ? headers[form.encoding] : wrappers[form.compression]));
    EXPECT_TRUE(Expanded(TextOf(data)) == plain);
    AnyObject read;
    read.FromXmlStream(data);
    EXPECT_EQ(read, *sample);
    if (form.compression == CompressionType_ZLib) continue;
    for (const bool directly : {false, true}) {
      AsyncToXmlFile(directly);
      WriteTo(file, *sample, form);
      EXPECT_EQ(ReadFile(file).starts_with(wrappers[CompressionType_GZip]), !isPlain);
      EXPECT_TRUE(Expanded(ReadFile(file)) == mark + plain) << "written directly: " << directly;
      for (const bool inChunks : {false, true}) {
        if (inChunks && !isPlain) continue;
        AsyncFromXmlFile(inChunks);
        AnyObject again;
        EXPECT_EQ(MessageOf([&] { again.FromXmlFile(file.u16string().c_str()); }), u"(nothing was thrown)");
        EXPECT_EQ(again, *sample);
      }
    }
  }
  for (const WStringView name : {u" CFileTextStream ", u" CFileBinaryStream "}) {
    EXPECT_NE(test::MonitorLines(name), u"") << "counted under its own name";
  }
}

// Writes a long text, then what it is told to.
class LateFault : public AnyObject {
 public:
  explicit LateFault(void (*fault)(CXmlWriter&)) : m_fault(fault) {}

 protected:
  void ToXml_Int(CXmlWriter* writer, bool, const WChar*, const CSerializationContext&, bool) const override {
    writer->StartElement(u"a", {});
    writer->WriteText(WString(9'000, u'x'), ItemType_string);
    m_fault(*writer);
  }

 private:
  void (*m_fault)(CXmlWriter&);
};

TEST_F(XmlFiles, SayWhatFailedAndLeaveWhatWasWritten) {
  const CSmartPtr<AnyObject> small(new AnyObject), large = LargeSample();
  small->FromXml("<a/>");
  const LateFault throwing([](CXmlWriter& writer) {
    writer.WriteText(u"lost", ItemType_string);
    throw COvException(u"mine");
  });
  const LateFault unfinished([](CXmlWriter& writer) { writer.WriteText(u"kept", ItemType_string); });
  const LateFault unwritable([](CXmlWriter& writer) { writer.WriteText(u"lost\x01", ItemType_string); });
  const LateFault late([](CXmlWriter& writer) { writer.WriteXsiNil(); });
  const std::string old = "what stood here before", none = "(no file)";
  const std::string begun = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>" + std::string(9'000, 'x');
  const struct {
    const AnyObject& object;
    Form form;
    WStringView message;
    std::string left;  // when it is written directly; otherwise nothing is touched
  } cases[] = {
      {*large, {{}, CompressionType_ZLib}, u"ZLIB Compression only available for To Stream methods.", old},
      {*small, {XmlEncoding_UTF8, CompressionType_GZip}, u"Failed to compress data. [Error Code: 0]", old},
      {*small, {XmlEncoding_None}, u"Unknown Encoding, select UTF-8 (contact our support team)", ""},
      {*small, {static_cast<XmlEncoding>(4)}, u"Unknown Encoding, select UTF-8 (contact our support team)", ""},
      {*small, {XmlEncoding_UTF16, {}, static_cast<EOLType>(2)}, u"Invalid EOL type.", "\xFF\xFE"},
      {*small, {XmlEncoding_UTF8, {}, static_cast<EOLType>(-1)}, u"Invalid EOL type.", ""},
      {throwing, {}, u"mine", begun},
      {unfinished, {}, u"An Element has not been closed.", begun + "kept"},
      {unwritable, {}, u"The text holds the character U+0001 at position 4, which XML does not allow.", begun},
      {late, {}, u"Attributes must be added before elements", begun},
  };
  for (const auto& c : cases) {
    for (const bool directly : {false, true}) {
      AsyncToXmlFile(directly);
      for (const std::string& before : {old, none}) {
        const path file = m_folder / "file";
        std::filesystem::remove(file);
        if (before == old) test::WriteFile(file, old);
        EXPECT_EQ(MessageOf([&] { WriteTo(file, c.object, c.form); }), c.message);
        const std::string after = std::filesystem::exists(file) ? ReadFile(file) : none;
        EXPECT_EQ(after, directly && c.left != old ? c.left : before) << ToUtf8(c.message);
        EXPECT_TRUE(AllFilesAreClosed()) << ToUtf8(c.message);
      }
    }
    if (c.form.compression == CompressionType_ZLib) continue;
    EXPECT_EQ(MessageOf([&] { StreamOf(c.object, c.form); }), c.message);
  }
}

TEST_F(XmlFiles, NameTheFileAndTheSystemsError) {
  const CSmartPtr<AnyObject> large = LargeSample();
  AnyObject object;
  const struct {
    path file;
    WString number;
    WStringView reading;
  } cases[] = {{m_folder / "", u"00000015", u"Failed to read the contents of"},
               {m_folder / "no/f\xC3\xBC", u"00000002", u"Failed to open"},
               {"", u"00000002", u"Failed to open"},
               {"/dev/full", u"0000001C", {}}};
  for (const auto& c : cases) {
    const path& file = c.file;
    const WString name = u" the file [" + file.u16string() + u"] ";
    for (const bool directly : {false, true}) {
      AsyncToXmlFile(directly);
      AsyncFromXmlFile(directly);
      EXPECT_EQ(MessageOf([&] { WriteTo(file, *large, {XmlEncoding_UTF16}); }),
                u"Failed to write data to" + name + u"error [0x" + c.number + u"]");
      if (!c.reading.empty()) {
        EXPECT_EQ(MessageOf([&] { object.FromXmlFile(file); }),
                  WString(c.reading) + name + u"Error [0x" + c.number + u"]");
      }
      EXPECT_TRUE(AllFilesAreClosed());
    }
  }
  EXPECT_EQ(MessageOf([&] { WriteTo("/dev/full", *large, {}); }),
            u"Failed to write data to the file. Error [0x0000001C]");
  EXPECT_EQ(MessageOf([&] { object.FromXmlStream(CBinaryData()); }), u"XML Stream is empty!");
  EXPECT_EQ(MessageOf([&] { object.FromXml(""); }), u"XML String is empty!");
  EXPECT_EQ(MessageOf([&] { large->ToXmlFile(u"\xD800"); }),
            u"The text holds the unpaired surrogate U+D800 at position 0.");
}

}  // namespace
}  // namespace OvXmlLib16
