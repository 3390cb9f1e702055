// The reader of JSON text: for every text, both forms of the grammar tell the same events, or the one finds a fault and
// the other declines.
//
// Input: a byte of options (1: comments, 2: a name for the root), then the text.

#include "fuzz/Input.h"
#include "tests/json/Recorder.h"

namespace OvXmlLib16::fuzz {
namespace {

void RequirePlace(const COvException& fault, WStringView text) {
  const auto lines = static_cast<std::uint64_t>(std::count(text.begin(), text.end(), u'\n')) + 1;
  const bool isWithin = fault.GetLine() >= 1 && fault.GetLine() <= lines && fault.GetColumn() <= text.size();
  Require(isWithin, "the place of a fault lies within the text");
  Require(fault.GetPath().starts_with(u'$'), "a fault has a path");
}

void Run(Input input) {
  const unsigned options = input.TakeByte();
  const bool comments = (options & 1) != 0;
  const char* const root = (options & 2) != 0 ? "r" : "";
  const ExactText wide(unicode::ToWideLossy(CharactersOf(input.TakeRest())));
  const std::string utf8 = ToUtf8(wide.View());
  const auto bytes = ExactRoom<char>(utf8.size());
  std::copy(utf8.begin(), utf8.end(), bytes.get());

  test::EventLog log;
  const auto fault =
      FailureOf<COvValidationException>([&] { test::ReadWide(wide.View(), comments, ToWide(root), log); });
  const std::string events = test::EventsOfBytes({bytes.get(), utf8.size()}, comments, root);
  if (fault) RequirePlace(*fault, wide.View());
  // Half of a pair of surrogates has no form in UTF-8; it is shown as U+FFFD.
  if (events == "declined")
    return Require(fault || log.text.find("\xEF\xBF\xBD") != std::string::npos, "a fault is told");
  Require(!fault && log.text == events, "both forms tell the same");
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace OvXmlLib16::fuzz;
  Run(Input(data, size));
  RequireNothingLeft();
  return 0;
}
