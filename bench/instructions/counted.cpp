// counted WHAT: runs one operation on a synthetic fabric in the current directory; callgrind counts
// only its instructions. Without an argument, lists the operations.

#include <valgrind/callgrind.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <string_view>

#include "bench/cache_maker.h"
#include "bench/fabric_maker.h"
#include "discovery/cache_file.h"
#include "discovery/fabric_builder.h"
#include "fabscan/fabscan_sim_info_dump.h"
#include "snapshot/snapshot.h"
#include "snapshot/snapshot_writer.h"

namespace {

constexpr fabscan::FabricShape kShape = {40, 36, 160, 1};
constexpr char kSnapshot[] = "fabric.jsonl";
constexpr char kCache[] = "fabric.cache";

/// Runs `work` with the counter on.
template <class Work>
auto Counted(Work work) {
  CALLGRIND_TOGGLE_COLLECT;
  auto result = work();
  CALLGRIND_TOGGLE_COLLECT;
  return result;
}

int Generate() {
  Fabscan fabscan;
  fabscan::MakeFabric(kShape, fabscan);
  SimInfoDumpCPP dump(fabscan);
  const int status = Counted([&] { return dump.Generate("Counted", {}); });
  return status != 0 || !fabscan.lastError().empty() ? 1 : 0;
}

/// Writes the snapshot, then reads it with these options.
int Read(const fabscan::SnapshotReadOptions& options) {
  {
    Fabscan fabscan;
    fabscan::MakeFabric(kShape, fabscan);
    std::ofstream out(kSnapshot, std::ios::binary);
    fabscan::WriteSnapshot(out, fabscan, {});
  }
  Fabscan fabscan;
  return Counted([&] {
    fabscan::ReadSnapshot(kSnapshot, fabscan, options);
    return fabscan.discovered_fabric.nodeCount() == kShape.switches + kShape.adapters ? 0 : 1;
  });
}

int ReadAll() { return Read({}); }

int ReadThree() {
  const std::set<u_int64_t> guids = {0x5a1e0c0300a00007, 0x5a1e0c0300d00005, 0x5a1e0c0300d00070};
  fabscan::SnapshotReadOptions options;
  options.guids = &guids;
  return Read(options);
}

int Import() {
  std::ofstream(kCache, std::ios::binary) << fabscan::MakeCache(kShape);
  return Counted([&] {
    std::ofstream out(kSnapshot, std::ios::binary);
    fabscan::SnapshotWriter writer(out, {});
    const fabscan::DiscoveryReport report =
        fabscan::BuildFabricInParts(fabscan::ReadCacheFile(kCache), fabscan::kPortsOfAPart,
                                    [&](const Fabscan& part) { writer.Write(part); });
    writer.Finish();
    return report.nodes == kShape.switches + kShape.adapters ? 0 : 1;
  });
}

constexpr struct {
  std::string_view what;
  int (*run)();
} kAll[] = {
    {"generate", Generate},
    {"read", ReadAll},
    {"read_three_nodes", ReadThree},
    {"import", Import},
};

}  // namespace

int main(int argc, char** argv) {
  for (const auto& [what, run] : kAll) {
    if (argc < 2) {
      std::printf("%s\n", what.data());
    } else if (what == argv[1]) {
      return run();
    }
  }
  return argc < 2 ? 0 : 2;
}
