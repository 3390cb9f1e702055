// What the text reader tells, and to whom.
#pragma once

#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Receives the events of a JSON text in its order. Texts are valid during the call. What an operation throws ends the
/// reading and reaches its caller unchanged.
class IJsonReaderHandler : public CInstanceMonitor {
 public:
  virtual void StartDocument() = 0;
  virtual void EndDocument() = 0;
  /// The name of a member, ahead of its value. It comes before the colon has been looked for.
  virtual void Name(WStringView name) = 0;
  /// A string, decoded.
  virtual void String(WStringView value) = 0;
  /// A number as it stands in the text, with all its digits.
  virtual void Number(WStringView value) = 0;
  virtual void StartObject() = 0;
  virtual void EndObject() = 0;
  virtual void StartArray() = 0;
  virtual void EndArray() = 0;
  virtual void Bool(bool value) = 0;
  virtual void Null() = 0;

 protected:
  IJsonReaderHandler() : CInstanceMonitor(Record()) {}

 private:
  static ClassType& Record() {
    static ClassType& record = FindClass(u"IJsonReaderHandler");
    return record;
  }
};

/// Knows at which member a reader is.
class IErrorPathProvider {
 public:
  virtual ~IErrorPathProvider() = default;
  /// The path for messages: "$", then ".name" for each member and object, the innermost first.
  virtual WString GetErrorPath() const = 0;
};

}  // namespace OvXmlLib16
