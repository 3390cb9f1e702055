// Names that recur in every object of a class, kept once for the process.
#pragma once

#include <cstddef>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Where a name is kept, as CompactText lays a text out, for the rest of the process; null when there is no room for
/// it. There are some hundred places for short names, so that documents with ever new names cannot fill the memory. Any
/// thread may call it; it costs a look at a few places. Throws std::bad_alloc at a name's first use.
const std::size_t* FindKeptName(WStringView name);

/// The same for terminated text, such as generated code hands over time and again from the same place: it costs a
/// comparison then.
const std::size_t* FindKeptName(const WChar* name);

/// The same for a name that is to be kept by others only, as the names of documents, which come from anywhere; null
/// when it is not kept yet.
const std::size_t* LookForKeptName(WStringView name) noexcept;

}  // namespace OvXmlLib16
