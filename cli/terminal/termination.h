#ifndef FABSCAN_CLI_TERMINATION_H
#define FABSCAN_CLI_TERMINATION_H

#include <functional>
#include <list>

namespace fabscan {

/// Starts the thread that waits for SIGINT, SIGTERM and SIGHUP, as far as they are not ignored.
/// They are blocked everywhere else, so what a signal ends is cleaned up by ordinary code. Call it
/// first in main, once. Without a thread the signals keep their default action.
void WatchTerminationSignals();

/// Cleans up if a signal ends the program, or a library calls `exit`, while this lives. The action
/// runs in another thread, must not throw, and not while any TerminationDeferred lives.
class CleanupAtTermination {
 public:
  explicit CleanupAtTermination(std::function<void()> action);
  ~CleanupAtTermination();
  CleanupAtTermination(const CleanupAtTermination&) = delete;
  CleanupAtTermination& operator=(const CleanupAtTermination&) = delete;

 private:
  std::list<std::function<void()>>::iterator action_;
};

/// While it lives, no signal ends the program: what happens meanwhile is one step. Keep it short.
class TerminationDeferred {
 public:
  TerminationDeferred();
  ~TerminationDeferred();
  TerminationDeferred(const TerminationDeferred&) = delete;
  TerminationDeferred& operator=(const TerminationDeferred&) = delete;
};

/// While it lives, the first Ctrl-C does not end the program but is noted. A second one ends it.
/// One at a time.
class InterruptRequest {
 public:
  InterruptRequest();
  ~InterruptRequest();
  InterruptRequest(const InterruptRequest&) = delete;
  InterruptRequest& operator=(const InterruptRequest&) = delete;

  bool received() const;
};

}  // namespace fabscan

#endif
