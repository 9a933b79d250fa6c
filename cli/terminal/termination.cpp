#include "cli/terminal/termination.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

namespace fabscan {

namespace {

constexpr int kTerminationSignals[] = {SIGINT, SIGTERM, SIGHUP};

struct Cleanups {
  std::recursive_mutex mutex;  // protects the actions; locked during atomic steps
  std::list<std::function<void()>> actions;
};

/// Never destroyed: the signal thread may use it until the program ends. Not on the heap, so that
/// it exists when memory has run out.
Cleanups& TheCleanups() {
  alignas(Cleanups) static std::byte storage[sizeof(Cleanups)];
  static auto& cleanups = *new (storage) Cleanups;
  return cleanups;
}

enum class Interrupt { kTerminates, kIsNoted, kReceived };
std::atomic<Interrupt> interrupt{Interrupt::kTerminates};

std::atomic<bool> terminating{false};
bool finishing = false;  // protected by the mutex of the cleanups
constexpr std::chrono::seconds kTimeToFinish(1);
constexpr std::chrono::milliseconds kPause(1);
thread_local int deferrals = 0;

/// Keeps the mutex locked, so that nothing starts that would need clean-up.
void CleanUpForGood() {
  Cleanups& cleanups = TheCleanups();
  cleanups.mutex.lock();
  ++deferrals;
  for (auto action = cleanups.actions.rbegin(); action != cleanups.actions.rend(); ++action) {
    (*action)();
  }
}

/// Waits for the program to end by itself if it is about to.
void LetFinish() {
  std::unique_lock lock(TheCleanups().mutex);
  if (!finishing) return;
  terminating = false;
  lock.unlock();
  std::this_thread::sleep_for(kTimeToFinish);
  terminating = true;
}

/// Ends the program by the signal's default action, so that the caller sees the signal.
[[noreturn]] void Terminate(int signal_number) {
  terminating = true;
  LetFinish();
  CleanUpForGood();
  static_cast<void>(std::signal(signal_number, SIG_DFL));
  sigset_t one;
  ::sigemptyset(&one);
  ::sigaddset(&one, signal_number);
  ::pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
  static_cast<void>(std::raise(signal_number));
  ::_exit(128 + signal_number);  // not reached: the default action ends the program
}

void WaitForSignals(const sigset_t& signals) {
  for (;;) {
    int signal_number = 0;
    if (::sigwait(&signals, &signal_number) != 0) continue;
    Interrupt noted = Interrupt::kIsNoted;
    if (signal_number == SIGINT && interrupt.compare_exchange_strong(noted, Interrupt::kReceived)) {
      continue;
    }
    Terminate(signal_number);
  }
}

bool IsIgnored(int signal_number) {
  struct sigaction action {};
  return ::sigaction(signal_number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

void WatchTerminationSignals() {
  finishing = false;
  // A library that panics calls exit, which does not run destructors of objects on the stack.
  static_cast<void>(std::atexit(CleanUpForGood));
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int signal_number : kTerminationSignals) {
    // If it were blocked, even an ignored signal would reach the thread.
    if (!IsIgnored(signal_number)) ::sigaddset(&signals, signal_number);
  }
  sigset_t before;
  ::pthread_sigmask(SIG_BLOCK, &signals, &before);
  try {
    std::thread([signals] { WaitForSignals(signals); }).detach();
  } catch (const std::exception&) {
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }
}

CleanupAtTermination::CleanupAtTermination(std::function<void()> action) {
  const TerminationDeferred deferred;
  auto& actions = TheCleanups().actions;
  action_ = actions.insert(actions.end(), std::move(action));
}

CleanupAtTermination::~CleanupAtTermination() {
  const TerminationDeferred deferred;
  TheCleanups().actions.erase(action_);
}

TerminationDeferred::TerminationDeferred() {
  TheCleanups().mutex.lock();
  ++deferrals;
}

TerminationDeferred::~TerminationDeferred() {
  TheCleanups().mutex.unlock();
  // A signal that arrived meanwhile ends the program here, not later.
  if (--deferrals != 0) return;
  while (terminating) std::this_thread::sleep_for(kPause);
}

void FinishDespiteSignals() {
  const TerminationDeferred deferred;
  finishing = true;
}

InterruptRequest::InterruptRequest() { interrupt = Interrupt::kIsNoted; }
InterruptRequest::~InterruptRequest() { interrupt = Interrupt::kTerminates; }
bool InterruptRequest::received() const { return interrupt == Interrupt::kReceived; }

}  // namespace fabscan
