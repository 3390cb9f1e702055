// Input: a byte that chooses an algorithm or an alphabet, then octets, then the same octets as text. Values that are
// read are written as values that read the same.

#include "fuzz/Input.h"
#include "ovxmllib/fastinfoset/FastInfosetBinaryData.h"
#include "ovxmllib/fastinfoset/RestrictedAlphabet.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16::fuzz {
namespace {

constexpr unsigned kAlgorithms = 12;  // one behind the last, too
constexpr unsigned kUuidLength = 16;

std::size_t OctetsOfOne(std::uint32_t algorithm) {
  constexpr std::size_t kSizes[kAlgorithms] = {0, 0, 0, 2, 4, 8, 1, 4, 8, kUuidLength, 0, 0};
  return kSizes[algorithm];
}

// One value of a number's size, or octets of any length: they are written as what reads the same.
void CheckOctets(std::uint32_t algorithm, Bytes octets) {
  const CFastInfosetBinaryData data(octets.data(), octets.size());
  WString text;
  if (octets.empty() || FailureOf([&] { text = data.GetAsString(algorithm); })) return;
  const bool isOne = OctetsOfOne(algorithm) == 0 || octets.size() == OctetsOfOne(algorithm);
  if (!isOne || (algorithm == 6 && octets[0] != 0x30 && octets[0] != 0x38)) return;
  CFastInfosetBinaryData again;
  again.SetAsEncodedString(algorithm, text.c_str());
  // The text of a real may lack its last bits.
  const bool isReal = algorithm == 7 || algorithm == 8;
  Require(isReal || again == data, "a value is written as the same octets");
}

void CheckText(std::uint32_t algorithm, const WString& text) {
  CFastInfosetBinaryData data;
  if (FailureOf([&] { data.SetAsEncodedString(algorithm, WStringView(text)); })) return;
  if (algorithm == 10 || (algorithm == 9 && data.GetLength() % kUuidLength != 0)) return;
  const WString printed = data.GetAsString(algorithm);
  CFastInfosetBinaryData again;
  again.SetAsEncodedString(algorithm, WStringView(printed));
  Require(printed.empty() == data.IsEmpty(), "no octets are no text");
}

void CheckAlphabet(unsigned size, Bytes octets) {
  WString alphabet;
  for (unsigned i = 0; i < size; ++i) alphabet += static_cast<WChar>(u'!' + i);
  WString text;
  if (FailureOf([&] { fastinfoset::DecodeAlphabet(alphabet, octets, text); })) return;
  Require(text.find_first_not_of(alphabet) == WString::npos, "all characters are the alphabet's");
  const auto room = ExactRoom<unsigned char>(text.size());
  std::size_t length = 0;
  if (FailureOf([&] { length = fastinfoset::EncodeAlphabet(alphabet, text, room.get()); })) return;
  WString again;
  fastinfoset::DecodeAlphabet(alphabet, {room.get(), length}, again);
  Require(again == text, "a string over an alphabet is written as it reads");
}

void Run(Input input) {
  const unsigned choice = input.TakeByte();
  const Bytes octets = input.TakeRest();
  if (choice >= kAlgorithms) return CheckAlphabet(choice - kAlgorithms, octets);
  CheckOctets(choice, octets);
  CheckText(choice, UnitsOf(octets));
  CheckText(choice, unicode::ToWideLossy(CharactersOf(octets)));
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::fuzz::Run({data, size});
  OvXmlLib16::fuzz::RequireNothingLeft();
  return 0;
}
