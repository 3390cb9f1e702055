// Reads the freedesktop MIME database into an object, answers two questions about it, writes its image types back in
// three forms and reads each form again: mime_types [database [folder for the output]]

#include <ovxmllib/ovxmllib.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <vector>

using namespace OvXmlLib16;
using std::filesystem::path;

constexpr const WChar* kMimeNamespace = u"http://www.freedesktop.org/standards/shared-mime-info";
constexpr const WChar* kXmlNamespace = u"http://www.w3.org/XML/1998/namespace";

/// An element `mime-type`. Its rules for telling a file's type by the content are left out.
struct MimeType {
  WString type;                      ///< as "image/png"
  std::map<WString, WString> names;  ///< by language, as "pt_BR"; English is the empty language
  std::set<WString> patterns;        ///< of file names, as "*.png"
  bool operator==(const MimeType&) const = default;
};

/// The document element `mime-info`.
class MimeDatabase : public CXmlObjectBase {
 public:
  std::vector<MimeType> types;

  CXmlObjectBase* GetBase() override { return this; }
  WString GetNamespace() const override { return kMimeNamespace; }

 protected:
  WString GetTargetNamespace() const override { return kMimeNamespace; }

  CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* child, const CSerializationContext& context, bool) override {
    types.clear();
    for (; child != nullptr; child = child->GetNextSiblingElement()) {
      MimeType& type = types.emplace_back();
      type.type = child->GetAttribute(u"type", u"");
      for (CXmlElement* part = child->GetFirstElement(); part != nullptr; part = part->GetNextSiblingElement()) {
        if (DoesElementNameMatch(context, part, u"comment", kMimeNamespace)) {
          type.names[part->GetAttribute(u"lang", kXmlNamespace)] = part->GetText();
        } else if (DoesElementNameMatch(context, part, u"glob", kMimeNamespace)) {
          type.patterns.insert(part->GetAttribute(u"pattern", u""));
        }
      }
    }
    return nullptr;
  }

  void ToXml_Int(CXmlWriter* writer, bool, const WChar* ns, const CSerializationContext&, bool) const override {
    writer->SetDefaultNamespace(ns);
    writer->StartElement(u"mime-info", ns);
    for (const MimeType& type : types) {
      writer->StartElement(u"mime-type", ns);
      writer->WriteAttribute(u"type", u"", type.type, ItemType_string);
      for (const auto& [language, name] : type.names) {
        writer->StartElement(u"comment", ns);
        if (!language.empty()) writer->WriteAttribute(u"lang", kXmlNamespace, language, ItemType_string);
        writer->WriteText(name, ItemType_string);
        writer->EndElement();
      }
      for (const WString& pattern : type.patterns) {
        writer->StartElement(u"glob", ns);
        writer->WriteAttribute(u"pattern", u"", pattern, ItemType_string);
        writer->EndElement();
      }
      writer->EndElement();
    }
    writer->EndElement();
  }
};

/// Lets `work` read or write `file` and says what that took.
void Report(const char* verb, const path& file, const auto& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
  std::cout << verb << file.string() << ": " << file_size(file) / 1024 << " KiB in " << taken.count() << " ms\n";
}

int main(int argc, char** argv) {
  const path source = argc > 1 ? argv[1] : "/usr/share/mime/packages/freedesktop.org.xml";
  const path folder = argc > 2 ? path(argv[2]) : std::filesystem::current_path();
  std::cout.precision(3);
  CXmlObjectBase::Register(16, 1);
  try {
    CSmartPtr<MimeDatabase> database(new MimeDatabase);
    std::vector<MimeType>& types = database->types;
    Report("Read ", source, [&] { database->FromXmlFile(source); });
    std::cout << "How many types of files does it know? " << types.size() << '\n';
    for (MimeType& type : types) {
      if (!type.patterns.contains(u"*.odt")) continue;
      std::cout << "What is *.odt? " << ToUtf8(type.type) << ", in German \"" << ToUtf8(type.names[u"de"]) << "\"\n";
    }

    std::erase_if(types, [](const MimeType& type) { return !type.type.starts_with(u"image/"); });
    std::cout << "Kept the " << types.size() << " types of images, to write them in three forms.\n";
    const path formatted = folder / "images.xml", utf16 = folder / "images.utf16.xml", gzip = folder / "images.xml.gz";
    Report("Wrote ", formatted, [&] { database->ToXmlFile(formatted); });
    Report("Wrote ", utf16, [&] { database->ToXmlFile(utf16, true, false, XmlEncoding_UTF16); });
    Report("Wrote ", gzip,
           [&] { database->ToXmlFile(gzip, true, false, XmlEncoding_UTF8, EOLType_LF, {}, CompressionType_GZip); });

    for (const path& file : {formatted, utf16, gzip}) {
      CSmartPtr<MimeDatabase> again(new MimeDatabase);
      Report("Read ", file, [&] { again->FromXmlFile(file); });
      if (again->types != types) throw COvException(FormatString(u"%s differs from what was written.", file.string()));
    }
    std::cout << "All three hold what was written.\n";
    return 0;
  } catch (const COvException& exception) {
    std::cerr << exception << '\n';
    return 1;
  }
}
