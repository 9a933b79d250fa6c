#include "cli/terminal/ending_signals.h"

#include <atomic>

namespace fabscan {

namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

using Tidy = void (*)();
/// One for each part of the command that has something to tidy.
std::atomic<Tidy> tidies[4];
static_assert(std::atomic<Tidy>::is_always_lock_free);

extern "C" void TidyAndEnd(int signal_number) {
  for (const std::atomic<Tidy>& tidy : tidies) {
    if (const Tidy function = tidy) function();
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
    action.sa_handler = TidyAndEnd;
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

void TidyOnEndingSignal(void (*tidy)()) noexcept {
  for (std::atomic<Tidy>& place : tidies) {
    Tidy none = nullptr;
    if (place.compare_exchange_strong(none, tidy) || none == tidy) break;
  }
  HandleEndingSignals();
}

}  // namespace fabscan
