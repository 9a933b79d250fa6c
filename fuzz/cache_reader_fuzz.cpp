// Any bytes as a discovery cache give one error line, or findings that give a fabric that is
// written and read again as the same bytes.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "discovery/cache_reader.h"
#include "discovery/fabric_builder.h"
#include "fuzz/cache_mutator.h"
#include "fuzz/require.h"
#include "snapshot/testing/snapshot_text.h"

namespace fabscan {
namespace {

void Check(std::string_view bytes) {
  std::optional<CacheFindings> findings;
  try {
    findings.emplace(std::string(bytes));
  } catch (const CacheError& error) {
    const std::string message = error.what();
    Require(!message.empty() && message.find('\n') == std::string::npos, "an error is one line");
    return;
  }
  Fabscan fabscan;
  const DiscoveryReport report = BuildFabric(*findings, fabscan);
  Require(report.nodes == findings->NodeCount(), "every node of the cache is in the model");
  for (const std::string& gap : report.gaps) {
    Require(gap.find('\n') == std::string::npos, "a gap is one line");
  }
  const std::string text = WriteText(fabscan);
  try {
    Require(Rewritten(text) == text, "the same bytes after writing and reading");
  } catch (const SnapshotError& error) {
    Require(false, error.what());
  }
}

}  // namespace
}  // namespace fabscan

#ifdef FABSCAN_FUZZ
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
  // Also arbitrary byte changes, most of which fail at the header.
  if (seed % 8 == 0) return LLVMFuzzerMutate(data, size, most);
  const auto change = [](u_int8_t* bytes, std::size_t count) {
    LLVMFuzzerMutate(bytes, count, count);
  };
  const std::string changed =
      fabscan::CacheMutator(seed, change).Mutated({reinterpret_cast<const char*>(data), size});
  if (changed.size() > most) return LLVMFuzzerMutate(data, size, most);
  std::copy(changed.begin(), changed.end(), data);
  return changed.size();
}
#endif

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fabscan::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
