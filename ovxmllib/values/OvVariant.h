// One value of any type that a property may have.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>
#include <variant>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/PrimitiveRows.h"

namespace OvXmlLib16 {

class CXmlCollectionBase;

/// The shuttle between a property and the metadata: a reader fills one from text and hands it to the property's setter,
/// a writer gets one from the getter and prints it.
///
/// It is in one of three states: invalid (GetTypeAsEnum() is ItemType_none), holding a value, or nil. A nil variant
/// keeps the type that it had and holds no value. Every setter leaves it holding the value, whatever it was before.
///
/// Copies are deep, but for objects, of which a copy shares the one. Moving leaves an invalid variant behind and
/// allocates nothing, but for a text that lies elsewhere (ReferTo): where the memory for that fails, the program ends.
/// A variant belongs to one thread at a time.
struct OVXMLLIB_API OvVariant {
 public:
  /// Invalid.
  OvVariant() noexcept = default;
  OvVariant(const OvVariant& other);
  OvVariant(OvVariant&& other) noexcept : OvVariant() { Swap(other); }
  OvVariant& operator=(const OvVariant& other) { return *this = OvVariant(other); }
  OvVariant& operator=(OvVariant&& other) noexcept;
  virtual ~OvVariant() = default;

  /// Makes it invalid and gives up the value, or the reference to the object.
  void Clear() noexcept;
  /// The same, but the memory of a text is kept for the next one unless it is large: for getters, whose variant serves
  /// one property after the other.
  void SetInvalid() noexcept {
    constexpr std::size_t kLargeText = 4096;  // code units
    HoldNothing(ItemType_none, /*isNil=*/false);
    if (m_text.capacity() > kLargeText) FreeText();
  }
  /// Whether it holds a value or is nil.
  bool IsValid() const noexcept { return m_type != ItemType_none || m_isNil; }

  bool IsNil() const noexcept { return m_isNil; }
  /// Gives up the value, keeps the type.
  void SetNil() noexcept;

  ItemType GetTypeAsEnum() const noexcept { return m_type; }
  /// The name of the type, "datetime" for instance. Throws COvException "Invalid Type 27" (the number) for an invalid
  /// variant and one of an object.
  WString GetType() const;

  /// The value as CConversions prints it; `format`, of which null counts as empty, as it takes it for r4, r8 and
  /// decimal. Throws COvException "Invalid Type 27 to convert to string" for types without text, and what CConversions
  /// throws for the format. Not to be asked of a nil variant, which has no value to print.
  WString ToString(const WChar* format) const;
  /// Appends the same, without allocating when `out` has the room, but for binary data.
  void AppendTo(WString& out, WStringView format = {}) const;

  /// Takes the value that `text` stands for, by the whitespace rule and as CConversions reads `type`. Throws the
  /// COvException that ToString has for types without text, and what CConversions throws; the variant then keeps what
  /// it held.
  void FromString(WStringView text, ItemType type, CWhitespaceUtils::WhitespaceRule rule);

  /// The same for a text that lives until the variant changes: a string that no rule changes stays where it is, and
  /// GetString and GetStringView take it from there.
  void ReferTo(WStringView text, ItemType type, CWhitespaceUtils::WhitespaceRule rule);
  /// The same for a string as it stands.
  void ReferTo(WStringView text) noexcept {
    GiveUpOwned();
    m_lent = text;
    m_form = kLentText;
    m_type = ItemType_string;
    m_isNil = false;
  }

  /// \name Values
  /// A setter copies its argument and sets the type. A getter is to be asked only for the type that the variant holds,
  /// which in debug builds is asserted; values of other types count as default values.
  /// \{
  void SetHexBinary(const CBinaryData& value) { Set<ItemType_hexBinary>(value); }
  CBinaryData GetHexBinary() const { return Get<ItemType_hexBinary>(); }
  void SetBase64Binary(const CBinaryData& value) { Set<ItemType_base64Binary>(value); }
  CBinaryData GetBase64Binary() const { return Get<ItemType_base64Binary>(); }
  void SetI1(std::int8_t value) { Set<ItemType_i1>(value); }
  std::int8_t GetI1() const { return Get<ItemType_i1>(); }
  void SetI2(std::int16_t value) { Set<ItemType_i2>(value); }
  std::int16_t GetI2() const { return Get<ItemType_i2>(); }
  void SetI4(std::int32_t value) { Set<ItemType_i4>(value); }
  std::int32_t GetI4() const { return Get<ItemType_i4>(); }
  void SetI8(std::int64_t value) { Set<ItemType_i8>(value); }
  std::int64_t GetI8() const { return Get<ItemType_i8>(); }
  void SetUI1(std::uint8_t value) { Set<ItemType_ui1>(value); }
  std::uint8_t GetUI1() const { return Get<ItemType_ui1>(); }
  void SetUI2(std::uint16_t value) { Set<ItemType_ui2>(value); }
  std::uint16_t GetUI2() const { return Get<ItemType_ui2>(); }
  void SetUI4(std::uint32_t value) { Set<ItemType_ui4>(value); }
  std::uint32_t GetUI4() const { return Get<ItemType_ui4>(); }
  void SetUI8(std::uint64_t value) { Set<ItemType_ui8>(value); }
  std::uint64_t GetUI8() const { return Get<ItemType_ui8>(); }
  void SetR4(float value) { Set<ItemType_r4>(value); }
  float GetR4() const { return Get<ItemType_r4>(); }
  void SetR8(double value) { Set<ItemType_r8>(value); }
  double GetR8() const { return Get<ItemType_r8>(); }
  void SetDuration(const CDateTimeSpan& value) { Set<ItemType_duration>(value); }
  CDateTimeSpan GetDuration() const { return Get<ItemType_duration>(); }
  void SetYearMonth(const CDateTime& value) { Set<ItemType_yearMonth>(value); }
  CDateTime GetYearMonth() const { return Get<ItemType_yearMonth>(); }
  void SetMonthDay(const CDateTime& value) { Set<ItemType_monthDay>(value); }
  CDateTime GetMonthDay() const { return Get<ItemType_monthDay>(); }
  void SetYear(std::uint16_t value) { Set<ItemType_year>(value); }
  std::uint16_t GetYear() const { return Get<ItemType_year>(); }
  void SetMonth(std::uint8_t value) { Set<ItemType_month>(value); }
  std::uint8_t GetMonth() const { return Get<ItemType_month>(); }
  void SetDay(std::uint8_t value) { Set<ItemType_day>(value); }
  std::uint8_t GetDay() const { return Get<ItemType_day>(); }
  void SetDate(const CDateTime& value) { Set<ItemType_date>(value); }
  CDateTime GetDate() const { return Get<ItemType_date>(); }
  void SetDateTime(const CDateTime& value) { Set<ItemType_datetime>(value); }
  CDateTime GetDateTime() const { return Get<ItemType_datetime>(); }
  void SetTime(const CDateTime& value) { Set<ItemType_time>(value); }
  CDateTime GetTime() const { return Get<ItemType_time>(); }
  void SetChar(WChar value) { Set<ItemType_char>(value); }
  WChar GetChar() const { return Get<ItemType_char>(); }
  void SetString(WStringView value) { Set<ItemType_string>(value); }
  WString GetString() const { return WString(GetStringView()); }
  /// The text without a copy; valid until the variant changes.
  WStringView GetStringView() const { return m_form == kLentText ? m_lent : Get<ItemType_string>(); }
  void SetBoolean(bool value) { Set<ItemType_boolean>(value); }
  bool GetBoolean() const { return Get<ItemType_boolean>(); }
  void SetDecimal(const CDecimal& value) { Set<ItemType_decimal>(value); }
  CDecimal GetDecimal() const { return Get<ItemType_decimal>(); }
  void SetInteger(const CBigInteger& value) { Set<ItemType_integer>(value); }
  CBigInteger GetInteger() const { return Get<ItemType_integer>(); }
  /// Takes a reference to the object, which may be null.
  void SetXmlObject(CXmlObjectBase* object);
  /// The object, of a variant that holds a collection the collection.
  CSmartPtr<CXmlObjectBase> GetXmlObject() const;
  /// The same object, with the reference that the variant had; leaves null.
  CSmartPtr<CXmlObjectBase> TakeXmlObject() noexcept;
  /// Takes a reference to the collection. Null is allowed, but must not be asked for.
  void SetXmlCollection(CXmlCollectionBase* collection);
  CSmartPtr<CXmlCollectionBase> GetXmlCollection() const;
  /// \}

  /// The value of a type known at compile time, valid until the variant changes; as the getters, for generic code. A
  /// text that lies elsewhere is copied first, which may throw std::bad_alloc.
  template <ItemType kType>
  const typename Primitive<kType>::Value& Get() const noexcept(kType != ItemType_string) {
    using Value = typename Primitive<kType>::Value;
    assert(m_type == kType);
    if constexpr (kType == ItemType_string) OwnText();
    return m_form == kFormOf<Value> ? At<Value>() : NoValue<Value>();
  }

  /// The setter of a type known at compile time. The memory of a text, and of a value of the same type, is used again.
  template <ItemType kType, class T>
  void Set(T&& value) {
    using Value = typename Primitive<kType>::Value;
    Store<Value>(std::forward<T>(value));
    NoteHeld<kType>();
  }

 private:
  // Room for a value of up to eight bytes that owns nothing.
  struct Scalar {
    alignas(8) std::byte bytes[8];
  };

  // Which C++ type a value has: the first primitive type with values of it.
  using Form = std::uint8_t;
  static constexpr Form kNoForm = ItemType_none;
  static constexpr Form kLentText = 0xFF;  // the text is m_lent's
  template <class Value, int kFrom = ItemType_hexBinary>
  static consteval Form FindForm() {
    if constexpr (std::is_same_v<typename Primitive<static_cast<ItemType>(kFrom)>::Value, Value>) {
      return kFrom;
    } else {
      return FindForm<Value, kFrom + 1>();
    }
  }
  template <class Value>
  static constexpr Form kFormOf = FindForm<Value>();

  template <class Value>
  const Value& At() const noexcept {
    if constexpr (std::is_same_v<Value, WString>) {
      return m_text;
    } else if constexpr (std::is_same_v<Value, CDateTime>) {
      return m_dateTime;
    } else if constexpr (std::is_same_v<Value, CDecimal>) {
      return m_decimal;
    } else if constexpr (std::is_arithmetic_v<Value>) {
      return *std::launder(reinterpret_cast<const Value*>(std::get_if<Scalar>(&m_owned)->bytes));
    } else {
      return *std::get_if<Value>(&m_owned);
    }
  }

  // The value first, which may throw or be part of what was there; only then that goes.
  template <class Value, class T>
  void Store(T&& value) {
    if constexpr (std::is_same_v<Value, WString>) {
      m_text = std::forward<T>(value);
      GiveUpOwned();
    } else if constexpr (std::is_same_v<Value, CDateTime>) {
      m_dateTime = std::forward<T>(value);
      GiveUpOwned();
    } else if constexpr (std::is_same_v<Value, CDecimal>) {
      m_decimal = std::forward<T>(value);
      if (m_owns && m_form != kFormOf<CDecimal>) m_owned.template emplace<Scalar>();
      m_owns = m_decimal.IsLong();
    } else if constexpr (std::is_arithmetic_v<Value>) {
      const auto copy = static_cast<Value>(value);
      GiveUpOwned();
      ::new (std::get_if<Scalar>(&m_owned)->bytes) Value(copy);
    } else if (Value* const held = std::get_if<Value>(&m_owned); held != nullptr) {
      *held = std::forward<T>(value);
    } else {
      m_owned.template emplace<Value>(Value(std::forward<T>(value)));
      m_owns = true;
    }
  }

  template <ItemType kType>
  void NoteHeld() noexcept {
    m_form = kFormOf<typename Primitive<kType>::Value>;
    m_type = kType;
    m_isNil = false;
  }
  template <ItemType kType>
  bool TakeShort(WStringView text);
  template <ItemType kType>
  static void Read(OvVariant& value, WStringView text, CWhitespaceUtils::WhitespaceRule rule);

  template <class Value>
  static const Value& NoValue() noexcept {
    static const Value kNone{};
    return kNone;
  }

  void GiveUpOwned() noexcept {
    if (m_owns) DestroyOwned();
  }
  void DestroyOwned() noexcept;
  void FreeText() noexcept;
  void OwnText() const {
    if (m_form != kLentText) return;
    m_text = m_lent;
    m_form = kFormOf<WString>;
  }
  void HoldNothing(ItemType type, bool isNil) noexcept {
    GiveUpOwned();
    m_form = kNoForm;
    m_type = type;
    m_isNil = isNil;
  }
  void Swap(OvVariant& other) noexcept;

  bool m_isNil = false;
  bool m_owns = false;            // m_owned holds something else than a scalar, or m_decimal has memory of its own
  mutable Form m_form = kNoForm;  // of the value that there is: none for an object, for nil and for an invalid variant
  ItemType m_type = ItemType_none;
  // What is most frequent stands by itself, so that a text keeps its memory and the others, which have virtual
  // destructors, need no call. What they hold while m_form is another does not count.
  mutable WString m_text;
  WStringView m_lent;  // not owned
  CDateTime m_dateTime;
  CDecimal m_decimal;
  std::variant<Scalar, CBinaryData, CDateTimeSpan, CBigInteger, CSmartPtr<CXmlObjectBase>> m_owned;
};

}  // namespace OvXmlLib16
