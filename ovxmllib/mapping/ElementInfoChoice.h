// The entries of a class whose content is a choice. An entry says whether it took the child, and never throws because
// it is absent: that one member must be there is the business of the class.
//
//   class                        written     read
//   CElementInfoChoicePrimOpt    if there    the child if it is this one
//   CElementInfoChoiceEnumOpt    if there    the same
//   CElementInfoChoiceClsOpt     if there    into a new object, which the property gets before it is read, so that the
//                                            choice is fixed; a group that found nothing is taken back
//   CElementInfoChoiceAbsClsOpt  if there    into the object that the factory makes, likewise
//   CElementInfoChoiceUntpdOpt   if there    into a new object, which the property gets if it took something, else null
//   CElementInfoChoiceCol        if any      as many children as the collection takes, then counted
//     ...PrimCol, EnumCol, ClsCol, AbsClsCol the same
//     ...UntpdCol                            the same, by name
#pragma once

#include "ovxmllib/mapping/ElementKinds.h"

namespace OvXmlLib16Data {

/// Output rule: what is there is written, and an entry of this kind lets the choice stay empty.
template <class Kind>
class ChoiceOutput : public OptionalOutput<Kind> {
 public:
  using OptionalOutput<Kind>::OptionalOutput;
  bool MayLeaveChoiceEmpty(const CXmlGeneratedClass*) const override { return true; }
};

/// The classes of the table above; their constructors are those of their kinds (ElementKinds.h).
class OVXMLLIB_API CElementInfoChoicePrimOpt : public ChoiceOutput<PrimKind> {
 public:
  using ChoiceOutput::ChoiceOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoChoiceEnumOpt : public ChoiceOutput<EnumKind> {
 public:
  using ChoiceOutput::ChoiceOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoChoiceClsOpt : public ChoiceOutput<ClsKind> {
 public:
  using ChoiceOutput::ChoiceOutput;
  /// Deliberate: an object that is a choice itself may be empty here.
  bool ElementToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                    CXmlWriter* writer) const override;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoChoiceAbsClsOpt : public ChoiceOutput<AbsClsKind> {
 public:
  using ChoiceOutput::ChoiceOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoChoiceUntpdOpt : public ChoiceOutput<UntpdKind> {
 public:
  using ChoiceOutput::ChoiceOutput;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoChoiceCol : public OptionalOutput<ColKind> {
 public:
  using OptionalOutput::OptionalOutput;
  /// Whether the collection may be empty.
  bool MayLeaveChoiceEmpty(const CXmlGeneratedClass* object) const override;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

class OVXMLLIB_API CElementInfoChoicePrimCol : public CElementInfoChoiceCol {
 public:
  using CElementInfoChoiceCol::CElementInfoChoiceCol;
};

class OVXMLLIB_API CElementInfoChoiceEnumCol : public CElementInfoChoiceCol {
 public:
  using CElementInfoChoiceCol::CElementInfoChoiceCol;
};

class OVXMLLIB_API CElementInfoChoiceClsCol : public CElementInfoChoiceCol {
 public:
  using CElementInfoChoiceCol::CElementInfoChoiceCol;
};

class OVXMLLIB_API CElementInfoChoiceAbsClsCol : public CElementInfoChoiceCol {
 public:
  using CElementInfoChoiceCol::CElementInfoChoiceCol;
};

class OVXMLLIB_API CElementInfoChoiceUntpdCol : public CElementInfoChoiceCol {
 public:
  using CElementInfoChoiceCol::CElementInfoChoiceCol;
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                      CXmlElement** child, const WChar* ns, XmlElementType outerType) override;
};

}  // namespace OvXmlLib16Data
