// Classes of a drawing: a shape is a circle, a square or just a shape, as `xsi:type` says.
#pragma once

#include "../BoundClass.h"

namespace shapes {

using namespace OvXmlLib16;
using namespace OvXmlLib16Data;

inline CParentElementInfo* NewInfo(const WChar* name) {
  return new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, name, u"urn:example:shapes",
                                /*failIfAttributeUnknown=*/true, /*hasBaseClasses=*/true, -1, ItemType_none, nullptr,
                                false);
}
inline CElementInfo* NewDecimal(const WChar* name, int index) {
  return new CElementInfoSeqPrimMnd(name, u"urn:example:shapes", index, /*nillable=*/false, ItemType_decimal, nullptr,
                                    CWhitespaceUtils::WhitespaceRule_Collapse, {}, nullptr);
}
inline CAttributeInfo** NewColour() {
  return NewTable<CAttributeInfo>(
      {new CAttributeInfoPrimitive(u"colour", u"", 0, /*optional=*/true, ItemType_string, nullptr,
                                   CWhitespaceUtils::WhitespaceRule_Preserve, {}, nullptr)});
}

/// The base of all shapes. `kName` is the element that shapes stand in; the tables hold the name of the type.
class CShape : public BoundClass<CShape> {
 public:
  static constexpr const WChar* kNamespace = u"urn:example:shapes";
  static constexpr const WChar* kName = u"shape";
  static constexpr int kMinOccurs = 0;

  CShape() { SetElementName(kName); }

  std::optional<WString> colour;
  virtual CDecimal GetWidth() const { return CDecimal(0); }

  static ClassTables MakeTables() { return {NewInfo(u"shape"), NewTable<CElementInfo>({}), NewColour()}; }

 protected:
  void Init() override { colour.reset(); }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    if (index == 0) Access<ItemType_string>(colour, read, value);
  }
};

/// A derived class has the entries of its base, and its own behind them.
class CCircle : public BoundClass<CCircle, CShape> {
 public:
  CDecimal radius;
  CDecimal GetWidth() const override { return radius + radius; }

  static ClassTables MakeTables() {
    return {NewInfo(u"circle"), NewTable<CElementInfo>({NewDecimal(u"radius", 1)}), NewColour()};
  }

 protected:
  void Init() override {
    CShape::Init();
    radius = CDecimal();
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    index == 1 ? Access<ItemType_decimal>(radius, read, value) : CShape::AccessProperty(index, read, value);
  }
};

class CSquare : public BoundClass<CSquare, CShape> {
 public:
  CDecimal side;
  CDecimal GetWidth() const override { return side; }

  static ClassTables MakeTables() {
    return {NewInfo(u"square"), NewTable<CElementInfo>({NewDecimal(u"side", 1)}), NewColour()};
  }

 protected:
  void Init() override {
    CShape::Init();
    side = CDecimal();
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    index == 1 ? Access<ItemType_decimal>(side, read, value) : CShape::AccessProperty(index, read, value);
  }
};

/// Makes the object that fits an element; null when no class does.
class ShapeFactory : public CClassfactoryBase {
 public:
  static CSmartPtr<CXmlObjectBase> Make(CXmlElement* element) { return MakeShape(element).operator CShape*(); }

  static CSmartPtr<CShape> MakeShape(CXmlElement* element) {
    const WString type = GetElementType(element);
    if (type == u"circle") return new CCircle;
    if (type == u"square") return new CSquare;
    return type.empty() || type == u"shape" ? new CShape : nullptr;
  }
};

class ShapeCol : public ObjectCol<CShape> {
 protected:
  CSmartPtr<CShape> MakeItem(CXmlElement* element) const override { return ShapeFactory::MakeShape(element); }
};

/// The document element: a shape in the element `frame`, and any number in elements `shape`.
class CDrawing : public BoundClass<CDrawing> {
 public:
  static constexpr const WChar* kNamespace = CShape::kNamespace;

  CDrawing() { SetElementName(u"drawing"); }

  CSmartPtr<CShape> frame;
  ShapeCol& GetShapes() const { return m_shapes.Get(); }

  static ClassTables MakeTables() {
    return {NewInfo(u"drawing"),
            NewTable<CElementInfo>(
                {new CElementInfoSeqAbsClsMnd(u"frame", kNamespace, 0, XmlElementType_Element, ShapeFactory::Make),
                 new CElementInfoSeqAbsClsCol(u"shape", kNamespace, 1, XmlElementType_Element)}),
            NewTable<CAttributeInfo>({})};
  }

 protected:
  void Init() override {
    frame = nullptr;
    m_shapes.Reset();
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    index == 0 ? AccessObject(frame, read, value) : value.SetXmlCollection(&GetShapes());
  }

 private:
  MadeOnUse<ShapeCol> m_shapes;
};

}  // namespace shapes
