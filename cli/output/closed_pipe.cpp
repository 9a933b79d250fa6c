#include "cli/output/closed_pipe.h"

#include <cerrno>
#include <csignal>

namespace fabscan {

namespace {

bool sigpipe_was_ignored = false;

}  // namespace

void LetWritesFail() {
  sigpipe_was_ignored = std::signal(SIGPIPE, SIG_IGN) == SIG_IGN;
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
}

void ThrowIfClosedPipe(int error_number) {
  if (error_number == EPIPE && !sigpipe_was_ignored) throw ClosedPipe();
}

void EndBySigpipe() {
  static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
  static_cast<void>(std::raise(SIGPIPE));
}

}  // namespace fabscan
