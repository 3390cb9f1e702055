// The formats that the program knows.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "ovxmllib/ovxmllib.h"

namespace ovxml {

/// How a document is to be written.
struct WriteOptions {
  bool header = true;
  bool formatted = false;
  bool gzip = false;
  OvXmlLib16::XmlEncoding encoding = OvXmlLib16::XmlEncoding_UTF8;
  OvXmlLib16::EOLType eol = OvXmlLib16::EOLType_LF;
};

struct Format {
  const char* name;    ///< as --to takes it
  const char* title;   ///< as info prints it
  const char* ending;  ///< of file names, with the dot
  bool (*recognises)(const std::string& head);
  void (*write)(const OvXmlLib16::CXmlObjectBase& object, const std::filesystem::path& file,
                const WriteOptions& options, const OvXmlLib16::CSerializationContext& context);
};

/// All of them. The last recognises everything.
std::span<const Format> Formats();

/// The format of a document that begins with these bytes.
const Format& FormatOfContent(const std::string& head);
/// The format with this name; null when there is none.
const Format* FindFormat(const std::string& name);
/// The format that a file's ending tells, with or without ".gz" behind it; the last of all for any other.
const Format& FormatOfName(const std::string& file);
/// Whether a file's name asks for gzip.
bool IsGZipName(const std::string& file);

}  // namespace ovxml
