#ifndef FABSCAN_CLI_CLOSED_PIPE_H
#define FABSCAN_CLI_CLOSED_PIPE_H

namespace fabscan {

/// Makes a write to a closed pipe, or beyond a file size limit, fail instead of ending the program,
/// so that everything is cleaned up. Must be called first.
void LetWritesFail();

/// Thrown when the reader of a pipe is gone. `main` then ends the program as SIGPIPE would have
/// done. Not derived from std::exception: there is nothing to report.
struct ClosedPipe {};

/// Throws ClosedPipe if `error_number` is EPIPE, unless the program was started with SIGPIPE
/// ignored: its caller then expects an error.
void ThrowIfClosedPipe(int error_number);

/// Ends the program by SIGPIPE. Returns only if that signal is blocked.
void EndBySigpipe();

}  // namespace fabscan

#endif
