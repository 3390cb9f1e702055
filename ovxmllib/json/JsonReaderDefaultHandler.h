// The head of a reader's chain of handlers.
#pragma once

#include <memory>
#include <vector>

#include "ovxmllib/json/JsonFaults.h"
#include "ovxmllib/json/JsonReaderHandler.h"

namespace OvXmlLib16 {

/// Traces each event (see DebugTrace.h), passes it on, and keeps the path for error messages. An object in an array is
/// told as `name[index]`.
class CJsonReaderDefaultHandler final : public IJsonReaderHandler, public IErrorPathProvider {
 public:
  /// Takes the handler over to which events are passed on; null for none.
  void SetHandler(std::unique_ptr<IJsonReaderHandler> handler) noexcept { m_pHandler = std::move(handler); }

  void StartDocument() override;
  void EndDocument() override;
  void Name(WStringView name) override;
  void String(WStringView value) override;
  void Number(WStringView value) override;
  void StartObject() override;
  void EndObject() override;
  void StartArray() override;
  void EndArray() override;
  void Bool(bool value) override;
  void Null() override;

  /// What the grammar calls at a fault of the text: throws it with the path.
  [[noreturn]] void Fail(JsonFault fault, WChar found, JsonPlace place) const {
    ThrowJsonFault(fault, found, place, GetErrorPath());
  }

  WString GetErrorPath() const override;

 private:
  enum class Type { Array, Name, Object };

  struct StackItem {
    WString m_strName;
    int m_nIndex;  // of the object begun last in this array; -1 before the first
    Type m_type;
  };

  WString TakeName();
  void PopThrough(Type type) noexcept;

  std::vector<StackItem> m_stack;  // the outermost first
  std::unique_ptr<IJsonReaderHandler> m_pHandler;
};

}  // namespace OvXmlLib16
