// From the events of a document to the calls that write it.
#pragma once

#include <memory>

#include "tools/Namespaces.h"
#include "tools/SiblingRuns.h"

namespace ovxml {

/// What a copier has to know of the document before it begins. Nothing is owned.
struct CopyPlan {
  const Namespaces& namespaces;
  const SiblingRuns& runs;  ///< empty for formats without arrays
  bool formatted;
};

/// Makes what writes the events that it is told of to `writer`, in the way of one format. Both arguments must outlive
/// it.
using MakeCopier = std::unique_ptr<DocumentEvents>(OvXmlLib16::CXmlWriter& writer, const CopyPlan& plan);

/// Everything stays where it stands.
MakeCopier MakeXmlCopier;
/// Adjacent elements of one name become an array, text beside elements one member behind them. White space alone beside
/// elements is dropped.
MakeCopier MakeJsonCopier;
/// Everything stays where it stands.
MakeCopier MakeFastInfosetCopier;

}  // namespace ovxml
