// The formats that the program knows.
#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>

#include "ovxmllib/ovxmllib.h"
#include "tools/Copiers.h"
#include "tools/Input.h"

namespace ovxml {

/// How a document is to be written.
struct WriteOptions {
  bool header = true;
  bool formatted = false;
  bool gzip = false;
  OvXmlLib16::XmlEncoding encoding = OvXmlLib16::XmlEncoding_UTF8;
  OvXmlLib16::EOLType eol = OvXmlLib16::EOLType_LF;
};

enum class FormatKind { kXml, kJson, kFastInfoset };

struct Format {
  FormatKind kind;
  const char* name;    ///< as --to takes it
  const char* title;   ///< as info prints it
  const char* ending;  ///< of file names, with the dot
  bool (*recognises)(std::string_view head);
  MakeCopier* makeCopier;
  void (*write)(const OvXmlLib16::CXmlObjectBase& object, const std::filesystem::path& file,
                const WriteOptions& options, const OvXmlLib16::CSerializationContext& context);
};

/// The format of a document: by its first bytes, else JSON for a name that ends so, else XML.
const Format& FormatOf(const Input& input);
/// The format with this name; null when there is none.
const Format* FindFormat(const std::string& name);
/// The format that a file's ending tells, with or without ".gz" behind it; XML for any other.
const Format& FormatOfName(const std::string& file);
/// Whether a file's name asks for gzip.
bool IsGZipName(const std::string& file);

}  // namespace ovxml
