#include "cleanup_on_signal.h"

#include <unistd.h>

#include <climits>
#include <cstring>

namespace fabscan {

namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

/// Fixed memory: a signal handler may neither allocate nor wait.
struct Noted {
  char file[PATH_MAX];
  char folder[PATH_MAX];
  volatile std::sig_atomic_t in_use;
};
Noted noted[8];

extern "C" void RemoveNotedAndEnd(int signal_number) {
  for (const Noted& entry : noted) {
    if (entry.in_use == 0) continue;
    ::unlink(entry.file);
    ::rmdir(entry.folder);
  }
  // The default action follows, so that the caller sees which signal it was.
  static_cast<void>(std::signal(signal_number, SIG_DFL));
  static_cast<void>(::raise(signal_number));
}

void HandleEndingSignals() {
  for (const int signal_number : kEndingSignals) {
    struct sigaction current {};
    if (::sigaction(signal_number, nullptr, &current) != 0) continue;
    if (current.sa_handler != SIG_DFL) continue;
    struct sigaction action {};
    action.sa_handler = RemoveNotedAndEnd;
    for (const int other : kEndingSignals) ::sigaddset(&action.sa_mask, other);
    ::sigaction(signal_number, &action, nullptr);
  }
}

}  // namespace

SignalsHeld::SignalsHeld() {
  sigset_t ending;
  ::sigemptyset(&ending);
  for (const int signal_number : kEndingSignals) ::sigaddset(&ending, signal_number);
  ::pthread_sigmask(SIG_BLOCK, &ending, &before_);
}

SignalsHeld::~SignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

void RemoveOnSignal(const std::string& file, const std::string& folder) {
  if (file.size() >= PATH_MAX || folder.size() >= PATH_MAX) return;
  for (Noted& entry : noted) {
    if (entry.in_use != 0) continue;
    std::memcpy(entry.file, file.c_str(), file.size() + 1);
    std::memcpy(entry.folder, folder.c_str(), folder.size() + 1);
    entry.in_use = 1;
    HandleEndingSignals();
    return;
  }
}

void ForgetOnSignal(const std::string& folder) {
  for (Noted& entry : noted) {
    if (entry.in_use != 0 && folder == entry.folder) entry.in_use = 0;
  }
}

}  // namespace fabscan
