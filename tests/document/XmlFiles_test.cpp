// The entry points for files and for bytes.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <typeinfo>

#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/foundation/OvZip.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"

namespace OvXmlLib16 {
namespace {

using std::filesystem::directory_iterator;
using std::filesystem::path;
using test::AnyObject;
using test::ReadFile;

std::ptrdiff_t CountDescriptors() { return std::distance(directory_iterator("/proc/self/fd"), directory_iterator()); }

std::string TextOf(const CBinaryData& data) { return {data.GetData(), data.GetData() + data.GetLength()}; }

std::string Expanded(const std::string& bytes) {
  const auto data = Decompress(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), /*maxBytes=*/0);
  return data.has_value() ? TextOf(*data) : bytes;
}

CSmartPtr<AnyObject> Bound(const std::string& document) {
  CSmartPtr<AnyObject> object(new AnyObject);
  object->FromXml(document.c_str());
  return object;
}

// The message of the COvException that `call` throws, with a word ahead if it is of a class below.
WString Failure(const std::function<void()>& call) {
  try {
    call();
  } catch (const COvException& exception) {
    if (typeid(exception) == typeid(COvException)) return exception.GetMessage();
    return (typeid(exception) == typeid(COvInvalidValueException) ? u"value: " : u"other: ") + exception.GetMessage();
  }
  return u"(nothing was thrown)";
}

// Each test ends with the switches off and as many open files as it began with.
class XmlFiles : public testing::Test {
 protected:
  void TearDown() override {
    AsyncToXmlFile(false);
    AsyncFromXmlFile(false);
    EXPECT_EQ(CountDescriptors(), m_descriptors);
  }

  const std::ptrdiff_t m_descriptors = CountDescriptors();
  const test::TemporaryFolder m_folder;
};

struct Form {
  XmlEncoding encoding = XmlEncoding_UTF8;
  CompressionType compression = CompressionType_None;
  EOLType eol = EOLType_LF;
};

void WriteTo(const path& file, const AnyObject& object, const Form& form) {
  object.ToXmlFile(file, /*header=*/true, /*formatted=*/false, form.encoding, form.eol,
                   CSerializationContext::GetDefaultContext(), form.compression);
}

// Something of everything, some of it 100 times, so that it goes out in several pieces.
CSmartPtr<AnyObject> LargeSample() {
  CSmartPtr<AnyObject> sample = Bound(ToUtf8(test::kSample));
  const std::vector<CSmartPtr<AnyObject>> children = sample->children;
  for (int i = 0; i < 100; ++i) sample->children.insert(sample->children.end(), children.begin(), children.end());
  return sample;
}

std::vector<Form> AllForms() {
  std::vector<Form> forms;
  for (const EOLType eol : {EOLType_CRLF, EOLType_LF}) {
    for (const XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoHeader}) {
      for (const CompressionType compression : {CompressionType_None, CompressionType_GZip, CompressionType_ZLib}) {
        forms.push_back({encoding, compression, eol});
      }
    }
  }
  return forms;
}

CBinaryData StreamOf(const AnyObject& object, const Form& form) {
  return object.ToXmlStream(/*header=*/true, /*formatted=*/false, form.encoding, form.eol,
                            CSerializationContext::GetDefaultContext(), form.compression);
}

TEST_F(XmlFiles, KeepTheTreeByEveryWay) {
  const std::string headers[] = {"", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
                                 test::Utf16(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>"),
                                 test::Utf16(u"<?xml version=\"1.0\"?>")};
  const std::string wrappers[] = {"", "\x1F\x8B", "\x78"};
  const CSmartPtr<AnyObject> sample = LargeSample();
  const path file = m_folder / "f\xC3\xBC";
  for (const Form& form : AllForms()) {
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
        EXPECT_EQ(Failure([&] { again.FromXmlFile(file.u16string().c_str()); }), u"(nothing was thrown)");
        EXPECT_EQ(again, *sample);
      }
    }
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
  const CSmartPtr<AnyObject> small = Bound("<a/>"), large = LargeSample();
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
      {*large,
       {XmlEncoding_UTF8, CompressionType_ZLib},
       u"ZLIB Compression only available for To Stream methods.",
       old},
      {*small, {XmlEncoding_UTF8, CompressionType_GZip}, u"Failed to compress data. [Error Code: 0]", old},
      {*small, {XmlEncoding_None}, u"Unknown Encoding, select UTF-8 (contact our support team)", ""},
      {*small, {static_cast<XmlEncoding>(4)}, u"Unknown Encoding, select UTF-8 (contact our support team)", ""},
      {*small, {XmlEncoding_UTF16, {}, static_cast<EOLType>(2)}, u"Invalid EOL type.", "\xFF\xFE"},
      {throwing, {}, u"mine", begun},
      {unfinished, {}, u"An Element has not been closed.", begun + "kept"},
      {unwritable, {}, u"value: The text holds the character U+0001 at position 4, which XML does not allow.", begun},
      {late, {}, u"Attributes must be added before elements", begun},
  };
  for (const auto& c : cases) {
    for (const bool directly : {false, true}) {
      AsyncToXmlFile(directly);
      for (const std::string& before : {old, none}) {
        const path file = m_folder / "file";
        std::filesystem::remove(file);
        if (before == old) test::WriteFile(file, old);
        EXPECT_EQ(Failure([&] { WriteTo(file, c.object, c.form); }), c.message);
        const std::string after = std::filesystem::exists(file) ? ReadFile(file) : none;
        EXPECT_EQ(after, directly && c.left != old ? c.left : before) << ToUtf8(c.message);
        EXPECT_EQ(CountDescriptors(), m_descriptors) << ToUtf8(c.message);
      }
    }
    if (c.form.compression == CompressionType_ZLib) continue;
    EXPECT_EQ(Failure([&] { StreamOf(c.object, c.form); }), c.message);
  }
}

TEST_F(XmlFiles, NameTheFileAndTheSystemsError) {
  const CSmartPtr<AnyObject> large = LargeSample();
  const path folder = m_folder / "", missing = m_folder / "no/f\xC3\xBC", full = "/dev/full";
  const auto named = [](WStringView what, const path& file, WStringView error) {
    return WString(what) + u" the file [" + file.u16string() + u"] " + WString(error) + u"]";
  };
  const auto writing = [&](const path& file, WStringView number) {
    return named(u"Failed to write data to", file, u"error [0x" + WString(number));
  };
  const struct {
    path file;
    XmlEncoding encoding;
    WString finished, direct;
  } writes[] = {
      {folder, XmlEncoding_UTF8, writing(folder, u"00000015"), writing(folder, u"00000015")},
      {missing, XmlEncoding_UTF16, writing(missing, u"00000002"), writing(missing, u"00000002")},
      {full, XmlEncoding_UTF16, writing(full, u"0000001C"), writing(full, u"0000001C")},
      {full, XmlEncoding_UTF8, writing(full, u"0000001C"), u"Failed to write data to the file. Error [0x0000001C]"},
  };
  for (const auto& w : writes) {
    for (const bool directly : {false, true}) {
      AsyncToXmlFile(directly);
      EXPECT_EQ(Failure([&] { WriteTo(w.file, *large, {w.encoding}); }), directly ? w.direct : w.finished);
      EXPECT_EQ(CountDescriptors(), m_descriptors);
    }
  }
  const std::pair<path, WString> reads[] = {
      {folder, named(u"Failed to read the contents of", folder, u"Error [0x00000015")},
      {missing, named(u"Failed to open", missing, u"Error [0x00000002")},
      {"", named(u"Failed to open", "", u"Error [0x00000002")},
  };
  for (const auto& read : reads) {
    for (const bool inChunks : {false, true}) {
      AsyncFromXmlFile(inChunks);
      AnyObject object;
      EXPECT_EQ(Failure([&] { object.FromXmlFile(read.first); }), read.second);
      EXPECT_EQ(CountDescriptors(), m_descriptors);
    }
  }
  AnyObject object;
  EXPECT_EQ(Failure([&] { object.FromXmlStream(CBinaryData()); }), u"XML Stream is empty!");
  EXPECT_EQ(Failure([&] { object.FromXml(""); }), u"XML String is empty!");
  EXPECT_EQ(Failure([&] { large->ToXmlFile(u"\xD800"); }),
            u"value: The text holds the unpaired surrogate U+D800 at position 0.");
}

}  // namespace
}  // namespace OvXmlLib16
