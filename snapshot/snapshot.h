#ifndef FABSCAN_SNAPSHOT_SNAPSHOT_H
#define FABSCAN_SNAPSHOT_SNAPSHOT_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <functional>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string>

namespace fabscan {

/// The version of the format that is written, and the newest that is read.
inline constexpr int kSnapshotVersion = 1;

/// What a snapshot says of itself in its first line: free text, kept as it stands.
struct SnapshotHeader {
  std::string source;   // where the fabric came from
  std::string created;  // when; whoever writes a snapshot decides whether to say it
};

/// A snapshot that cannot be read. `what()` is one line: file, line and key where there is one, and
/// what is wrong.
class SnapshotError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct SnapshotReadOptions {
  /// GUIDs of the nodes whose ports and records are wanted; null means all. The other nodes enter
  /// the model with name, GUID, type and numPorts alone.
  const std::set<u_int64_t>* guids = nullptr;
  /// A longer line is an error.
  std::size_t max_line_bytes = std::size_t{64} << 20U;
  /// More nodes are an error.
  std::size_t max_nodes = 4'000'000;
  /// Called every now and then with the bytes that were read of the file, and its size; 0 where
  /// that is not known.
  std::function<void(std::size_t done, std::size_t total)> progress;
};

/// Reads a saved fabric into `fabscan`, whose model and store are empty. `path` "-" is standard
/// input. What is compressed with zstd is decompressed. Throws SnapshotError; what was read by then
/// stays in `fabscan`.
SnapshotHeader ReadSnapshot(const std::string& path, Fabscan& fabscan,
                            const SnapshotReadOptions& options = {});

/// Writes the fabric with every record of the store, nodes in the order of their creation. Reading
/// what was written, and writing it again, gives the same bytes. The caller checks the stream.
/// `progress` is called for each node with how many were written, and how many there are.
void WriteSnapshot(std::ostream& out, const Fabscan& fabscan, const SnapshotHeader& header,
                   const std::function<void(std::size_t done, std::size_t total)>& progress = {});

}  // namespace fabscan

#endif
