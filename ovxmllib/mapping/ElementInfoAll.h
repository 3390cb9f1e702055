// The entries of a class whose content is an all-group. The walk offers the current child to every entry that is not
// satisfied yet, pass after pass; an entry says whether it took something, and what is absent is found by Validate.
//
//   class                     written     read                                               absent
//   CElementInfoAllPrimMnd    mandatory   the child if it is this one                        a failure
//   CElementInfoAllPrimOpt    if there    the same                                           fine
//   CElementInfoAllEnumMnd    mandatory   the same                                           a failure
//   CElementInfoAllEnumOpt    if there    the same                                           fine
//   CElementInfoAllClsMnd     mandatory   into the object that Init made                     a failure for groups, and
//                                                                                            where content is required
//   CElementInfoAllClsOpt     if there    into a new object, kept if it read something       fine
//   CElementInfoAllAbsClsMnd  mandatory   into the object that the factory makes             a failure
//   CElementInfoAllAbsClsOpt  if there    the same                                           fine
//   CElementInfoAllUntpdMnd   mandatory   into the object that Init made                     a failure
//   CElementInfoAllUntpdOpt   if there    into a new object, kept if it read something       fine
//   CElementInfoAllCol        counted     as many children as the collection takes, in each  by its count
//     ...PrimCol, EnumCol,                pass anew
//        ClsCol, AbsClsCol, UntpdCol      the same
//
// Absent from a group, a mandatory member makes the whole group count as absent.
#pragma once

#include "ovxmllib/mapping/ElementKinds.h"

namespace OvXmlLib16Data {

/// The output rule of mandatory members, and that one that was not seen is missing.
template <class Kind>
class AllMandatory : public MandatoryOutput<Kind> {
 public:
  using MandatoryOutput<Kind>::MandatoryOutput;
  bool Validate(const CSerializationContext&, const CXmlGeneratedClass*, bool seen, bool isElement) const override {
    if (!seen && isElement) Kind::ThrowMandatoryMissing();
    return seen;
  }
};

/// The output rule of optional members, which may be absent.
template <class Kind>
class AllOptional : public OptionalOutput<Kind> {
 public:
  using OptionalOutput<Kind>::OptionalOutput;
  bool Validate(const CSerializationContext&, const CXmlGeneratedClass*, bool, bool) const override { return true; }
};

/// The classes of the table above; their constructors are those of their kinds (ElementKinds.h).
class OVXMLLIB_API CElementInfoAllPrimMnd : public AllMandatory<PrimKind> {
 public:
  using AllMandatory::AllMandatory;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoAllPrimOpt : public AllOptional<PrimKind> {
 public:
  using AllOptional::AllOptional;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoAllEnumMnd : public AllMandatory<EnumKind> {
 public:
  using AllMandatory::AllMandatory;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoAllEnumOpt : public AllOptional<EnumKind> {
 public:
  using AllOptional::AllOptional;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoAllClsMnd : public MandatoryOutput<ClsKind> {
 public:
  using MandatoryOutput::MandatoryOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
  bool Validate(const CSerializationContext& context, const CXmlGeneratedClass* object, bool seen,
                bool isElement) const override;
};

class OVXMLLIB_API CElementInfoAllClsOpt : public AllOptional<ClsKind> {
 public:
  using AllOptional::AllOptional;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoAllAbsClsMnd : public AllMandatory<AbsClsKind> {
 public:
  /// The last argument is not used.
  CElementInfoAllAbsClsMnd(const WChar* name, const WChar* ns, int propertyIndex, XmlElementType elementType,
                           AbstractClassFactory factory, int)
      : AllMandatory(name, ns, propertyIndex, elementType, factory) {}
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoAllAbsClsOpt : public AllOptional<AbsClsKind> {
 public:
  using AllOptional::AllOptional;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoAllUntpdMnd : public AllMandatory<UntpdKind> {
 public:
  using AllMandatory::AllMandatory;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoAllUntpdOpt : public AllOptional<UntpdKind> {
 public:
  using AllOptional::AllOptional;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoAllCol : public CountedOutput<ColKind> {
 public:
  using CountedOutput::CountedOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
  /// Decided: a collection is content with what it has if the count is; docs/decisions.md, Mapping.
  bool Validate(const CSerializationContext& context, const CXmlGeneratedClass* object, bool seen,
                bool isElement) const override;
};

class OVXMLLIB_API CElementInfoAllPrimCol : public CElementInfoAllCol {
 public:
  using CElementInfoAllCol::CElementInfoAllCol;
};

class OVXMLLIB_API CElementInfoAllEnumCol : public CElementInfoAllCol {
 public:
  using CElementInfoAllCol::CElementInfoAllCol;
};

class OVXMLLIB_API CElementInfoAllClsCol : public CElementInfoAllCol {
 public:
  using CElementInfoAllCol::CElementInfoAllCol;
};

class OVXMLLIB_API CElementInfoAllAbsClsCol : public CElementInfoAllCol {
 public:
  using CElementInfoAllCol::CElementInfoAllCol;
};

class OVXMLLIB_API CElementInfoAllUntpdCol : public CElementInfoAllCol {
 public:
  using CElementInfoAllCol::CElementInfoAllCol;
};

}  // namespace OvXmlLib16Data
