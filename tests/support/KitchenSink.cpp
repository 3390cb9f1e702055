#include "tests/support/KitchenSink.h"

#include <array>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/mapping/ClassfactoryBase.h"

namespace OvXmlLib16::test {

namespace {

constexpr std::array<WStringView, 3> kShades = {u"light", u"dark", u"no shade"};

struct SampleTexts {
  ItemType type;
  std::array<WStringView, 3> texts;
};

constexpr SampleTexts kTexts[] = {
    {ItemType_hexBinary, {u"00FF7F", u"", u"AB"}},
    {ItemType_base64Binary, {u"AAEC/w==", u"", u"b3ZlcmZsb3c="}},
    {ItemType_i1, {u"-128", u"127", u"0"}},
    {ItemType_i2, {u"-32768", u"32767", u"1"}},
    {ItemType_i4, {u"-2147483648", u"2147483647", u"42"}},
    {ItemType_i8, {u"-9223372036854775808", u"9223372036854775807", u"0"}},
    {ItemType_ui1, {u"255", u"0", u"7"}},
    {ItemType_ui2, {u"65535", u"0", u"8"}},
    {ItemType_ui4, {u"4294967295", u"0", u"9"}},
    {ItemType_ui8, {u"18446744073709551615", u"0", u"10"}},
    {ItemType_r4, {u"1.5E10", u"-1.5", u"INF"}},
    {ItemType_r8, {u"0.1", u"NaN", u"-2.5E-300"}},
    {ItemType_duration, {u"P1Y2M3DT4H5M6.789S", u"-PT1S", u"P400D"}},
    {ItemType_yearMonth, {u"2024-02", u"1999-12Z", u"2000-01+02:00"}},
    {ItemType_monthDay, {u"--02-29", u"--12-31Z", u"--01-01"}},
    {ItemType_year, {u"2024", u"9999", u"1000"}},
    {ItemType_month, {u"--12", u"--01", u"--06"}},
    {ItemType_day, {u"---31", u"---01", u"---15"}},
    {ItemType_date, {u"2024-02-29", u"1970-01-01Z", u"0001-01-01-05:00"}},
    {ItemType_datetime, {u"2024-02-29T23:59:59.999999999Z", u"1970-01-01T00:00:00", u"2000-06-15T12:00:00+14:00"}},
    {ItemType_time, {u"23:59:59.5", u"00:00:00Z", u"12:34:56-05:00"}},
    {ItemType_char, {u"x", u"\u00FC", u"<"}},
    {ItemType_string, {u"plain text", u" <&> \"'\n \u20AC \U0001F600 ]]> ", u""}},
    {ItemType_boolean, {u"true", u"false", u"true"}},
    {ItemType_decimal, {u"-123456789012345678901234567890.000000001", u"0.5", u"1000000"}},
    {ItemType_integer, {u"123456789012345678901234567890", u"-1", u"0"}},
};

// As generated code does it, at start-up.
[[maybe_unused]] const bool g_registered = (CXmlObjectBase::Register(16, 1), true);

// The generated factory of shapes.
class ShapeFactory : public CClassfactoryBase {
 public:
  static CSmartPtr<CXmlObjectBase> Make(CXmlElement* element) {
    WString type = GetElementType(element);
    if (type.empty()) {
      type = element->GetLocalName();
    } else if (GetElementTypeNamespaceUri(element) != kNs) {
      return nullptr;
    }
    if (type == u"circle") return static_cast<CXmlObjectBase*>(Circle::Make());
    if (type == u"square") return static_cast<CXmlObjectBase*>(Square::Make());
    return nullptr;
  }
};

}  // namespace

WStringView SampleText(ItemType type, int number) {
  for (const SampleTexts& row : kTexts) {
    if (row.type == type) return row.texts[static_cast<std::size_t>(number) % row.texts.size()];
  }
  return {};
}

const WChar* ShadeToText(int value) { return kShades[static_cast<std::size_t>(value)].data(); }

int ShadeFromText(const WChar* text) {
  const auto* found = std::find(kShades.begin(), kShades.end(), ViewOf(text));
  if (found == kShades.end()) throw COvInvalidValueException(WString(u"There is no shade ") + text);
  return static_cast<int>(found - kShades.begin());
}

void TouchyValue::Get(OvVariant& value) const {
  if (IsSet() && **this == 14) throw COvInvalidStateException(u"14 is not told");
  Value::Get(value);
}

void TouchyValue::Set(const OvVariant& value) {
  if (value.IsValid() && !value.IsNil() && value.GetI4() == 13) throw COvInvalidParamException(u"13 is not taken");
  Value::Set(value);
}

bool Equal(const CAttributeCol& a, const CAttributeCol& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const CAttribute* mine, const CAttribute* others) {
    return mine->GetName() == others->GetName() && mine->GetNamespace() == others->GetNamespace() &&
           mine->GetValue() == others->GetValue();
  });
}

bool Equal(const CElement& a, const CElement& b) {
  auto &mine = const_cast<CElement&>(a), &others = const_cast<CElement&>(b);
  return a.GetName() == b.GetName() && a.GetNamespace() == b.GetNamespace() && a.GetText() == b.GetText() &&
         Equal(*mine.GetAttributes(), *others.GetAttributes()) &&
         AreEqualItems(*mine.GetChildElements(), *others.GetChildElements());
}

bool Equal(const CXmlObjectBase* a, const CXmlObjectBase* b) {
  if (a == nullptr || b == nullptr) return a == b;
  const auto *sample = dynamic_cast<const SampleObject*>(a), *otherSample = dynamic_cast<const SampleObject*>(b);
  if (sample != nullptr && otherSample != nullptr) return sample->Equals(*otherSample);
  const auto *element = dynamic_cast<const CElement*>(a), *otherElement = dynamic_cast<const CElement*>(b);
  return element != nullptr && otherElement != nullptr && Equal(*element, *otherElement);
}

void FillElement(CElement& element, int number) {
  element.GetAttributes()->Add(u"plain", u"a \"value\"");
  element.GetAttributes()->Add(u"qualified", u"\u20AC", u"urn:third");
  element.SetText(u"text & more");
  if (number < kMixedContent) return;
  const CSmartPtr<CElement> child = element.GetChildElements()->Add(u"child", u"");
  child->SetText(u"of the child");
  element.GetChildElements()->Add(u"empty", u"urn:third");
}

void AnyAttributes::Fill(int number) {
  for (int i = 0; i <= number % 3; ++i) {
    m_held->Add((u"any" + ToWide(std::to_string(i))).c_str(), u"\u00E4 'x' \"y\" <&>", u"urn:other");
  }
}

void Note::Init() {
  Generated::Init();
  m_isNil = false;
}

void Note::Fill(int number) {
  Generated::Fill(number);
  m_isNil = number % 3 == 0;
  if (m_isNil) text.Init();
}

bool Note::Equals(const SampleObject& other) const {
  return Generated::Equals(other) && m_isNil == dynamic_cast<const Note&>(other).m_isNil;
}

CSmartPtr<Shape> Shape::Make(int number) {
  if (number % 2 == 0) return static_cast<Circle*>(Circle::Make());
  return static_cast<Square*>(Square::Make());
}

CSmartPtr<CXmlObjectBase> Shape::MakeFor(CXmlElement* element) { return ShapeFactory::Make(element); }

void ShadeCol::Clear() {
  m_items.clear();
  FireOnCollectionChange();
}

void ShadeCol::Remove(int index) {
  CheckIndex(index);
  m_items.erase(m_items.begin() + index);
  FireOnCollectionChange();
}

void ShadeCol::Add(Shade shade) {
  m_items.push_back(shade);
  FireOnCollectionChange();
}

void ShadeCol::ToXml_Int(CXmlWriter* writer, bool, const WChar*, const CSerializationContext& context, bool) const {
  ValidateCount(context);
  for (const Shade shade : m_items) {
    writer->StartElement(GetElementName(), m_strNamespace);
    writer->WriteText(ShadeToText(shade), ItemType_string);
    writer->EndElement();
  }
}

CXmlElement* ShadeCol::FromXml_Int(CXmlElement*, CXmlElement* child, const CSerializationContext& context, bool) {
  const WString name = GetElementName();
  while (child != nullptr && DoesElementNameMatch(context, child, name.c_str(), m_strNamespace.c_str())) {
    Add(static_cast<Shade>(ShadeFromText(child->GetText().c_str())));
    child = child->GetNextSiblingElement();
  }
  return child;
}

void MiddleGroup::Fill(int number) {
  const int members = 2;
  number % members == 0 ? item.Fill(number) : inner.Fill(number);
  id.Fill(number);
}

CSmartPtr<KitchenSink> FilledSink(int number) {
  const CSmartPtr<KitchenSink> sink = KitchenSink::Make();
  sink->Fill(number);
  if (number % 2 == 1) {
    sink->nillable.MakeNil();
    sink->nillableShade.MakeNil();
    sink->byDefault.Assign(42);
    sink->shadeByDefault.Assign(kDark);
    sink->withDefault.Assign(7);
  }
  return sink;
}

CSmartPtr<KitchenSink> LeastSink() {
  const CSmartPtr<KitchenSink> sink = KitchenSink::Make();
  sink->version.Assign(u"1");
  sink->nillable.MakeNil();
  sink->nillableShade.MakeNil();
  return sink;
}

Primitives::Primitives() : Primitives(std::make_integer_sequence<int, kPrimitives>()) {}
Primitives::~Primitives() = default;
Lists::Lists() : Lists(std::make_integer_sequence<int, kPrimitives>()) {}
Lists::~Lists() = default;

template class Generated<Primitives>;
template class Generated<Lists>;
template class Generated<Point>;
template class Generated<Money>;
template class Generated<Note>;
template class Generated<Circle, Shape>;
template class Generated<Square, Shape>;
template class Generated<Sequence>;
template class Generated<Choice>;
template class Generated<All>;
template class Generated<InnerGroup>;
template class Generated<MiddleGroup>;
template class Generated<OuterGroup>;
template class Generated<Pair>;
template class Generated<Groups>;
template class Generated<KitchenSink>;

}  // namespace OvXmlLib16::test
