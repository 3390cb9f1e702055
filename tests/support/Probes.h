// Small classes, each with the table that shows one rule. All have the same properties.
#pragma once

#include "tests/support/KitchenSink.h"

namespace OvXmlLib16::test {

/// A child element, or as Group a group, of a number and an optional object of the same class.
class Leaf : public Generated<Leaf> {
 public:
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(number, next); }
  void Fill(int value) override { number.Assign(value); }

  TouchyValue number{u"number"};
  Object<Leaf> next{u"next"};
};

class Group : public Generated<Group> {
 public:
  static constexpr bool kIsGroup = true;
  static void Describe(Tables& tables);
  auto Properties() { return std::tie(number, shade, mark); }

  TouchyValue number{u"number"};
  ShadeValue shade{u"shade"};
  Value<ItemType_i4> mark{u"mark"};
};

/// What a table can refer to, by index.
enum ProbeProperty {
  kA,
  kB,
  kShade,
  kMade,
  kLeaf,
  kShape,
  kMadeAny,
  kAny,
  kNumbers,
  kShades,
  kLeaves,
  kShapes,
  kAnys,
  kGroup,
  kOtherGroup,
  kMadeGroup,
  kText,
  kAnyAttributes
};

class Probe : public SampleObject {
 public:
  auto Properties() {
    return std::tie(a, b, shade, made, leaf, shape, madeAny, any, numbers, shades, leaves, shapes, anys, group,
                    otherGroup, madeGroup, text, anyAttributes);
  }

  TouchyValue a{u"a"};
  Value<ItemType_i4> b{u"b"};
  ShadeValue shade{u"shade"};
  Object<Leaf, Occurs::kOnce> made{u"made"};
  Object<Leaf> leaf{u"leaf"};
  Object<Shape> shape{u"shape"};
  Untyped<Occurs::kOnce> madeAny{u"madeAny", u"", u"##any"};
  Untyped<> any{u"any", u"", u"##any"};
  Collection<Ci4Col> numbers{u"numbers", 1, 2, this};
  Collection<ShadeCol> shades{u"shades", 1, 2, this};
  Collection<ObjectCol<Leaf>> leaves{u"leaves", 1, 2, this};
  Collection<ObjectCol<Shape>> shapes{u"shapes", 1, 2, this};
  Collection<CElementCol> anys{u"anys", 1, 2, this};
  Object<Group> group{u"group"};
  Object<Group> otherGroup{u"otherGroup"};
  Object<Group, Occurs::kOnce> madeGroup{u"madeGroup"};
  Value<ItemType_string> text{u"text"};
  AnyAttributes anyAttributes{u"##other"};
};

/// A new object of the probe with this name, or of a sample class by its element name. Throws std::out_of_range.
CSmartPtr<SampleObject> MakeSample(std::string_view name);

}  // namespace OvXmlLib16::test
