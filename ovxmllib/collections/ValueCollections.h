// The collections of plain values, one class for each primitive type but `char`.
//
// All are made, changed, read and written alike: see ValueCollection and, for dates and times, CdatetimeBaseCol. What
// differs is the type of the values, which is that of Primitive<type>::Value: how they are read and printed is told by
// CConversions, which facets they hold by CPrimitiveRestrictions. A collection is made with new and belongs to a
// CSmartPtr:
//
//     const CSmartPtr<Ci4Col> sizes = new Ci4Col(u"size", u"urn:shop", /*minOccurs=*/1, /*maxOccurs=*/-1);
//     sizes->Add(42);
//     for (const std::int32_t size : *sizes) total += size;
#pragma once

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/collections/ValueCollection.h"

namespace OvXmlLib16 {

// Compiled once, in ValueCollections.cpp.
// clang-format off
extern template class ValueItems<CBinaryData>;
extern template class ValueItems<std::int8_t>;
extern template class ValueItems<std::int16_t>;
extern template class ValueItems<std::int32_t>;
extern template class ValueItems<std::int64_t>;
extern template class ValueItems<std::uint8_t>;
extern template class ValueItems<std::uint16_t>;
extern template class ValueItems<std::uint32_t>;
extern template class ValueItems<std::uint64_t>;
extern template class ValueItems<float>;
extern template class ValueItems<double>;
extern template class ValueItems<CDateTimeSpan>;
extern template class ValueItems<CDateTime>;
extern template class ValueItems<WString>;
extern template class ValueItems<bool>;
extern template class ValueItems<CDecimal>;
extern template class ValueItems<CBigInteger>;
extern template class ValueCollection<ItemType_hexBinary>;
extern template class ValueCollection<ItemType_base64Binary>;
extern template class ValueCollection<ItemType_i1>;
extern template class ValueCollection<ItemType_i2>;
extern template class ValueCollection<ItemType_i4>;
extern template class ValueCollection<ItemType_i8>;
extern template class ValueCollection<ItemType_ui1>;
extern template class ValueCollection<ItemType_ui2>;
extern template class ValueCollection<ItemType_ui4>;
extern template class ValueCollection<ItemType_ui8>;
extern template class ValueCollection<ItemType_r4>;
extern template class ValueCollection<ItemType_r8>;
extern template class ValueCollection<ItemType_duration>;
extern template class ValueCollection<ItemType_year>;
extern template class ValueCollection<ItemType_month>;
extern template class ValueCollection<ItemType_day>;
extern template class ValueCollection<ItemType_string>;
extern template class ValueCollection<ItemType_boolean>;
extern template class ValueCollection<ItemType_decimal>;
extern template class ValueCollection<ItemType_integer>;
extern template class DateCollection<ItemType_datetime>;
extern template class DateCollection<ItemType_date>;
extern template class DateCollection<ItemType_yearMonth>;
extern template class DateCollection<ItemType_time>;
extern template class DateCollection<ItemType_monthDay>;

/// Bytes, as hexadecimal digits.
class OVXMLLIB_API ChexBinaryCol : public ValueCollection<ItemType_hexBinary> { public: using ValueCollection::ValueCollection; };
/// Bytes, in base64.
class OVXMLLIB_API Cbase64BinaryCol : public ValueCollection<ItemType_base64Binary> { public: using ValueCollection::ValueCollection; };
/// Integers of 8 bits.
class OVXMLLIB_API Ci1Col : public ValueCollection<ItemType_i1> { public: using ValueCollection::ValueCollection; };
/// Integers of 16 bits.
class OVXMLLIB_API Ci2Col : public ValueCollection<ItemType_i2> { public: using ValueCollection::ValueCollection; };
/// Integers of 32 bits.
class OVXMLLIB_API Ci4Col : public ValueCollection<ItemType_i4> { public: using ValueCollection::ValueCollection; };
/// Integers of 64 bits.
class OVXMLLIB_API Ci8Col : public ValueCollection<ItemType_i8> { public: using ValueCollection::ValueCollection; };
/// Unsigned integers of 8 bits.
class OVXMLLIB_API Cui1Col : public ValueCollection<ItemType_ui1> { public: using ValueCollection::ValueCollection; };
/// Unsigned integers of 16 bits.
class OVXMLLIB_API Cui2Col : public ValueCollection<ItemType_ui2> { public: using ValueCollection::ValueCollection; };
/// Unsigned integers of 32 bits.
class OVXMLLIB_API Cui4Col : public ValueCollection<ItemType_ui4> { public: using ValueCollection::ValueCollection; };
/// Unsigned integers of 64 bits.
class OVXMLLIB_API Cui8Col : public ValueCollection<ItemType_ui8> { public: using ValueCollection::ValueCollection; };
/// Reals of single precision; the format is that of printf.
class OVXMLLIB_API Cr4Col : public ValueCollection<ItemType_r4> { public: using ValueCollection::ValueCollection; };
/// Reals of double precision; the format is that of printf.
class OVXMLLIB_API Cr8Col : public ValueCollection<ItemType_r8> { public: using ValueCollection::ValueCollection; };
/// Durations.
class OVXMLLIB_API CdurationCol : public ValueCollection<ItemType_duration> { public: using ValueCollection::ValueCollection; };
/// Years, without the rest of a date.
class OVXMLLIB_API CyearCol : public ValueCollection<ItemType_year> { public: using ValueCollection::ValueCollection; };
/// Months, `--05`.
class OVXMLLIB_API CmonthCol : public ValueCollection<ItemType_month> { public: using ValueCollection::ValueCollection; };
/// Days of a month, `---05`.
class OVXMLLIB_API CdayCol : public ValueCollection<ItemType_day> { public: using ValueCollection::ValueCollection; };
/// Texts, in UTF-16.
class OVXMLLIB_API CstringCol : public ValueCollection<ItemType_string> { public: using ValueCollection::ValueCollection; };
/// Truth values; the iterators give `bool&`.
class OVXMLLIB_API CbooleanCol : public ValueCollection<ItemType_boolean> { public: using ValueCollection::ValueCollection; };
/// Decimal numbers of any size; the format is a number of decimal places.
class OVXMLLIB_API CdecimalCol : public ValueCollection<ItemType_decimal> { public: using ValueCollection::ValueCollection; };
/// Integers of any size.
class OVXMLLIB_API CintegerCol : public ValueCollection<ItemType_integer> { public: using ValueCollection::ValueCollection; };

/// Dates with a time: CDateTime::dt_dateTime.
class OVXMLLIB_API CdatetimeCol : public DateCollection<ItemType_datetime> { public: using DateCollection::DateCollection; };
/// Dates: CDateTime::dt_date.
class OVXMLLIB_API CdateCol : public DateCollection<ItemType_date> { public: using DateCollection::DateCollection; };
/// Months of a year: CDateTime::dt_gYearMonth.
class OVXMLLIB_API CyearMonthCol : public DateCollection<ItemType_yearMonth> { public: using DateCollection::DateCollection; };
/// Times of day: CDateTime::dt_time.
class OVXMLLIB_API CtimeCol : public DateCollection<ItemType_time> { public: using DateCollection::DateCollection; };
/// Days of a year: CDateTime::dt_gMonthDay.
class OVXMLLIB_API CmonthDayCol : public DateCollection<ItemType_monthDay> { public: using DateCollection::DateCollection; };
// clang-format on

}  // namespace OvXmlLib16
