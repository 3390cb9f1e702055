// An element whose `xsi:type` decides which class it is read into, and writing it back with its type.

#include <iostream>

#include "Shapes.h"

using namespace shapes;

constexpr const char* kDrawing = R"(<drawing xmlns="urn:example:shapes" xmlns:s="urn:example:shapes"
    xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
  <frame xsi:type="s:square"><side>20</side></frame>
  <shape xsi:type="s:circle" colour="red"><radius>1.5</radius></shape>
  <shape colour="none"/>
</drawing>)";

constexpr const char* kUnknownType = R"(<drawing xmlns="urn:example:shapes"
    xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"><frame xsi:type="triangle"/></drawing>)";

const char* ClassOf(const CShape& shape) {
  if (dynamic_cast<const CCircle*>(&shape) != nullptr) return "circle";
  return dynamic_cast<const CSquare*>(&shape) != nullptr ? "square" : "shape";
}

void Show(const CDrawing& drawing) {
  std::cout << "in a " << ClassOf(*drawing.frame.operator->()) << ' ' << drawing.frame->GetWidth() << " wide:";
  for (const CShape* shape : drawing.GetShapes()) {
    std::cout << " a " << ClassOf(*shape) << ' ' << shape->GetWidth() << " wide, "
              << ToUtf8(shape->colour.value_or(u"of no colour")) << ';';
  }
  std::cout << '\n';
}

int main() {
  CXmlObjectBase::Register(16, 1);
  try {
    const CSmartPtr<CDrawing> drawing(new CDrawing);
    drawing->FromXml(kDrawing);
    Show(*drawing.operator->());

    const CSmartPtr<CSquare> square(new CSquare);
    square->side = CDecimal(3);
    drawing->GetShapes().Add(square.operator CSquare*());
    CSerializationContext context;
    context.SetDefaultNamespaceURI(CShape::kNamespace);
    const WString text = drawing->ToXml(/*header=*/false, /*formatted=*/true, EOLType_LF, context);
    std::cout << ToUtf8(text);
    const CSmartPtr<CDrawing> again(new CDrawing);
    again->FromXml(text.c_str());
    Show(*again.operator->());
    if (again->ToXml(false, true, EOLType_LF, context) != text) throw COvException(u"The drawing came back changed.");

    again->FromXml(kUnknownType);
    return 1;
  } catch (const COvException& exception) {
    std::cout << exception << '\n';
    return exception.GetPath() == u"/drawing" ? 0 : 1;
  }
}
