#include "ovxmllib/json/JsonReaderDefaultHandler.h"

#include <utility>

#include "ovxmllib/foundation/DebugTrace.h"

namespace OvXmlLib16 {

void CJsonReaderDefaultHandler::StartDocument() {
  DebugTrace(u"StartDocument\n");
  if (m_pHandler != nullptr) m_pHandler->StartDocument();
}

void CJsonReaderDefaultHandler::EndDocument() {
  DebugTrace(u"EndDocument\n");
  if (m_pHandler != nullptr) m_pHandler->EndDocument();
}

void CJsonReaderDefaultHandler::Name(WStringView name) {
  DebugTrace(u"Name: %s\n", name);
  TakeName();
  m_stack.push_back({WString(name), -1, Type::Name});
  if (m_pHandler != nullptr) m_pHandler->Name(name);
}

void CJsonReaderDefaultHandler::String(WStringView value) {
  DebugTrace(u"String: %s\n", value);
  if (m_pHandler != nullptr) m_pHandler->String(value);
}

void CJsonReaderDefaultHandler::Number(WStringView value) {
  DebugTrace(u"Number: %s\n", value);
  if (m_pHandler != nullptr) m_pHandler->Number(value);
}

// The object at the top of a document is no part of the path.
void CJsonReaderDefaultHandler::StartObject() {
  DebugTrace(u"StartObject\n");
  if (!m_stack.empty()) {
    StackItem item{TakeName(), -1, Type::Object};
    if (!m_stack.empty() && m_stack.back().m_type == Type::Array) {
      StackItem& array = m_stack.back();
      item.m_strName = FormatString(u"%s[%d]", array.m_strName, ++array.m_nIndex);
    }
    m_stack.push_back(std::move(item));
  }
  if (m_pHandler != nullptr) m_pHandler->StartObject();
}

void CJsonReaderDefaultHandler::EndObject() {
  DebugTrace(u"EndObject\n");
  PopThrough(Type::Object);
  if (m_pHandler != nullptr) m_pHandler->EndObject();
}

void CJsonReaderDefaultHandler::StartArray() {
  DebugTrace(u"StartArray\n");
  if (!m_stack.empty()) m_stack.push_back({TakeName(), -1, Type::Array});
  if (m_pHandler != nullptr) m_pHandler->StartArray();
}

void CJsonReaderDefaultHandler::EndArray() {
  DebugTrace(u"EndArray\n");
  PopThrough(Type::Array);
  if (m_pHandler != nullptr) m_pHandler->EndArray();
}

void CJsonReaderDefaultHandler::Bool(bool value) {
  DebugTrace(u"Bool: %s\n", value ? u"true" : u"false");
  if (m_pHandler != nullptr) m_pHandler->Bool(value);
}

void CJsonReaderDefaultHandler::Null() {
  DebugTrace(u"Null\n");
  if (m_pHandler != nullptr) m_pHandler->Null();
}

// Takes the name that waits for its value off the stack; empty when none does.
WString CJsonReaderDefaultHandler::TakeName() {
  if (m_stack.empty() || m_stack.back().m_type != Type::Name) return {};
  WString name = std::move(m_stack.back().m_strName);
  m_stack.pop_back();
  return name;
}

void CJsonReaderDefaultHandler::PopThrough(Type type) noexcept {
  bool isFound = false;
  while (!m_stack.empty() && !isFound) {
    isFound = m_stack.back().m_type == type;
    m_stack.pop_back();
  }
}

// Deliberate: the innermost member comes first.
WString CJsonReaderDefaultHandler::GetErrorPath() const {
  WString path = u"$";
  for (auto item = m_stack.rbegin(); item != m_stack.rend(); ++item) {
    if (item->m_type != Type::Array) (path += u'.') += item->m_strName;
  }
  return path;
}

}  // namespace OvXmlLib16
