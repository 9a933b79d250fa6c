#ifndef FABSCAN_CLI_TERMINATION_H
#define FABSCAN_CLI_TERMINATION_H

#include <functional>
#include <list>

namespace fabscan {

/// Starts the thread that waits for SIGINT, SIGTERM and SIGHUP, unless they are ignored. All other
/// threads block them, so that ordinary code can clean up after a signal. Call it once, first in
/// main. If the thread cannot be started, the signals keep their default action.
void WatchTerminationSignals();

/// Cleans up if a signal ends the program, or a library calls `exit`, while this object exists. The
/// action runs in another thread, must not throw, and does not run while a TerminationDeferred
/// exists.
class CleanupAtTermination {
 public:
  explicit CleanupAtTermination(std::function<void()> action);
  ~CleanupAtTermination();
  CleanupAtTermination(const CleanupAtTermination&) = delete;
  CleanupAtTermination& operator=(const CleanupAtTermination&) = delete;

 private:
  std::list<std::function<void()>>::iterator action_;
};

/// While this object exists, no signal ends the program: everything meanwhile is one atomic step.
/// Keep it short.
class TerminationDeferred {
 public:
  TerminationDeferred();
  ~TerminationDeferred();
  TerminationDeferred(const TerminationDeferred&) = delete;
  TerminationDeferred& operator=(const TerminationDeferred&) = delete;
};

/// From here on a signal no longer ends the program, which is about to end by itself: call it when
/// results are put in place. A signal gives the program one second for the rest.
void FinishDespiteSignals();

/// While this object exists, the first Ctrl-C does not end the program but is recorded. A second
/// one ends it. Only one such object may exist.
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
