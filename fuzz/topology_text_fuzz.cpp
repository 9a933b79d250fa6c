// Any bytes as the text of ibnetdiscover give one error line, or a fabric that is written and read
// again as the same bytes, and exported as a text that gives the same links.

#include <cstdint>
#include <sstream>
#include <string>

#include "discovery/topology_text.h"
#include "fabrics/export/formats.h"
#include "fabrics/link_differences.h"
#include "fuzz/require.h"
#include "snapshot/testing/snapshot_text.h"

namespace fabscan {
namespace {

void Read(std::string_view text, Fabscan& fabscan) {
  TopologyText topology;
  bool ended = true;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    ended = end != std::string_view::npos;
    topology.Add(text.substr(0, end));
    text.remove_prefix(ended ? end + 1 : text.size());
  }
  topology.Build(fabscan, ended);
}

void Check(std::string_view bytes) {
  Fabscan fabscan;
  try {
    Read(bytes, fabscan);
  } catch (const TopologyError& error) {
    const std::string message = error.what();
    Require(!message.empty() && message.find('\n') == std::string::npos, "an error is one line");
    return;
  }
  const std::string snapshot = WriteText(fabscan);
  Require(Rewritten(snapshot) == snapshot, "the same bytes after writing and reading");
  for (const ExportFormat& format : ExportFormats()) {
    std::ostringstream out;
    format.write(out, fabscan);
    if (format.name != "ibnetdiscover") continue;
    Fabscan again;
    try {
      Read(out.str(), again);
    } catch (const TopologyError& error) {
      Require(false, error.what());
    }
    Require(LinkDifferences(fabscan.discovered_fabric, again.discovered_fabric, false).empty(),
            "the same links after exporting and importing");
  }
}

}  // namespace
}  // namespace fabscan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fabscan::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
