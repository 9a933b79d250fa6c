// Any bytes as a snapshot, also compressed, give one error line, or a model that is written and
// read again as the same bytes, for any size of reads.

#include <cstdint>
#include <set>

#include "fuzz/require.h"
#include "model/utf8.h"
#include "snapshot/reader.h"
#include "snapshot/testing/snapshot_text.h"

namespace fabscan {
namespace {

SnapshotReadOptions Limits() {
  SnapshotReadOptions options;
  options.max_line_bytes = std::size_t{1} << 20U;
  options.max_nodes = 1000;
  return options;
}

struct Outcome {
  std::string error;
  std::string text;  // the model as written; empty after an error
};

Outcome Read(const std::string& bytes, const SnapshotReadOptions& options, std::size_t chunk) {
  Fabscan fabscan;
  try {
    const SnapshotHeader header = ReadText(bytes, fabscan, options, chunk);
    return {{}, WriteText(fabscan, header)};
  } catch (const SnapshotError& error) {
    return {error.what(), {}};
  } catch (const SourceError& error) {  // from the first bytes, before any line
    return {error.what(), {}};
  }
}

void RequireOneLine(const std::string& error) {
  Require(IsUtf8(error), "an error is text");
  for (const char c : error) {
    Require(static_cast<unsigned char>(c) >= 0x20 && c != 0x7F,
            "an error has no control character");
  }
  Require(error.size() < 1000, "an error is short");
}

void Check(const std::string& bytes) {
  const SnapshotReadOptions options = Limits();
  const Outcome whole = Read(bytes, options, 4096);
  const Outcome in_pieces = Read(bytes, options, 1 + bytes.size() % 61);
  Require(whole.error.empty() == in_pieces.error.empty() && whole.text == in_pieces.text,
          "the size of the reads does not matter");
  // Corrupt compressed data is detected late: the first error depends on the progress of the
  // reader.
  if (bytes.compare(0, 4, "\x28\xB5\x2F\xFD") != 0) {
    Require(whole.error == in_pieces.error, "the size of the reads does not matter to the error");
  }
  RequireOneLine(whole.error);
  if (!whole.error.empty()) return;

  const Outcome again = Read(whole.text, Limits(), 4096);
  Require(again.error.empty(), "what was written can be read: " + again.error);
  Require(again.text == whole.text, "it is written again as the same bytes");

  static const std::set<u_int64_t> kNone = {~u_int64_t{0}};
  SnapshotReadOptions without_nodes = options;
  without_nodes.guids = &kNone;
  Require(Read(bytes, without_nodes, 4096).error.empty(), "a part of it can be read");
}

}  // namespace
}  // namespace fabscan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fabscan::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
