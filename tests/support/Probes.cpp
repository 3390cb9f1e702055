#include "tests/support/Probes.h"

#include <map>
#include <string>

namespace OvXmlLib16::test {

namespace {

constexpr auto kElement = XmlElementType_Element, kPseudo = XmlElementType_Pseudo;
constexpr auto kSequence = XmlElementGroupType_Sequence, kChoice = XmlElementGroupType_Choice,
               kAll = XmlElementGroupType_All;

const CPrimitiveRestrictions kUpTo99(nullptr, -1, -1, nullptr, u"99", nullptr, nullptr, -1, -1, -1);

// The class of one table.
template <void (*kDescribe)(Tables&)>
class ProbeOf : public Generated<ProbeOf<kDescribe>, Probe> {
 public:
  static void Describe(Tables& tables) { kDescribe(tables); }
};

void Empty(Tables& t) { t.Class(kSequence, kElement, u"probe"); }

void SeqPrim(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.Prim<CElementInfoSeqPrimMnd>(u"a", kA, ItemType_i4, {.facets = kUpTo99});
  t.Prim<CElementInfoSeqPrimOpt>(u"b", kB, ItemType_i4, {.nillable = true, .defaultValue = u"5"});
}

void SeqEnum(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.Enum<CElementInfoSeqEnumOpt>(u"a", kA);
  t.Enum<CElementInfoSeqEnumMnd>(u"shade", kShade, {.nillable = true, .defaultValue = u"dark"});
}

void SeqCls(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.Cls<CElementInfoSeqClsMnd, Leaf>(u"made", kMade, kElement, /*contentRequired=*/true);
  t.Cls<CElementInfoSeqClsOpt, Leaf>(u"leaf", kLeaf, kElement);
}

void SeqAbsCls(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.AbsCls<CElementInfoSeqAbsClsMnd>(u"shape", kShape, Shape::MakeFor);
}

void SeqAbsClsOpt(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.AbsCls<CElementInfoSeqAbsClsOpt>(u"shape", kShape, Shape::MakeFor);
}

void SeqUntpd(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.Untpd<CElementInfoSeqUntpdMnd>(u"madeAny", kMadeAny, u"##any");
  t.Untpd<CElementInfoSeqUntpdOpt>(u"any", kAny, u"##other");
}

void SeqCols(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.Col<CElementInfoSeqPrimCol>(u"numbers", kNumbers);
  t.Col<CElementInfoSeqClsCol>(u"leaves", kLeaves, kElement);
}

void SeqUntpdCol(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.Prim<CElementInfoSeqPrimOpt>(u"a", kA, ItemType_i4);
  t.Col<CElementInfoSeqUntpdCol>(u"named", kAnys);
}

void SeqGroups(Tables& t) {
  t.Class(kSequence, kElement, u"probe", {.failIfAttributeUnknown = false});
  t.Cls<CElementInfoSeqClsOpt, Group>(u"group", kGroup, kPseudo);
  t.Prim<CElementInfoSeqPrimOpt>(u"b", kB, ItemType_i4);
}

void SeqGroupRequired(Tables& t) {
  t.Class(kSequence, kElement, u"probe", {.failIfAttributeUnknown = false});
  t.Cls<CElementInfoSeqClsMnd, Group>(u"madeGroup", kMadeGroup, kPseudo, /*contentRequired=*/true);
}

void SeqGroupFree(Tables& t) {
  t.Class(kSequence, kElement, u"probe", {.failIfAttributeUnknown = false});
  t.Cls<CElementInfoSeqClsMnd, Group>(u"madeGroup", kMadeGroup, kPseudo, /*contentRequired=*/false);
  t.Prim<CElementInfoSeqPrimOpt>(u"b", kB, ItemType_i4);
}

void ChoiceOpts(Tables& t) {
  t.Class(kChoice, kElement, u"probe", {.failIfAttributeUnknown = false});
  t.Prim<CElementInfoChoicePrimOpt>(u"a", kA, ItemType_i4, {.facets = kUpTo99});
  t.Enum<CElementInfoChoiceEnumOpt>(u"shade", kShade);
  t.Cls<CElementInfoChoiceClsOpt, Leaf>(u"leaf", kLeaf, kElement);
  t.AbsCls<CElementInfoChoiceAbsClsOpt>(u"shape", kShape, Shape::MakeFor);
  t.Cls<CElementInfoChoiceClsOpt, Group>(u"group", kGroup, kPseudo);
  t.Untpd<CElementInfoChoiceUntpdOpt>(u"AnyElement", kAny, u"##other");
}

void ChoiceCols(Tables& t) {
  t.Class(kChoice, kElement, u"probe");
  t.Col<CElementInfoChoicePrimCol>(u"numbers", kNumbers);
  t.Col<CElementInfoChoiceClsCol>(u"leaves", kLeaves, kElement);
}

void AllMany(Tables& t) {
  t.Class(kAll, kElement, u"probe");
  t.Prim<CElementInfoAllPrimMnd>(u"a", kA, ItemType_i4, {.facets = kUpTo99});
  t.Enum<CElementInfoAllEnumOpt>(u"shade", kShade, {.nillable = true});
  t.Cls<CElementInfoAllClsMnd, Leaf>(u"made", kMade, kElement, /*contentRequired=*/false);
  t.AbsCls<CElementInfoAllAbsClsOpt>(u"shape", kShape, Shape::MakeFor);
}

void AllCols(Tables& t) {
  t.Class(kAll, kElement, u"probe");
  t.Col<CElementInfoAllPrimCol>(u"numbers", kNumbers);
  t.Prim<CElementInfoAllPrimOpt>(u"b", kB, ItemType_i4);
}

void AllRest(Tables& t) {
  t.Class(kAll, kElement, u"probe");
  t.Untpd<CElementInfoAllUntpdMnd>(u"madeAny", kMadeAny, u"##any");
  t.Cls<CElementInfoAllClsMnd, Leaf>(u"made", kMade, kElement, /*contentRequired=*/true);
  t.AbsCls<CElementInfoAllAbsClsMnd>(u"shape", kShape, Shape::MakeFor, 7);
}

void AllGroup(Tables& t) {
  t.Class(kAll, kElement, u"probe", {.failIfAttributeUnknown = false});
  t.Cls<CElementInfoAllClsMnd, Group>(u"madeGroup", kMadeGroup, kPseudo, /*contentRequired=*/false);
  t.Prim<CElementInfoAllPrimOpt>(u"b", kB, ItemType_i4);
}

void Attributes(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.Attribute(u"a", kA, /*optional=*/false, ItemType_i4, {.facets = kUpTo99, .ns = u""});
  t.Attribute(u"q", kB, /*optional=*/true, ItemType_i4, {.defaultValue = u"5", .ns = kNs});
  t.EnumAttribute(u"shade", kShade, /*optional=*/true, {.defaultValue = u"dark", .ns = kNs});
}

void AnyAttribute(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.Attribute(u"q", kB, /*optional=*/true, ItemType_i4, {.ns = u"urn:other"});
  t.AnyAttribute(kAnyAttributes, u"##other");
}

void WrongAnyAttribute(Tables& t) {
  t.Class(kSequence, kElement, u"probe");
  t.AnyAttribute(kMade, u"##other");
}

void Careless(Tables& t) { t.Class(kSequence, kElement, u"probe", {.failIfAttributeUnknown = false}); }

void Everything(Tables& t) {
  t.Class(kSequence, kElement, u"everything",
          {.failIfAttributeUnknown = false, .hasBaseClasses = true, .valueIndex = kText, .valueType = ItemType_string});
  t.Attribute(u"b", kB, /*optional=*/false, ItemType_i4);
  t.AnyAttribute(kAnyAttributes, u"##other");
  t.Prim<CElementInfoSeqPrimMnd>(u"a", kA, ItemType_i4);
  t.Cls<CElementInfoSeqClsMnd, Group>(u"group", kMadeGroup, kPseudo, /*contentRequired=*/true);
  t.Cls<CElementInfoSeqClsOpt, Leaf>(u"leaf", kLeaf, kElement);
}

void BadGroup(Tables& t) { t.Class(static_cast<XmlElementGroupType>(3), kElement, u"probe"); }

template <class T>
CSmartPtr<SampleObject> MakeAs() {
  return static_cast<SampleObject*>(static_cast<T*>(T::Make()));
}

template <void (*kDescribe)(Tables&)>
constexpr auto kMake = MakeAs<ProbeOf<kDescribe>>;

}  // namespace

void Leaf::Describe(Tables& t) {
  t.Class(kSequence, kElement, u"leaf");
  t.Prim<CElementInfoSeqPrimMnd>(u"number", 0, ItemType_i4, {.facets = kUpTo99});
  t.Cls<CElementInfoSeqClsOpt, Leaf>(u"next", 1, kElement);
}

void Group::Describe(Tables& t) {
  t.Class(kSequence, kPseudo, u"group", {.failIfAttributeUnknown = false});
  t.Prim<CElementInfoSeqPrimMnd>(u"number", 0, ItemType_i4);
  t.Enum<CElementInfoSeqEnumMnd>(u"groupShade", 1);
  t.Attribute(u"mark", 2, /*optional=*/true, ItemType_i4);
}

CSmartPtr<SampleObject> MakeSample(std::string_view name) {
  static const std::map<std::string_view, CSmartPtr<SampleObject> (*)()> kMakers = {
      {"Empty", kMake<Empty>},
      {"SeqPrim", kMake<SeqPrim>},
      {"SeqEnum", kMake<SeqEnum>},
      {"SeqCls", kMake<SeqCls>},
      {"SeqAbsCls", kMake<SeqAbsCls>},
      {"SeqAbsClsOpt", kMake<SeqAbsClsOpt>},
      {"SeqUntpd", kMake<SeqUntpd>},
      {"SeqCols", kMake<SeqCols>},
      {"SeqUntpdCol", kMake<SeqUntpdCol>},
      {"SeqGroups", kMake<SeqGroups>},
      {"SeqGroupRequired", kMake<SeqGroupRequired>},
      {"SeqGroupFree", kMake<SeqGroupFree>},
      {"ChoiceOpts", kMake<ChoiceOpts>},
      {"ChoiceCols", kMake<ChoiceCols>},
      {"AllMany", kMake<AllMany>},
      {"AllCols", kMake<AllCols>},
      {"AllRest", kMake<AllRest>},
      {"AllGroup", kMake<AllGroup>},
      {"Attributes", kMake<Attributes>},
      {"AnyAttribute", kMake<AnyAttribute>},
      {"WrongAnyAttribute", kMake<WrongAnyAttribute>},
      {"Careless", kMake<Careless>},
      {"Everything", kMake<Everything>},
      {"BadGroup", kMake<BadGroup>},
      {"Leaf", MakeAs<Leaf>},
      {"Note", MakeAs<Note>},
      {"Money", MakeAs<Money>},
      {"Groups", MakeAs<Groups>},
      {"Sequence", MakeAs<Sequence>},
      {"Choice", MakeAs<Choice>},
      {"All", MakeAs<All>},
      {"KitchenSink", MakeAs<KitchenSink>},
  };
  return kMakers.at(name)();
}

}  // namespace OvXmlLib16::test
