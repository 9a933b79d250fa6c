#include "cli/check/generated_nodes.h"

#include <fmt/format.h>

#include <fstream>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/dump/class_prefix.h"
#include "cli/files/temporary_files.h"
#include "cli/selection/selected_nodes.h"
#include "cli/terminal/progress.h"
#include "fabscan/fabscan_sim_info_dump.h"

namespace fabscan {

namespace {

/// Nodes that are written at a time; a large switch takes about 100 kB.
constexpr std::size_t kBatch = 128;
constexpr char kPrefix[] = "Check";

/// False also where the file cannot be read.
bool TakeNext(GeneratedFileReader& reader, GeneratedNode& node) {
  try {
    return reader.Next(node);
  } catch (const std::ios_base::failure&) {
    return false;
  }
}

}  // namespace

void ForEachGeneratedNode(Fabscan& fabscan, const std::set<u_int64_t>& guids,
                          const std::function<void(const IBNode&, const GeneratedNode&)>& visit) {
  const std::vector<const IBNode*> nodes = SelectedNodes(fabscan.discovered_fabric, guids);
  const TemporaryDirectory scratch;
  const std::string file = scratch.path() + '/' + GeneratedFileName(kPrefix);
  fabscan.setOutputFolder(scratch.path());
  SimInfoDumpCPP generator(fabscan);
  Progress progress;
  for (std::size_t begin = 0; begin < nodes.size(); begin += kBatch) {
    progress.Show("nodes generated", begin, nodes.size());
    const std::size_t end = std::min(begin + kBatch, nodes.size());
    std::set<u_int64_t> batch;
    for (std::size_t i = begin; i < end; ++i) batch.insert(nodes[i]->guid);
    if (generator.Generate(kPrefix, batch) != 0 || !fabscan.lastError().empty()) {
      throw CommandError(fabscan.lastError() + "; free some space, or set TMPDIR");
    }
    std::ifstream text(file, std::ios::binary);
    GeneratedFileReader reader(text);
    GeneratedNode generated;
    for (std::size_t i = begin; i < end; ++i) {
      if (!TakeNext(reader, generated) || generated.guid != nodes[i]->guid) {
        throw CommandError(file + ": cannot read what was written; try again");
      }
      visit(*nodes[i], generated);
    }
  }
  progress.Show("nodes generated", nodes.size(), nodes.size());
}

}  // namespace fabscan
