// The entries of a class whose content is a sequence. An entry looks at the current child alone: it takes it, or it
// says that it is absent.
//
//   class                     written        read
//   CElementInfoSeqPrimMnd    mandatory      the child, or a failure; see FindMandatory
//   CElementInfoSeqPrimOpt    if there       the child if it is this one
//   CElementInfoSeqEnumMnd    mandatory      as PrimMnd; within a group it skips nothing
//   CElementInfoSeqEnumOpt    if there       as PrimOpt
//   CElementInfoSeqClsMnd     mandatory      into the object that Init made; as PrimMnd, or as a group
//   CElementInfoSeqClsOpt     if there       into a new object, kept if it read something
//   CElementInfoSeqAbsClsMnd  mandatory      into the object that the factory makes, or a failure
//   CElementInfoSeqAbsClsOpt  if there       into the object that the factory makes, if any
//   CElementInfoSeqUntpdMnd   mandatory      into the object that Init made, or a failure
//   CElementInfoSeqUntpdOpt   if there       into a new object, kept if it read something
//   CElementInfoSeqCol        counted        as many children as the collection takes, then counted
//     ...PrimCol, EnumCol, ClsCol, AbsClsCol the same
//     ...UntpdCol                            the same, by name
//
// Within an element (outerType), what is missing throws; within a group, the entry returns false and the whole group
// counts as absent.
#pragma once

#include "ovxmllib/mapping/ElementKinds.h"

namespace OvXmlLib16Data {

/// The classes of the table above; their constructors are those of their kinds (ElementKinds.h).
class OVXMLLIB_API CElementInfoSeqPrimMnd : public MandatoryOutput<PrimKind> {
 public:
  using MandatoryOutput::MandatoryOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqPrimOpt : public OptionalOutput<PrimKind> {
 public:
  using OptionalOutput::OptionalOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqEnumMnd : public MandatoryOutput<EnumKind> {
 public:
  using MandatoryOutput::MandatoryOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqEnumOpt : public OptionalOutput<EnumKind> {
 public:
  using OptionalOutput::OptionalOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqClsMnd : public MandatoryOutput<ClsKind> {
 public:
  using MandatoryOutput::MandatoryOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;

 private:
  bool ReadElement(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                   CXmlElement** child, XmlElementType outerType);
  bool ReadGroup(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                 CXmlElement** child, XmlElementType outerType);
};

class OVXMLLIB_API CElementInfoSeqClsOpt : public OptionalOutput<ClsKind> {
 public:
  using OptionalOutput::OptionalOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqAbsClsMnd : public MandatoryOutput<AbsClsKind> {
 public:
  using MandatoryOutput::MandatoryOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqAbsClsOpt : public OptionalOutput<AbsClsKind> {
 public:
  using OptionalOutput::OptionalOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqUntpdMnd : public MandatoryOutput<UntpdKind> {
 public:
  using MandatoryOutput::MandatoryOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqUntpdOpt : public OptionalOutput<UntpdKind> {
 public:
  using OptionalOutput::OptionalOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqCol : public CountedOutput<ColKind> {
 public:
  using CountedOutput::CountedOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoSeqPrimCol : public CElementInfoSeqCol {
 public:
  using CElementInfoSeqCol::CElementInfoSeqCol;
};

class OVXMLLIB_API CElementInfoSeqEnumCol : public CElementInfoSeqCol {
 public:
  using CElementInfoSeqCol::CElementInfoSeqCol;
};

class OVXMLLIB_API CElementInfoSeqClsCol : public CElementInfoSeqCol {
 public:
  using CElementInfoSeqCol::CElementInfoSeqCol;
};

class OVXMLLIB_API CElementInfoSeqAbsClsCol : public CElementInfoSeqCol {
 public:
  using CElementInfoSeqCol::CElementInfoSeqCol;
};

class OVXMLLIB_API CElementInfoSeqUntpdCol : public CElementInfoSeqCol {
 public:
  using CElementInfoSeqCol::CElementInfoSeqCol;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

}  // namespace OvXmlLib16Data
