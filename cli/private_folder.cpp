#include "private_folder.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "ending_signals.h"

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
  TidyOnEndingSignal(AllPrivateFolders::RemoveAll);
}

void PrivateFolder::forget() noexcept {
  PrivateFolder* const next = next_;
  (previous_ == nullptr ? AllPrivateFolders::first : previous_->next_) = next;
  if (next != nullptr) next->previous_ = previous_;
  previous_ = nullptr;
  there_ = false;
}

}  // namespace fabscan
