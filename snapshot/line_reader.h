#ifndef FABSCAN_SNAPSHOT_LINE_READER_H
#define FABSCAN_SNAPSHOT_LINE_READER_H

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "snapshot/byte_source.h"

namespace fabscan {

/// A line in the buffer: the text, followed by a line end, and the number of readable bytes.
struct Line {
  std::string_view text;
  std::size_t readable;  // from the start of the text
  bool ended;            // by a line end, not by the end of the source
};

/// Splits a source into lines without copying them: large reads into one buffer, lines returned in
/// place. At least `kPadding` bytes after each line are readable, as the parser requires.
class LineReader {
 public:
  static constexpr std::size_t kPadding = 64;
  static constexpr std::size_t kChunk = std::size_t{1} << 18U;

  /// `chunk`: the number of bytes per read.
  LineReader(ByteSource& source, std::size_t max_line_bytes, std::size_t chunk = kChunk)
      : source_(source), max_line_(max_line_bytes), chunk_(chunk) {}

  /// The next line, valid until the next call; nothing at the end. The last line needs no line end.
  /// Throws SourceError, also if a line is longer than allowed.
  std::optional<Line> Next();
  /// Number of the line that `Next` returned last, or failed to return; the first is 1.
  std::size_t number() const { return number_; }

 private:
  Line Take(std::size_t length, std::size_t line_end);
  bool Fill();

  ByteSource& source_;
  const std::size_t max_line_;
  const std::size_t chunk_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // of the data not returned yet
  std::size_t end_ = 0;    // of the data read
  std::size_t number_ = 0;
};

}  // namespace fabscan

#endif
