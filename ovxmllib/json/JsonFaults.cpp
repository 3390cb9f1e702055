#include "ovxmllib/json/JsonFaults.h"

#include <algorithm>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

namespace {

WStringView MessageOf(JsonFault fault) {
  switch (fault) {
    case JsonFault::TooDeep:
      return u"JSON exceeded depth limit at line %d, position %d.";
    case JsonFault::ValueFound:
      return u"Expected Value '{', '[', '\"', '0-9', '-', 'true', 'false' or 'null', found '%c' at line %d, position "
             u"%d.";
    case JsonFault::ArrayEnds:
      return u"Unexpected End of File. Expected Array terminator character ']' at line %d, position %d.";
    case JsonFault::ArraySeparatorFound:
      return u"Expected Array separator character ',', found '%c' at line %d, position %d.";
    case JsonFault::ObjectEndsAtOnce:
      // Deliberate: two braces.
      return u"Unexpected End of File. Expected Object terminator character '}}' at line %d, position %d.";
    case JsonFault::NameFound:
      return u"Expected quotation mark character '\"' before Name, found '%c' at line %d, position %d.";
    case JsonFault::ColonEnds:
      return u"Unexpected End of File. Expected Object Name/Value separator character ':' at line %d, position %d.";
    case JsonFault::ColonFound:
      return u"Expected Object Name/Value separator character ':', found '%c' at line %d, position %d.";
    case JsonFault::ObjectValueEnds:
      return u"Unexpected End of File. Expected Object Value at line %d, position %d.";
    case JsonFault::ObjectEnds:
      return u"Unexpected End of File. Expected Object terminator character '}' at line %d, position %d.";
    case JsonFault::ObjectSeparatorFound:
      return u"Expected Object separator character ',', found '%c' at line %d, position %d.";
    case JsonFault::StringEnds:
      return u"Unexpected End of File. Expected string value at line %d, position %d.";
    case JsonFault::HexDigits:
      return u"Unexpected End of File. Expected 4 hexadecimal digits'\\uxxxx' at line %d, position %d.";
    case JsonFault::EscapeFound:
      return u"Invalid Escape Character '%c' at line %d, position %d.";
    case JsonFault::NullEnds:
      return u"Unexpected End of File. Expected value 'NULL' at line %d, position %d.";
    case JsonFault::Null:
      // Deliberate: the word is told in upper case and read in lower case only.
      return u"Expected 'NULL' at line %d, position %d.";
    case JsonFault::TrueEnds:
      return u"Unexpected End of File. Expected value 'true' at line %d, position %d.";
    case JsonFault::True:
      return u"Expected 'true' at line %d, position %d.";
    case JsonFault::FalseEnds:
      return u"Unexpected End of File. Expected value 'false' at line %d, position %d.";
    case JsonFault::False:
      return u"Expected 'false' at line %d, position %d.";
    case JsonFault::NumberEnds:
      return u"Unexpected End of File. Expected a number at line %d, position %d.";
    case JsonFault::DigitFound:
      return u"Expected a digit '0' to '9', found '%c' at line %d, position %d.";
    case JsonFault::Digit:
      // Deliberate: said of an exponent without a digit too, where the input has not ended.
      return u"Unexpected End of File. Expected a digit '0' to '9' at line %d, position %d.";
    case JsonFault::ExponentEnds:
      return u"Unexpected End of File. Expected '+', '-' or a number at line %d, position %d.";
  }
  return {};
}

}  // namespace

JsonPlace PlaceAtEnd(WStringView text, std::size_t firstPlain) noexcept {
  const WStringView lines = text.substr(0, firstPlain);
  const std::size_t lastLineFeed = lines.rfind(u'\n');
  const std::size_t lineStart = lastLineFeed == WStringView::npos ? 0 : lastLineFeed + 1;
  const auto before = std::count(lines.begin(), lines.end(), u'\n');
  return {static_cast<int>(before + 1), static_cast<int>(text.size() - lineStart)};
}

void ThrowJsonFault(JsonFault fault, WChar found, JsonPlace place, const WString& path) {
  const WStringView message = MessageOf(fault);
  const FormatArgument arguments[] = {found, place.line, place.column};
  const bool tellsCharacter = message.find(u"%c") != WStringView::npos;
  COvValidationException exception(FormatArguments(message, std::span(arguments).subspan(tellsCharacter ? 0 : 1)),
                                   path);
  exception.SetPlace(static_cast<std::uint64_t>(place.line), static_cast<std::uint64_t>(place.column));
  throw exception;
}

}  // namespace OvXmlLib16
