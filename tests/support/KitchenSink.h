// Sample classes that together use every entry of the tables: each type as element and attribute, each group, kind and
// occurrence, groups within groups, nillable, derived and primitive-valued classes, wildcards.
#pragma once

#include "ovxmllib/mapping/Nillable.h"
#include "tests/support/Generated.h"

namespace OvXmlLib16::test {

inline constexpr int kPrimitives = 26;

template <int kIndex>
inline constexpr ItemType kTypeAt = static_cast<ItemType>(ItemType_hexBinary + kIndex);

/// One collection class for each type that has one.
template <ItemType kType>
struct CollectionOf {
  static constexpr bool kIsDate = std::is_same_v<typename Primitive<kType>::Value, CDateTime>;
  using Type = std::conditional_t<kIsDate, DateCollection<kType>, ValueCollection<kType>>;
};
template <>
struct CollectionOf<ItemType_char> : CollectionOf<ItemType_string> {};

/// Every type as an optional element and as an optional attribute.
class Primitives : public Generated<Primitives> {
 public:
  Primitives();
  ~Primitives() override;
  static void Describe(Tables& tables);
  auto Properties() {
    return std::apply([](auto&... all) { return std::tie(all...); }, m_all);
  }

 private:
  template <int... kIndex>
  static std::tuple<Value<kTypeAt<kIndex>>..., Value<kTypeAt<kIndex>>...> MakeAll(
      std::integer_sequence<int, kIndex...>) {
    return {Value<kTypeAt<kIndex>>(Primitive<kTypeAt<kIndex>>::kName.data())...,
            Value<kTypeAt<kIndex>>(Primitive<kTypeAt<kIndex>>::kName.data())...};
  }
  template <int... kIndex>
  explicit Primitives(std::integer_sequence<int, kIndex...> all) : m_all(MakeAll(all)) {}

  decltype(MakeAll(std::make_integer_sequence<int, kPrimitives>())) m_all;
};

/// Every type in a collection.
class Lists : public Generated<Lists> {
 public:
  Lists();
  ~Lists() override;
  static void Describe(Tables& tables);
  auto Properties() {
    return std::apply([](auto&... all) { return std::tie(all...); }, m_all);
  }

 private:
  template <int... kIndex>
  static std::tuple<Collection<typename CollectionOf<kTypeAt<kIndex>>::Type>...> TypeOfAll(
      std::integer_sequence<int, kIndex...>);
  template <int... kIndex>
  explicit Lists(std::integer_sequence<int, kIndex...>) : m_all(Primitive<kTypeAt<kIndex>>::kName.data()...) {}

  decltype(TypeOfAll(std::make_integer_sequence<int, kPrimitives>())) m_all;
};

/// Two coordinates, a mandatory and an optional attribute.
class Point : public Generated<Point> {
 public:
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(x, y, unit, label); }

  Value<ItemType_r8> x{u"x"}, y{u"y"};
  ShadeValue unit{u"unit"};
  Value<ItemType_string> label{u"label"};
};

/// A number as the text of the element.
class Money : public Generated<Money> {
 public:
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(amount, currency); }

  Value<ItemType_decimal> amount{u"amount"};
  Value<ItemType_string> currency{u"currency"};
};

/// A text as it stands, of an element that may be nil.
class Note : public Generated<Note>, public INillable {
 public:
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(text, author); }

  bool IsNil() override { return m_isNil; }
  void SetNil(bool nil) override { m_isNil = nil; }
  /// Nil for each third number.
  void Fill(int number) override;
  bool Equals(const SampleObject& other) const override;
  void Init() override;

  Value<ItemType_string> text{u"text"};
  Value<ItemType_string> author{u"author"};

 private:
  bool m_isNil = false;
};

/// What circles and squares have in common. Which of them an element is, is told by its xsi:type or its name.
class Shape : public SampleObject {
 public:
  /// A new one of either class by a number.
  static CSmartPtr<Shape> Make(int number);
  static CSmartPtr<CXmlObjectBase> MakeFor(CXmlElement* element);

  ShadeValue shade{u"shade"};
};

class Circle : public Generated<Circle, Shape> {
 public:
  using Generated<Circle, Shape>::Make;
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(shade, radius); }

  Value<ItemType_r4> radius{u"radius"};
};

class Square : public Generated<Square, Shape> {
 public:
  using Generated<Square, Shape>::Make;
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(shade, side); }

  Value<ItemType_integer> side{u"side"};
};

/// Values of the enumeration.
class ShadeCol : public CXmlCollectionBase {
 public:
  ShadeCol(const WChar* name, const WChar* ns, int minOccurs, int maxOccurs)
      : CXmlCollectionBase(name, ns, minOccurs, maxOccurs) {}

  int GetCount() const override { return static_cast<int>(m_items.size()); }
  void Clear() override;
  void Remove(int index) override;
  void Add(Shade shade);
  auto begin() const { return m_items.begin(); }
  auto end() const { return m_items.end(); }

 protected:
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                 bool optionalChoice) const override;
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool optionalChoice) override;

 private:
  std::vector<Shade> m_items;
};
inline void FillCollection(ShadeCol& collection, int number) { collection.Add(static_cast<Shade>(number % 3)); }

/// Every entry of a sequence.
class Sequence : public Generated<Sequence> {
 public:
  static void Describe(Tables& tables);
  auto Properties() {
    return std::tie(primMnd, primOpt, enumMnd, enumOpt, clsMnd, clsOpt, absMnd, absOpt, anyMnd, anyOpt, prims, enums,
                    points, shapes, anys, col);
  }

  Value<ItemType_i4> primMnd{u"primMnd"};
  Value<ItemType_string> primOpt{u"primOpt"};
  ShadeValue enumMnd{u"enumMnd"}, enumOpt{u"enumOpt"};
  Object<Point, Occurs::kOnce> clsMnd{u"clsMnd"};
  Object<Point> clsOpt{u"clsOpt"};
  Object<Shape> absMnd{u"absMnd"}, absOpt{u"absOpt"};
  Untyped<Occurs::kOnce> anyMnd{u"anyMnd", kNs, u"##targetNamespace"};
  Untyped<> anyOpt{u"any", u"urn:other", u"##other"};
  Collection<Ci4Col> prims{u"prims"};
  Collection<ShadeCol> enums{u"enums"};
  Collection<ObjectCol<Point>> points{u"points"};
  Collection<ObjectCol<Shape>> shapes{u"shapes"};
  Collection<CElementCol> anys{u"anys", 0, 4};
  Collection<CdateCol> col{u"col", 1, 5};
};

/// Every entry of a choice, and a group.
class Choice : public Generated<Choice> {
 public:
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(prim, shade, cls, abs, prims, enums, points, shapes, col, named, other, anys); }

  Value<ItemType_string> prim{u"prim"};
  ShadeValue shade{u"enum"};
  Object<Point> cls{u"cls"};
  Object<Shape> abs{u"abs"};
  Collection<CdurationCol> prims{u"prims", 0, -1, this};
  Collection<ShadeCol> enums{u"enums", 0, -1, this};
  Collection<ObjectCol<Point>> points{u"points", 0, -1, this};
  Collection<ObjectCol<Shape>> shapes{u"shapes", 0, -1, this};
  Collection<CbooleanCol> col{u"col", 1, -1, this};
  Untyped<> named{u"named", kNs, u"##targetNamespace"};
  Untyped<> other{u"other", u"urn:other", u"##other"};
  Collection<CElementCol> anys{u"anys", 0, -1, this};
};

/// Every entry of an all-group.
class All : public Generated<All> {
 public:
  static void Describe(Tables& tables);
  auto Properties() {
    return std::tie(primMnd, primOpt, enumMnd, enumOpt, clsMnd, clsOpt, absMnd, absOpt, anyMnd, anyOpt, prims, enums,
                    points, shapes, anys, col);
  }

  Value<ItemType_i8> primMnd{u"primMnd"};
  Value<ItemType_boolean> primOpt{u"primOpt"};
  ShadeValue enumMnd{u"enumMnd"}, enumOpt{u"enumOpt"};
  Object<Point, Occurs::kOnce> clsMnd{u"clsMnd"};
  Object<Point> clsOpt{u"clsOpt"};
  Object<Shape> absMnd{u"absMnd"}, absOpt{u"absOpt"};
  Untyped<Occurs::kOnce> anyMnd{u"anyMnd", kNs, u"##targetNamespace"};
  Untyped<> anyOpt{u"anyOpt", kNs, u"##targetNamespace"};
  Collection<CdecimalCol> prims{u"prims"};
  Collection<ShadeCol> enums{u"enums"};
  Collection<ObjectCol<Point>> points{u"points"};
  Collection<ObjectCol<Shape>> shapes{u"shapes"};
  Collection<CElementCol> anys{u"anys"};
  Collection<CstringCol> col{u"col", 0, 3};
};

/// The innermost group: an all-group with an attribute.
class InnerGroup : public Generated<InnerGroup> {
 public:
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(id, innerA, innerB); }

  Value<ItemType_i4> id{u"inner"}, innerA{u"innerA"}, innerB{u"innerB"};
};

/// A choice between an element and a group.
class MiddleGroup : public Generated<MiddleGroup> {
 public:
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(item, inner, id); }
  void Fill(int number) override;

  Value<ItemType_string> item{u"middleItem"};
  Object<InnerGroup> inner{u"inner"};
  Value<ItemType_i4> id{nullptr};
};

/// A sequence of an element and an optional group.
class OuterGroup : public Generated<OuterGroup> {
 public:
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(id, item, middle); }

  Value<ItemType_i4> id{u"outer"};
  Value<ItemType_string> item{u"outerItem"};
  Object<MiddleGroup> middle{u"middle"};
};

/// Two elements that come together, any number of times.
class Pair : public Generated<Pair> {
 public:
  static constexpr bool kIsGroup = true;
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(key, value); }

  Value<ItemType_string> key{u"key"}, value{u"value"};
};

/// An element with groups in it, whose attributes are its own.
class Groups : public Generated<Groups> {
 public:
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(id, first, outer, pairs, last, more); }

  Value<ItemType_i4> id{u"id"}, first{u"first"};
  Object<OuterGroup, Occurs::kOnce> outer{u"outer"};
  Collection<ObjectCol<Pair>> pairs{u"pairs"};
  Value<ItemType_i4> last{u"last"};
  Object<Pair> more{u"more"};
};

/// All of the above, wildcards, defaults and values that may be nil.
class KitchenSink : public Generated<KitchenSink> {
 public:
  static void Describe(Tables& tables);
  auto Properties() {
    return std::tie(version, level, withDefault, shade, anyAttributes, primitives, lists, sequence, choice, choices,
                    all, groups, price, note, nillable, nillableShade, byDefault, shadeByDefault, anys);
  }

  Value<ItemType_string> version{u"version"};
  Value<ItemType_i4> level{u"level"}, withDefault{u"withDefault"};
  ShadeValue shade{u"shade"};
  AnyAttributes anyAttributes{u"##other"};
  Object<Primitives, Occurs::kOnce> primitives{u"primitives"};
  Object<Lists> lists{u"lists"};
  Object<Sequence> sequence{u"sequence"};
  Object<Choice> choice{u"choice"};
  Collection<ObjectCol<Choice>> choices{u"choices"};
  Object<All> all{u"all"};
  Object<Groups> groups{u"groups"};
  Object<Money> price{u"price"};
  Object<Note> note{u"note"};
  Value<ItemType_date> nillable{u"nillable"};
  ShadeValue nillableShade{u"nillableShade"};
  Value<ItemType_i4> byDefault{u"byDefault"};
  ShadeValue shadeByDefault{u"shadeByDefault"};
  Collection<CElementCol> anys{u"anys"};
};

/// A sink with a value in every property; numbers from kMixedContent on have texts beside elements.
CSmartPtr<KitchenSink> FilledSink(int number);
/// A sink with nothing but what must be there.
CSmartPtr<KitchenSink> LeastSink();

// Compiled once, in KitchenSink.cpp, and not with each file that uses them.
extern template class Generated<Primitives>;
extern template class Generated<Lists>;
extern template class Generated<Point>;
extern template class Generated<Money>;
extern template class Generated<Note>;
extern template class Generated<Circle, Shape>;
extern template class Generated<Square, Shape>;
extern template class Generated<Sequence>;
extern template class Generated<Choice>;
extern template class Generated<All>;
extern template class Generated<InnerGroup>;
extern template class Generated<MiddleGroup>;
extern template class Generated<OuterGroup>;
extern template class Generated<Pair>;
extern template class Generated<Groups>;
extern template class Generated<KitchenSink>;

}  // namespace OvXmlLib16::test
