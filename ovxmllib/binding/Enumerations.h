// The enumerations of the interface. Their numbers are compiled into generated code and never change.
#pragma once

#include <cstdint>

namespace OvXmlLib16 {

/// The line end of text output. Any other value makes the writer throw COvException "Invalid EOL type.".
enum EOLType : std::int32_t {
  EOLType_CRLF = 0,  ///< CR LF
  EOLType_LF = 1,    ///< LF
};

/// The encoding of output as bytes or to a file, and what the XML header says of it.
enum XmlEncoding : std::int32_t {
  XmlEncoding_None = 0,           ///< none chosen: the text can be had as a string, not as bytes
  XmlEncoding_UTF8 = 1,           ///< UTF-8, and the header says so; never a byte order mark
  XmlEncoding_UTF16 = 2,          ///< UTF-16, little-endian, and the header says so; files begin with a byte order mark
  XmlEncoding_UTF16NoHeader = 3,  ///< as UTF-16, but the header names no encoding
};

/// The compression of output. Input is recognised by its first bytes and needs no flag.
enum CompressionType : std::int32_t {
  CompressionType_None = 0,  ///< as written
  CompressionType_GZip = 1,  ///< deflate at level 1 in the gzip wrapper (RFC 1952)
  CompressionType_ZLib = 2,  ///< deflate at level 1 in the zlib wrapper (RFC 1950); refused for files
};

/// The XML declaration at the head of a Fast Infoset document (ITU-T Rec. X.891, clause 12.3).
enum FInfoDecl : std::int32_t {
  FInfoDecl_None = 0,              ///< none
  FInfoDecl_Encoding = 1,          ///< `<?xml encoding='finf'?>`
  FInfoDecl_Standalone = 2,        ///< `<?xml encoding='finf' standalone='yes'?>`
  FInfoDecl_NotStandalone = 3,     ///< `<?xml encoding='finf' standalone='no'?>`
  FInfoDecl_V10 = 4,               ///< `<?xml version='1.0' encoding='finf'?>`
  FInfoDecl_V10Standalone = 5,     ///< `<?xml version='1.0' encoding='finf' standalone='yes'?>`
  FInfoDecl_V10NotStandalone = 6,  ///< `<?xml version='1.0' encoding='finf' standalone='no'?>`
  FInfoDecl_V11 = 7,               ///< `<?xml version='1.1' encoding='finf'?>`
  FInfoDecl_V11Standalone = 8,     ///< `<?xml version='1.1' encoding='finf' standalone='yes'?>`
  FInfoDecl_V11NotStandalone = 9,  ///< `<?xml version='1.1' encoding='finf' standalone='no'?>`
};

/// The kind of schema that the classes were made from. Only 2 means anything to this library; other numbers belong to
/// the code generator and are carried along.
enum SchemaType : std::int32_t {
  SchemaType_Namespaces = 0,    ///< the default: a schema language with namespaces
  SchemaType_NoNamespaces = 2,  ///< a schema language that knows no namespaces: prefixes are part of the names
};

/// The primitive value types, and the two kinds of object that can stand in a value's place.
enum ItemType : std::int32_t {
  ItemType_none = 0,
  ItemType_hexBinary,
  ItemType_base64Binary,
  ItemType_i1,
  ItemType_i2,
  ItemType_i4,
  ItemType_i8,
  ItemType_ui1,
  ItemType_ui2,
  ItemType_ui4,
  ItemType_ui8,
  ItemType_r4,
  ItemType_r8,
  ItemType_duration,
  ItemType_yearMonth,
  ItemType_monthDay,
  ItemType_year,
  ItemType_month,
  ItemType_day,
  ItemType_date,
  ItemType_datetime,
  ItemType_time,
  ItemType_char,
  ItemType_string,
  ItemType_boolean,
  ItemType_decimal,
  ItemType_integer,
  ItemType_XmlObjectBase,
  ItemType_XmlCollection,
};

}  // namespace OvXmlLib16
