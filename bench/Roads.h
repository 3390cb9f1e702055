// What the benchmark programs share: the documents, the baseline, and how a road is entered and measured.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace OvXmlLib16::bench {

/// One measured pass over a document, with everything made on the way freed again.
using Pass = std::function<void()>;

/// Makes ready, unmeasured, what a road needs beside the document, and returns its pass. The document outlives the
/// pass; what else the pass needs it owns.
using PreparePass = std::function<Pass(std::string_view document)>;

/// Enters a road that is measured on each of the documents, as `name/1KB`, `name/100KB`, `name/10MB`, `name/100MB`.
void AddRoad(std::string name, std::function<void(std::string_view document)> pass);

/// Enters a road that needs something made ready first, such as a tree to write or compressed bytes to read. Ratios
/// and speed refer to the document all the same.
void AddPreparedRoad(std::string name, PreparePass prepare);

/// Enters a figure of memory: the heap held by what `build` returns, in bytes per byte of the largest document.
void AddHeapFigure(std::string name, std::function<std::shared_ptr<const void>(std::string_view document)> build);

/// The body of `main`: measures bare Expat and the roads entered so far, and prints each road's ratio to bare Expat on
/// the same document in the same run. Takes Google Benchmark's flags; `--runs` prints its table too. Roads with "Piece"
/// in their name run only when a filter asks for them. Returns the exit code.
int RunRoads(int argc, char** argv);

}  // namespace OvXmlLib16::bench
