// The short road of JSON into a document: without XML text and without its parser.
#pragma once

#include <string_view>

#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/document/DocumentTree.h"

namespace OvXmlLib16 {

/// Builds in `tree` what parsing the result of ConvertJsonToXml would build there, the white space of its formatting
/// included; `text` is valid UTF-8 and `tree` is empty. The context must be the tree's.
///
/// Returns false where it does not vouch for that: where the text has a fault or the tree has a limit, and for all that
/// is unusual enough to leave its meaning to the parser, as names that are not ASCII, undeclared prefixes and
/// characters that XML does not allow or changes. The tree then holds a part, good for Clear only, and the other road
/// tells what is wrong, if anything is.
bool ReadJsonIntoTree(std::string_view text, const CSerializationContext& context, DocumentTree& tree);

/// Switches the short road off and on for the whole process, so that a test can compare the two; on at load.
void SetJsonTreeReaderForTest(bool on) noexcept;

}  // namespace OvXmlLib16
