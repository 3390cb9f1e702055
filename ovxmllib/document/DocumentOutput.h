// Where a document of text goes: bytes or a file.
#pragma once

#include <filesystem>
#include <functional>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16 {

class CTextStream;

/// Writes a whole document to a stream, from its opening to its closing.
using DocumentWriter = std::function<void(CTextStream&)>;

/// The bytes of what `write` writes, compressed if asked. With std::cref around `write`, nothing is allocated for it.
CBinaryData WriteToBytes(XmlEncoding encoding, CompressionType compression, const DocumentWriter& write);

/// Makes a file of a document, in place of one that is there: straight from `write` where AsyncToXmlFile says so and
/// nothing is compressed, else of the bytes that `makeBytes` gives. CompressionType_ZLib throws COvException before the
/// file is touched.
void WriteToFile(const std::filesystem::path& file, XmlEncoding encoding, CompressionType compression,
                 const DocumentWriter& write, const std::function<CBinaryData()>& makeBytes);

}  // namespace OvXmlLib16
