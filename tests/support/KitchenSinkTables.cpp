// What the sample classes say of themselves.

#include "tests/support/KitchenSink.h"

namespace OvXmlLib16::test {

namespace {

constexpr auto kElement = XmlElementType_Element, kGroup = XmlElementType_Pseudo;
constexpr auto kSequence = XmlElementGroupType_Sequence, kChoice = XmlElementGroupType_Choice,
               kAll = XmlElementGroupType_All;

constexpr ItemType TypeAt(int index) { return static_cast<ItemType>(ItemType_hexBinary + index); }

const WChar* NameOf(ItemType type) {
  const WChar* name = nullptr;
  VisitPrimitive(type, [&](auto row) { name = row.kName.data(); });
  return name;
}

}  // namespace

void Primitives::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"primitives");
  for (int i = 0; i < kPrimitives; ++i) {
    tables.Prim<CElementInfoSeqPrimOpt>(NameOf(TypeAt(i)), i, TypeAt(i));
    tables.Attribute(NameOf(TypeAt(i)), kPrimitives + i, /*optional=*/true, TypeAt(i));
  }
}

void Lists::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"lists");
  for (int i = 0; i < kPrimitives; ++i) tables.Col<CElementInfoSeqPrimCol>(NameOf(TypeAt(i)), i);
}

void Point::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"point");
  tables.Prim<CElementInfoSeqPrimMnd>(u"x", 0, ItemType_r8);
  tables.Prim<CElementInfoSeqPrimMnd>(u"y", 1, ItemType_r8);
  tables.EnumAttribute(u"unit", 2, /*optional=*/false);
  tables.Attribute(u"label", 3, /*optional=*/true, ItemType_string);
}

void Money::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"money", {.valueIndex = 0, .valueType = ItemType_decimal});
  tables.Attribute(u"currency", 1, /*optional=*/false, ItemType_string);
}

void Note::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"note", {.valueIndex = 0, .valueType = ItemType_string, .valueAsText = true});
  tables.Attribute(u"author", 1, /*optional=*/true, ItemType_string);
}

void Circle::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"circle", {.hasBaseClasses = true});
  tables.EnumAttribute(u"shade", 0, /*optional=*/true);
  tables.Prim<CElementInfoSeqPrimMnd>(u"radius", 1, ItemType_r4);
}

void Square::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"square", {.hasBaseClasses = true});
  tables.EnumAttribute(u"shade", 0, /*optional=*/true);
  tables.Prim<CElementInfoSeqPrimMnd>(u"side", 1, ItemType_integer);
}

void Sequence::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"sequence");
  tables.Prim<CElementInfoSeqPrimMnd>(u"primMnd", 0, ItemType_i4);
  tables.Prim<CElementInfoSeqPrimOpt>(u"primOpt", 1, ItemType_string);
  tables.Enum<CElementInfoSeqEnumMnd>(u"enumMnd", 2);
  tables.Enum<CElementInfoSeqEnumOpt>(u"enumOpt", 3);
  tables.Cls<CElementInfoSeqClsMnd, Point>(u"clsMnd", 4, kElement, /*contentRequired=*/true);
  tables.Cls<CElementInfoSeqClsOpt, Point>(u"clsOpt", 5, kElement);
  tables.AbsCls<CElementInfoSeqAbsClsMnd>(u"absMnd", 6, Shape::MakeFor);
  tables.AbsCls<CElementInfoSeqAbsClsOpt>(u"absOpt", 7, Shape::MakeFor);
  tables.Untpd<CElementInfoSeqUntpdMnd>(u"anyMnd", 8, u"##targetNamespace");
  tables.Untpd<CElementInfoSeqUntpdOpt>(u"AnyElement", 9, u"##other");
  tables.Col<CElementInfoSeqPrimCol>(u"prims", 10);
  tables.Col<CElementInfoSeqEnumCol>(u"enums", 11);
  tables.Col<CElementInfoSeqClsCol>(u"points", 12, kElement);
  tables.Col<CElementInfoSeqAbsClsCol>(u"shapes", 13, kElement);
  tables.Col<CElementInfoSeqUntpdCol>(u"AnyElement", 14);
  tables.Col<CElementInfoSeqCol>(u"col", 15);
}

void Choice::Describe(Tables& tables) {
  tables.Class(kChoice, kElement, u"choice");
  tables.Prim<CElementInfoChoicePrimOpt>(u"prim", 0, ItemType_string);
  tables.Enum<CElementInfoChoiceEnumOpt>(u"enum", 1);
  tables.Cls<CElementInfoChoiceClsOpt, Point>(u"cls", 2, kElement);
  tables.AbsCls<CElementInfoChoiceAbsClsOpt>(u"abs", 3, Shape::MakeFor);
  tables.Col<CElementInfoChoicePrimCol>(u"prims", 4);
  tables.Col<CElementInfoChoiceEnumCol>(u"enums", 5);
  tables.Col<CElementInfoChoiceClsCol>(u"points", 6, kElement);
  tables.Col<CElementInfoChoiceAbsClsCol>(u"shapes", 7, kElement);
  tables.Col<CElementInfoChoiceCol>(u"col", 8);
  tables.Untpd<CElementInfoChoiceUntpdOpt>(u"named", 9, u"##targetNamespace");
  tables.Col<CElementInfoChoiceUntpdCol>(u"any", 11);
  tables.Untpd<CElementInfoChoiceUntpdOpt>(u"AnyElement", 10, u"##other");
}

void All::Describe(Tables& tables) {
  tables.Class(kAll, kElement, u"all");
  tables.Prim<CElementInfoAllPrimMnd>(u"primMnd", 0, ItemType_i8);
  tables.Prim<CElementInfoAllPrimOpt>(u"primOpt", 1, ItemType_boolean);
  tables.Enum<CElementInfoAllEnumMnd>(u"enumMnd", 2);
  tables.Enum<CElementInfoAllEnumOpt>(u"enumOpt", 3);
  tables.Cls<CElementInfoAllClsMnd, Point>(u"clsMnd", 4, kElement, /*contentRequired=*/true);
  tables.Cls<CElementInfoAllClsOpt, Point>(u"clsOpt", 5, kElement);
  tables.AbsCls<CElementInfoAllAbsClsMnd>(u"absMnd", 6, Shape::MakeFor, 0);
  tables.AbsCls<CElementInfoAllAbsClsOpt>(u"absOpt", 7, Shape::MakeFor);
  tables.Untpd<CElementInfoAllUntpdMnd>(u"anyMnd", 8, u"##targetNamespace");
  tables.Untpd<CElementInfoAllUntpdOpt>(u"anyOpt", 9, u"##targetNamespace");
  tables.Col<CElementInfoAllPrimCol>(u"prims", 10);
  tables.Col<CElementInfoAllEnumCol>(u"enums", 11);
  tables.Col<CElementInfoAllClsCol>(u"points", 12, kElement);
  tables.Col<CElementInfoAllAbsClsCol>(u"shapes", 13, kElement);
  tables.Col<CElementInfoAllUntpdCol>(u"AnyElement", 14);
  tables.Col<CElementInfoAllCol>(u"col", 15);
}

void InnerGroup::Describe(Tables& tables) {
  tables.Class(kAll, kGroup, u"inner", {.failIfAttributeUnknown = false});
  tables.Attribute(u"inner", 0, /*optional=*/true, ItemType_i4);
  tables.Prim<CElementInfoAllPrimMnd>(u"innerA", 1, ItemType_i4);
  tables.Prim<CElementInfoAllPrimOpt>(u"innerB", 2, ItemType_i4);
}

void MiddleGroup::Describe(Tables& tables) {
  tables.Class(kChoice, kGroup, u"middle", {.failIfAttributeUnknown = false});
  tables.Prim<CElementInfoChoicePrimOpt>(u"middleItem", 0, ItemType_string);
  tables.Cls<CElementInfoChoiceClsOpt, InnerGroup>(u"inner", 1, kGroup);
  tables.Attribute(u"middle", 2, /*optional=*/true, ItemType_i4);
}

void OuterGroup::Describe(Tables& tables) {
  tables.Class(kSequence, kGroup, u"outer", {.failIfAttributeUnknown = false});
  tables.Attribute(u"outer", 0, /*optional=*/true, ItemType_i4);
  tables.Prim<CElementInfoSeqPrimMnd>(u"outerItem", 1, ItemType_string);
  tables.Cls<CElementInfoSeqClsOpt, MiddleGroup>(u"middle", 2, kGroup);
}

void Pair::Describe(Tables& tables) {
  tables.Class(kSequence, kGroup, u"pair", {.failIfAttributeUnknown = false});
  tables.Prim<CElementInfoSeqPrimMnd>(u"key", 0, ItemType_string);
  tables.Prim<CElementInfoSeqPrimMnd>(u"value", 1, ItemType_string);
}

void Groups::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"groups", {.failIfAttributeUnknown = false});
  tables.Attribute(u"id", 0, /*optional=*/true, ItemType_i4);
  tables.Prim<CElementInfoSeqPrimOpt>(u"first", 1, ItemType_i4);
  tables.Cls<CElementInfoSeqClsMnd, OuterGroup>(u"outer", 2, kGroup, /*contentRequired=*/true);
  tables.Col<CElementInfoSeqClsCol>(u"pairs", 3, kGroup);
  tables.Prim<CElementInfoSeqPrimMnd>(u"last", 4, ItemType_i4);
  tables.Cls<CElementInfoSeqClsOpt, Pair>(u"more", 5, kGroup);
}

void KitchenSink::Describe(Tables& tables) {
  tables.Class(kSequence, kElement, u"kitchenSink", {.hasBaseClasses = true});
  tables.Attribute(u"version", 0, /*optional=*/false, ItemType_string);
  tables.Attribute(u"level", 1, /*optional=*/true, ItemType_i4, {.ns = kNs});
  tables.Attribute(u"withDefault", 2, /*optional=*/true, ItemType_i4, {.defaultValue = u"7", .ns = u""});
  tables.EnumAttribute(u"shade", 3, /*optional=*/true, {.defaultValue = u"light", .ns = u""});
  tables.AnyAttribute(4, u"##other");
  tables.Cls<CElementInfoSeqClsMnd, Primitives>(u"primitives", 5, kElement, /*contentRequired=*/false);
  tables.Cls<CElementInfoSeqClsOpt, Lists>(u"lists", 6, kElement);
  tables.Cls<CElementInfoSeqClsOpt, Sequence>(u"sequence", 7, kElement);
  tables.Cls<CElementInfoSeqClsOpt, Choice>(u"choice", 8, kElement);
  tables.Col<CElementInfoSeqClsCol>(u"choices", 9, kElement);
  tables.Cls<CElementInfoSeqClsOpt, All>(u"all", 10, kElement);
  tables.Cls<CElementInfoSeqClsOpt, Groups>(u"groups", 11, kElement);
  tables.Cls<CElementInfoSeqClsOpt, Money>(u"price", 12, kElement);
  tables.Cls<CElementInfoSeqClsOpt, Note>(u"note", 13, kElement);
  tables.Prim<CElementInfoSeqPrimMnd>(u"nillable", 14, ItemType_date, {.nillable = true});
  tables.Enum<CElementInfoSeqEnumMnd>(u"nillableShade", 15, {.nillable = true});
  tables.Prim<CElementInfoSeqPrimOpt>(u"byDefault", 16, ItemType_i4, {.defaultValue = u"42"});
  tables.Enum<CElementInfoSeqEnumOpt>(u"shadeByDefault", 17, {.defaultValue = u"dark"});
  tables.Col<CElementInfoSeqUntpdCol>(u"AnyElement", 18);
}

}  // namespace OvXmlLib16::test
