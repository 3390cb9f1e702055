// The one pattern behind the collections of plain values; the classes themselves are in ValueCollections.h.
//
//   ValueItems<T>              the values, and all that does not depend on how they are read and printed
//     ValueCollection<type>    the collection of a primitive type
//     CdatetimeBaseCol         what applications see of every collection of dates and times
//       DateCollection<type>   the collection of one kind of date or time
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <type_traits>
#include <utility>
#include <vector>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/collections/XmlTypeCollection.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/PrimitiveRows.h"

namespace OvXmlLib16 {

/// Values of type T by value and in order, in one block of memory; of bool in several, since the elements of a vector
/// of bool are no objects that one could point at. Adding and removing at the end and removing at the front take
/// constant time, at other places linear time.
template <class T>
class OVXMLLIB_API ValueItems : public CXmlTypeCollection {
 public:
  using Items = std::conditional_t<std::is_same_v<T, bool>, std::deque<bool>, std::vector<T>>;
  using iterator = typename Items::iterator;
  using const_iterator = typename Items::const_iterator;

  int GetCount() const override;
  void Clear() override;
  /// Tells the listeners OnCollectionRemove, before the index is looked at, and, when the value is gone,
  /// OnCollectionRemoveComplete and OnCollectionChange.
  void Remove(int index) override;

  /// The values for reading and changing, of which no listener hears and which no facet limits. Valid until a value is
  /// added or removed.
  iterator begin() noexcept { return m_items.begin() + m_removed; }
  iterator end() noexcept { return m_items.end(); }
  const_iterator begin() const noexcept { return m_items.begin() + m_removed; }
  const_iterator end() const noexcept { return m_items.end(); }

 protected:
  using CXmlTypeCollection::CXmlTypeCollection;

  /// A copy of the value at an index. Throws COvInvalidParamException at an index that no value has.
  T GetItem(int index) const;
  /// The steps of an insertion, with `check` called on the value behind the test of the index.
  template <class Value, class Check>
  void Insert(int index, Value&& value, const Check& check);
  /// Throws what CheckPrimitive throws when a facet does not hold.
  template <ItemType kType>
  void CheckValue(const T& value) const;
  /// Validates the count and writes each value as an element of its own, as `print` gives its text: in the string that
  /// it is handed, or elsewhere.
  template <class Print>
  void Write(CXmlWriter* writer, const CSerializationContext& context, ItemType type, const Print& print) const;

 private:
  bool IsOwn(const T& value) const noexcept;
  void Erase(int index);

  Items m_items;
  std::ptrdiff_t m_removed = 0;  // how many at the front are no longer there; less than half
};

/// A collection of the values of a primitive type. Its events point at the value, which for OnCollectionAdd is not
/// checked yet, or at the index.
template <ItemType kType>
class OVXMLLIB_API ValueCollection : public ValueItems<typename Primitive<kType>::Value>, public CInstanceMonitor {
 public:
  using T = typename Primitive<kType>::Value;
  /// Numbers and texts are taken by value, other objects by reference.
  using Parameter = std::conditional_t<std::is_arithmetic_v<T> || std::is_same_v<T, WString>, T, const T&>;

  /// See CXmlTypeCollection. Texts keep their white space by default, other values are read without it.
  ValueCollection(const WChar* elementName, const WChar* ns, int minOccurs = 0, int maxOccurs = -1,
                  const WChar* pattern = nullptr, std::int32_t minLength = -1, std::int32_t maxLength = -1,
                  const WChar* minInclusive = nullptr, const WChar* maxInclusive = nullptr,
                  const WChar* minExclusive = nullptr, const WChar* maxExclusive = nullptr, std::int32_t length = -1,
                  std::int32_t totalDigits = -1, std::int32_t fractionDigits = -1,
                  CWhitespaceUtils::WhitespaceRule rule = std::is_same_v<T, WString>
                                                              ? CWhitespaceUtils::WhitespaceRule_Preserve
                                                              : CWhitespaceUtils::WhitespaceRule_Collapse,
                  const WChar* formatOverride = nullptr);
  ~ValueCollection() override;

  /// Adds a value behind the last one; throws as AddAt does.
  void Add(Parameter value);
  /// Adds a value in front of the one at `index`, or behind the last one when `index` is the count. The listeners hear
  /// OnCollectionAdd first, and, when the value is there, OnCollectionAddComplete and OnCollectionChange. Throws
  /// COvInvalidParamException at any other index and COvException when a facet does not hold; the collection is then
  /// as it was.
  void AddAt(int index, Parameter value);
  /// The value at an index. Throws COvInvalidParamException at an index that no value has.
  T Item(int index) const { return this->GetItem(index); }

 protected:
  void AddFromString(WStringView text) override;
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                 bool optionalChoice) const override;

 private:
  static CInstanceMonitor::ClassType& Record();
  template <class Value>
  void InsertChecked(int index, Value&& value);
};

/// Base of the collections of dates and times: their operations whatever the kind.
class OVXMLLIB_API CdatetimeBaseCol : public ValueItems<CDateTime> {
 public:
  ~CdatetimeBaseCol() override;

  /// Adds a value behind the last one; throws as AddAt does.
  virtual void Add(const CDateTime& value);
  /// Adds a value in front of the one at `index`, or behind the last one when `index` is the count. Throws
  /// COvInvalidParamException for another kind of date and COvException when a facet does not hold, both before any
  /// event, and COvInvalidParamException, after OnCollectionAdd, at any other index.
  virtual void AddAt(int index, const CDateTime& value) = 0;
  /// The value at an index. Throws COvInvalidParamException at an index that no value has.
  virtual CDateTime Item(int index) const;
  /// The text that is written for a value.
  virtual WString ItemToString(const CDateTime& value) const = 0;

 protected:
  using ValueItems::ValueItems;

  /// The steps of AddAt but for the tests of kind and facets.
  void BaseAddAt(int index, const CDateTime& value);
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                 bool optionalChoice) const override;
};

/// A collection of one kind of date or time.
template <ItemType kType>
class OVXMLLIB_API DateCollection : public CdatetimeBaseCol, public CInstanceMonitor {
 public:
  /// See CXmlTypeCollection.
  DateCollection(const WChar* elementName, const WChar* ns, int minOccurs = 0, int maxOccurs = -1,
                 const WChar* pattern = nullptr, std::int32_t minLength = -1, std::int32_t maxLength = -1,
                 const WChar* minInclusive = nullptr, const WChar* maxInclusive = nullptr,
                 const WChar* minExclusive = nullptr, const WChar* maxExclusive = nullptr, std::int32_t length = -1,
                 std::int32_t totalDigits = -1, std::int32_t fractionDigits = -1,
                 CWhitespaceUtils::WhitespaceRule rule = CWhitespaceUtils::WhitespaceRule_Collapse,
                 const WChar* formatOverride = nullptr);
  ~DateCollection() override;

  void AddAt(int index, const CDateTime& value) override;
  WString ItemToString(const CDateTime& value) const final;

 protected:
  void AddFromString(WStringView text) override;
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                 bool optionalChoice) const override;

 private:
  static CInstanceMonitor::ClassType& Record();
};

}  // namespace OvXmlLib16
