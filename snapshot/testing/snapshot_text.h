#ifndef FABSCAN_SNAPSHOT_TESTING_SNAPSHOT_TEXT_H
#define FABSCAN_SNAPSHOT_TESTING_SNAPSHOT_TEXT_H

#include <sstream>
#include <string>

#include "snapshot/reader.h"

namespace fabscan {

// For tests: snapshots as text.

inline constexpr char kHeaderLine[] = "{\"fabscan_snapshot\":2}\n";

inline std::string EndLine(std::size_t nodes) {
  return "{\"end\":true,\"nodes\":" + std::to_string(nodes) + "}\n";
}

/// A complete snapshot with the line of its only node.
inline std::string OneNode(const std::string& node) {
  return kHeaderLine + node + '\n' + EndLine(1);
}

/// A node with the keys that every node has, and `more` (`,"key":value`).
inline std::string NodeLine(const std::string& more) {
  return R"({"name":"S1","guid":"0x0000000000000001","type":"SW","numPorts":4)" + more + '}';
}

/// Such a node with one port, number 1, and `more` of the port.
inline std::string PortLine(const std::string& more) {
  return NodeLine(R"(,"ports":[{"num":1,"state":"ACTIVE")" + more + "}]");
}

inline SnapshotHeader ReadText(const std::string& text, Fabscan& fabscan,
                               const SnapshotReadOptions& options = {}, std::size_t chunk = 4096) {
  const auto source = Decompressed(MakeMemorySource(text));
  return ReadSnapshotFrom(*source, "f", fabscan, options, chunk);
}

/// The error from reading `text`; empty if there is none.
inline std::string ReadError(const std::string& text, const SnapshotReadOptions& options = {}) {
  Fabscan fabscan;
  try {
    ReadText(text, fabscan, options);
    return {};
  } catch (const SnapshotError& error) {
    return error.what();
  }
}

inline std::string WriteText(const Fabscan& fabscan, const SnapshotHeader& header = {}) {
  std::ostringstream out;
  WriteSnapshot(out, fabscan, header);
  return out.str();
}

/// The text after reading and writing `text`.
inline std::string Rewritten(const std::string& text, std::size_t chunk = 4096) {
  Fabscan fabscan;
  const SnapshotHeader header = ReadText(text, fabscan, {}, chunk);
  return WriteText(fabscan, header);
}

}  // namespace fabscan

#endif
