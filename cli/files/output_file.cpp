#include "cli/files/output_file.h"

#include <unistd.h>

#include <cerrno>

namespace fabscan {

int OutputFile::Close() {
  if (file_ < 0) return error_number_;
  stream_.flush();
  error_number_ = buffer_.ErrorNumber();
  if (::close(file_) != 0 && error_number_ == 0 && errno != EINTR) error_number_ = errno;
  file_ = -1;
  return error_number_;
}

}  // namespace fabscan
