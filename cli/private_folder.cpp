#include "private_folder.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace fabscan {

/// The folders that are there, linked through the objects themselves: a signal handler may neither
/// allocate nor wait, so it only follows pointers, each of which is whole at any time.
struct AllPrivateFolders {
  static std::atomic<PrivateFolder*> first;
  static_assert(std::atomic<PrivateFolder*>::is_always_lock_free);

  static void RemoveAll() {
    for (const PrivateFolder* folder = first; folder != nullptr; folder = folder->next_) {
      ::unlink(folder->file_.c_str());
      ::rmdir(folder->path_.c_str());
    }
  }
};
std::atomic<PrivateFolder*> AllPrivateFolders::first{nullptr};

namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

extern "C" void RemoveFoldersAndEnd(int signal_number) {
  AllPrivateFolders::RemoveAll();
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
    action.sa_handler = RemoveFoldersAndEnd;
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

int PrivateFolder::Make(const std::string& pattern, const std::string& name) {
  path_ = pattern;
  file_ = pattern + '/' + name;
  // Once the folder is there nothing may throw: no destructor would remove it.
  const SignalsHeld held;
  if (::mkdtemp(path_.data()) == nullptr) return errno;
  file_.replace(0, path_.size(), path_);
  note();
  return 0;
}

void PrivateFolder::Remove() noexcept {
  if (!there_) return;
  const SignalsHeld held;
  ::unlink(file_.c_str());
  ::rmdir(path_.c_str());
  forget();
}

void PrivateFolder::note() noexcept {
  next_ = AllPrivateFolders::first.load();
  if (next_ != nullptr) next_.load()->previous_ = this;
  AllPrivateFolders::first = this;
  there_ = true;
  HandleEndingSignals();
}

void PrivateFolder::forget() noexcept {
  PrivateFolder* const next = next_;
  (previous_ == nullptr ? AllPrivateFolders::first : previous_->next_) = next;
  if (next != nullptr) next->previous_ = previous_;
  previous_ = nullptr;
  there_ = false;
}

}  // namespace fabscan
