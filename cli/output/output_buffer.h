#ifndef FABSCAN_CLI_OUTPUT_BUFFER_H
#define FABSCAN_CLI_OUTPUT_BUFFER_H

#include <cstddef>
#include <streambuf>
#include <vector>

namespace fabscan {

/// Buffers the output of a stream to an open file, which stays open. Remembers why the first write
/// failed, and writes nothing after that. On a terminal it flushes each line.
class OutputBuffer : public std::streambuf {
 public:
  explicit OutputBuffer(int file);

  /// The errno value of the first write that failed; 0 if none did.
  int ErrorNumber() const { return error_number_; }

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* bytes, std::streamsize size) override;
  int sync() override;

 private:
  bool write(const char* bytes, std::size_t size);
  bool WritePending();

  const int file_;
  const bool is_terminal_;
  std::vector<char> pending_;
  int error_number_ = 0;
};

}  // namespace fabscan

#endif
