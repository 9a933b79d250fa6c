#ifndef FABSCAN_CLI_CLEANUP_ON_SIGNAL_H
#define FABSCAN_CLI_CLEANUP_ON_SIGNAL_H

#include <csignal>
#include <string>

namespace fabscan {

/// Holds back SIGINT, SIGTERM and SIGHUP for this thread while it lives, so that making something
/// and noting it, or removing and forgetting it, is one step for them.
class SignalsHeld {
 public:
  SignalsHeld();
  ~SignalsHeld();
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t before_;
};

/// Has `file` and then `folder`, which is empty without it, removed when one of these signals ends
/// the program. A signal that is ignored, or that someone else handles, stays as it is. Eight
/// folders at a time; a path beyond the system's limit, or a further one, is not noted.
void RemoveOnSignal(const std::string& file, const std::string& folder);
/// Takes back what `RemoveOnSignal` noted for `folder`.
void ForgetOnSignal(const std::string& folder);

}  // namespace fabscan

#endif
