#include "ovxmllib/fastinfoset/FastInfosetContext.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

namespace {

struct Suggestion {
  ItemType type;
  CFastInfosetContext::EncodedCharacterString encoding;
};

// Each unsigned type takes the next wider signed form; the widest shares that of its signed brother.
constexpr Suggestion kSuggestions[] = {
    {ItemType_hexBinary, {2, 1}}, {ItemType_base64Binary, {2, 2}}, {ItemType_i1, {2, 3}},
    {ItemType_i2, {2, 3}},        {ItemType_ui1, {2, 3}},          {ItemType_i4, {2, 4}},
    {ItemType_ui2, {2, 4}},       {ItemType_i8, {2, 5}},           {ItemType_ui4, {2, 5}},
    {ItemType_ui8, {2, 5}},       {ItemType_r4, {2, 7}},           {ItemType_r8, {2, 8}},
    {ItemType_boolean, {2, 6}},   {ItemType_duration, {0, 0}},     {ItemType_yearMonth, {1, 2}},
    {ItemType_monthDay, {1, 2}},  {ItemType_year, {1, 2}},         {ItemType_month, {1, 2}},
    {ItemType_day, {1, 2}},       {ItemType_date, {1, 2}},         {ItemType_datetime, {1, 2}},
    {ItemType_time, {1, 2}},      {ItemType_decimal, {1, 1}},      {ItemType_integer, {1, 1}}};

}  // namespace

CFastInfosetContext::~CFastInfosetContext() = default;

// Decided: a number that is no type is refused and not looked up, see docs/decisions.md.
void CFastInfosetContext::CheckItemType(std::uint32_t itemType) {
  if (itemType >= kItemTypes) throw COvInvalidParamException(FormatString(u"There is no ItemType %d.", itemType));
}

CFastInfosetContext::EncodedCharacterString CFastInfosetContext::GetEncoding(std::uint32_t itemType) const {
  CheckItemType(itemType);
  return m_encodings[itemType];
}

void CFastInfosetContext::SetEncoding(std::uint32_t itemType, EncodedCharacterString encoding) {
  CheckItemType(itemType);
  m_encodings[itemType] = encoding;
}

void CFastInfosetContext::SetSuggestedValues() {
  for (const auto& [type, encoding] : kSuggestions) SetEncoding(static_cast<std::uint32_t>(type), encoding);
}

}  // namespace OvXmlLib16
