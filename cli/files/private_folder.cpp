#include "cli/files/private_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include "cli/terminal/ending_signals.h"

namespace fabscan {

namespace {

/// Removes the files in the directory. A signal handler may call it: it asks the system alone, and
/// allocates nothing.
void Empty(const char* path) noexcept {
  const int folder = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return;
  alignas(dirent64) std::byte entries[8192];
  for (;;) {
    const ssize_t size = ::getdents64(folder, entries, sizeof entries);
    if (size <= 0) break;
    for (ssize_t place = 0; place < size;) {
      const auto* entry = reinterpret_cast<const dirent64*>(entries + place);
      ::unlinkat(folder, entry->d_name, 0);  // "." and ".." are no files, and stay
      place += entry->d_reclen;
    }
  }
  ::close(folder);
}

}  // namespace

/// The directories that are there, linked through the objects themselves: a signal handler may
/// neither allocate nor wait, so it only follows pointers, each of which is whole at any time.
struct AllPrivateFolders {
  static std::atomic<PrivateFolder*> first;
  static_assert(std::atomic<PrivateFolder*>::is_always_lock_free);

  static void RemoveAll() {
    for (const PrivateFolder* folder = first; folder != nullptr; folder = folder->next_) {
      Empty(folder->path_.c_str());
      ::rmdir(folder->path_.c_str());
    }
  }
};
std::atomic<PrivateFolder*> AllPrivateFolders::first{nullptr};

int PrivateFolder::Make(const std::string& pattern) {
  path_ = pattern;
  // Once the directory is there nothing may throw: no destructor would remove it.
  const SignalsHeld held;
  if (::mkdtemp(path_.data()) == nullptr) return errno;
  note();
  return 0;
}

void PrivateFolder::Remove() noexcept {
  if (!there_) return;
  Empty(path_.c_str());  // which may take long, and may be ended
  const SignalsHeld held;
  ::rmdir(path_.c_str());
  forget();
}

void PrivateFolder::note() noexcept {
  // A library that panics ends the program without its destructors.
  static const int noted = std::atexit(AllPrivateFolders::RemoveAll);
  static_cast<void>(noted);
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
