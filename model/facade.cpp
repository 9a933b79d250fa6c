#include <fcntl.h>
#include <infiniband/fabscan/fabscan.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

/// A stream does not report why a write failed. Appending one byte to its file does.
int CauseOfFailedWrite(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  if (file < 0) return errno;
  const char byte = '\n';
  const int error_number = ::write(file, &byte, 1) == 1 ? EIO : errno;
  ::close(file);
  return error_number;
}

}  // namespace

int Fabscan::OpenFile(const std::string& description, const OutputControl::Identity& identity,
                      std::ofstream& out, bool append, const char* comment) {
  description_ = description;
  last_error_.clear();
  output_path_ =
      output_folder_.empty() ? identity.fileName() : output_folder_ + '/' + identity.fileName();
  if (!output_file_.empty()) output_path_ = output_file_;
  const bool leaves_folder = identity.fileName().find('/') != std::string::npos;
  if (identity.fileName().empty() || leaves_folder) return fail("name", EINVAL);

  errno = 0;
  out.open(output_path_,
           std::ios::out | std::ios::binary | (append ? std::ios::app : std::ios::trunc));
  if (!out.is_open()) return fail("open", errno);
  if (comment != nullptr) out << comment << ' ' << description << '\n';
  return 0;
}

int Fabscan::CloseFile(std::ofstream& out, const char* /*comment*/) {
  errno = 0;
  out.flush();
  const int flush_error = errno;
  const bool written = out.good();
  out.close();
  if (written && out.good()) return 0;
  return fail("write", flush_error != 0 ? flush_error : CauseOfFailedWrite(output_path_));
}

int Fabscan::fail(const std::string& action, int error_number) {
  last_error_ = output_path_ + ": cannot " + action + " (" + description_ +
                "): " + std::generic_category().message(error_number);
  return kFileFailed;
}
