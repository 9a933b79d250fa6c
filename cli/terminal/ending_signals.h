#ifndef FABSCAN_CLI_ENDING_SIGNALS_H
#define FABSCAN_CLI_ENDING_SIGNALS_H

#include <csignal>

namespace fabscan {

/// Holds back SIGINT, SIGTERM and SIGHUP for this thread while it lives, so that what happens
/// meanwhile is one step for them.
class SignalsHeld {
 public:
  SignalsHeld();
  ~SignalsHeld();
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t before_;
};

/// Has `tidy`, which a signal handler may call, called when one of these signals ends the program.
/// A signal that is ignored, or that someone else handles, stays as it is. Asking again for the
/// same function changes nothing.
void TidyOnEndingSignal(void (*tidy)()) noexcept;

}  // namespace fabscan

#endif
