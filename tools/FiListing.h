// A Fast Infoset document as a listing.
#pragma once

#include <iosfwd>

#include "tools/FiForms.h"

namespace ovxml::fi {

/// Prints a line for each item of the document: the offset in decimal, the octets in hexadecimal, and behind an
/// indentation by depth what they mean. Throws Fault at the first octet that means nothing; all up to there has been
/// printed. Takes no more memory than a few times the document, and no stack for depth.
void List(Octets document, std::ostream& out);

}  // namespace ovxml::fi
