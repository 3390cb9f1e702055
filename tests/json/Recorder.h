// What a reader of JSON text tells, as text.
#pragma once

#include <memory>
#include <string>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/json/JsonParser.h"
#include "ovxmllib/json/JsonTextReader.h"

namespace OvXmlLib16::test {

/// Appends a word for each event.
struct EventLog {
  void Put(const std::string& word) { text += text.empty() ? word : ' ' + word; }
  std::string text;
};

class RecordingHandler : public IJsonReaderHandler {
 public:
  explicit RecordingHandler(EventLog& record) : m_record(record) {}
  void StartDocument() override { m_record.Put("^"); }
  void EndDocument() override { m_record.Put("$"); }
  void Name(WStringView name) override { m_record.Put(unicode::ToUtf8Lossy(name) + ":"); }
  void String(WStringView value) override { m_record.Put("'" + unicode::ToUtf8Lossy(value) + "'"); }
  void Number(WStringView value) override { m_record.Put(unicode::ToUtf8Lossy(value)); }
  void StartObject() override { m_record.Put("{"); }
  void EndObject() override { m_record.Put("}"); }
  void StartArray() override { m_record.Put("["); }
  void EndArray() override { m_record.Put("]"); }
  void Bool(bool value) override { m_record.Put(value ? "true" : "false"); }
  void Null() override { m_record.Put("null"); }

 private:
  EventLog& m_record;
};

/// The same for the grammar over UTF-8.
struct ByteRecorder {
  struct Declined {};

  void StartDocument() { handler.StartDocument(); }
  void EndDocument() { handler.EndDocument(); }
  void Name(std::string_view name) { record.Put(std::string(name) + ":"); }
  void String(std::string_view value) { record.Put("'" + std::string(value) + "'"); }
  void Number(std::string_view value) { record.Put(std::string(value)); }
  void StartObject() { handler.StartObject(); }
  void EndObject() { handler.EndObject(); }
  void StartArray() { handler.StartArray(); }
  void EndArray() { handler.EndArray(); }
  void Bool(bool value) { handler.Bool(value); }
  void Null() { handler.Null(); }
  [[noreturn]] void Decline() { throw Declined(); }

  EventLog record;
  RecordingHandler handler{record};
};

/// The events of a text, as far as they come.
inline void ReadWide(WStringView text, bool comments, WStringView root, EventLog& record) {
  CJsonTextReader reader(text);
  reader.SetHandler(std::make_unique<RecordingHandler>(record));
  reader.m_bAllowComments = comments;
  reader.m_strRootElementName = root;
  reader.Parse();
}

/// The events of a text, or "declined".
inline std::string EventsOfBytes(std::string_view text, bool comments, std::string_view root) {
  ByteRecorder recorder;
  try {
    JsonParser<char, ByteRecorder>(text, recorder, comments).Parse(root);
  } catch (const ByteRecorder::Declined&) {
    return "declined";
  }
  return recorder.record.text;
}

}  // namespace OvXmlLib16::test
