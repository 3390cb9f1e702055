// Writes a document far larger than the memory that the program allows itself, and reads it again:
// stream_large_file [MiB [file]]

#include <ovxmllib/ovxmllib.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <new>
#include <string>

using namespace OvXmlLib16;
using std::filesystem::path;

constexpr std::uint64_t kMiB = 1024 * 1024;
constexpr std::uint64_t kOrderBytes = 118;  // one order of the document in UTF-8

/// The document: any number of orders. There is no object for an order; each is made while it is written.
class Orders : public CXmlObjectBase {
 public:
  explicit Orders(std::uint64_t count) : m_count(count) {}

  static std::uint64_t AmountOf(std::uint64_t number) { return number * 7919 % 1'000'003; }

  CXmlObjectBase* GetBase() override { return this; }
  WString GetNamespace() const override { return u""; }

 protected:
  WString GetTargetNamespace() const override { return u""; }

  void ToXml_Int(CXmlWriter* writer, bool, const WChar* ns, const CSerializationContext&, bool) const override {
    writer->StartElement(u"orders", ns);
    for (std::uint64_t number = 0; number < m_count; ++number) {
      writer->StartElement(u"order", ns);
      writer->WriteAttribute(u"number", u"", FormatString(u"%09u", number), ItemType_ui4);
      writer->WriteAttribute(u"amount", u"", FormatString(u"%07u", AmountOf(number)), ItemType_ui4);
      writer->StartElement(u"customer", ns);
      writer->WriteText(u"Bäckerei Müller & Söhne, Hauptstraße 7", ItemType_string);
      writer->EndElement();
      writer->EndElement();
    }
    writer->EndElement();
  }

  CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CSerializationContext&, bool) override { return nullptr; }

 private:
  std::uint64_t m_count;
};

std::uint64_t amountRead = 0;  // global, as the callback is handed the element and nothing else

/// Adds up the orders and has each dropped. Its parts come before it, and must stay until it is complete.
bool TakeOrder(CXmlElement* element) {
  if (element->GetLocalName() != u"order") return false;
  amountRead += std::stoull(ToUtf8(element->GetAttribute(u"amount", u"")));
  return true;
}

void LimitMemory() {
#ifndef __has_feature  // only clang has it
#define __has_feature(feature) 0
#endif
#if !defined(__SANITIZE_ADDRESS__) && !__has_feature(address_sanitizer)
  const rlimit limit = {64 * kMiB, 64 * kMiB};
  const bool isLimited = setrlimit(RLIMIT_AS, &limit) == 0;
  std::cout << (isLimited ? "From here on, all memory is limited to 64 MiB.\n" : "The memory cannot be limited.\n");
#endif
}

void Report(const char* verb, const path& file, const auto& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  const double size = static_cast<double>(file_size(file)) / 1e6;
  std::cout << verb << size << " MB in " << taken.count() << " s, " << size / taken.count() << " MB/s\n";
}

bool WriteAndRead(std::uint64_t count, const path& file) {
  CSmartPtr<Orders> orders(new Orders(count));
  Report("Wrote ", file, [&] { orders->ToXmlFile(file, /*header=*/true, /*formatted=*/false); });
  CXmlDocument document(TakeOrder);
  Report("Read ", file, [&] { document.Load(file); });

  std::uint64_t amountWritten = 0;
  for (std::uint64_t number = 0; number < count; ++number) amountWritten += Orders::AmountOf(number);
  std::cout << count << " orders, amount written " << amountWritten << ", amount read " << amountRead << '\n';
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  std::cout << "Resident memory was at most " << usage.ru_maxrss << " KiB.\n";
  return amountRead == amountWritten;
}

int main(int argc, char** argv) {
  const std::uint64_t size = (argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1100) * kMiB;
  const path file = argc > 2 ? argv[2] : "stream_large_file.xml";
  CXmlObjectBase::Register(16, 1);
  AsyncToXmlFile(true);
  AsyncFromXmlFile(true);
  int status = 1;
  try {
    LimitMemory();
    status = WriteAndRead(size / kOrderBytes + 1, file) ? 0 : 1;
  } catch (const COvException& exception) {
    std::cerr << exception << '\n';
  } catch (const std::bad_alloc&) {
    std::cerr << "There is not enough memory.\n";
  }
  std::filesystem::remove(file);
  return status;
}
