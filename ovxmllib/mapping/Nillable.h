// Elements that may be nil.
#pragma once

namespace OvXmlLib16 {

/// A further base of generated classes for nillable elements (XML Schema Part 1, section 2.6.2), found by a dynamic
/// cast from CXmlGeneratedClass.
class INillable {
 public:
  virtual bool IsNil() = 0;
  /// Called for `xsi:nil` on the object's element.
  virtual void SetNil(bool nil) = 0;

 protected:
  ~INillable() = default;
};

}  // namespace OvXmlLib16
