#ifndef FABSCAN_CLI_OUTPUT_FILE_H
#define FABSCAN_CLI_OUTPUT_FILE_H

#include <ostream>
#include <string>

#include "cli/output/output_buffer.h"

namespace fabscan {

/// A file that is open for writing.
class OutputFile {
 public:
  /// Owns an open file, which the destructor closes.
  explicit OutputFile(int file) : file_(file), buffer_(file), stream_(&buffer_) {}
  ~OutputFile() { Close(); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  std::ostream& stream() { return stream_; }
  /// Flushes and closes the file. Returns 0 or the errno value of the first failure, also when
  /// called again.
  int Close();

 private:
  int file_;
  OutputBuffer buffer_;
  std::ostream stream_;
  int error_number_ = 0;
};

}  // namespace fabscan

#endif
