#include "cli/verify/verify_folder.h"

#include <fmt/format.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "cli/command.h"
#include "cli/files/temporary_folder.h"

namespace fabscan {

namespace {

namespace fs = std::filesystem;

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t noted_signal = 0;

void NoteSignal(int signal) { noted_signal = signal; }

[[noreturn]] void Refuse(const std::string& path, const std::string& cause) {
  throw CommandError(
      fmt::format("{}: {}; use a new or empty directory with write permission", path, cause));
}

void MakeKeptFolder(const std::string& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (error) Refuse(path, "cannot create the directory: " + error.message());
  const bool empty = fs::is_empty(path, error);
  if (error) Refuse(path, "cannot read the directory: " + error.message());
  if (!empty) Refuse(path, "is not empty");
}

/// Changing the handler of these signals cannot fail.
void Restore(int signal, void (*handler)(int)) { static_cast<void>(std::signal(signal, handler)); }

std::string MakeTemporaryFolder() {
  std::string path = TemporaryFolder() + "/fabscan-verify-XXXXXX";
  if (::mkdtemp(path.data()) == nullptr) RefuseTemporaryFolder(errno, ", or use --keep");
  return path;
}

}  // namespace

VerifyFolder::VerifyFolder(const std::string& keep) : path_(keep), temporary_(keep.empty()) {
  if (temporary_) {
    path_ = MakeTemporaryFolder();
  } else {
    MakeKeptFolder(path_);
  }
  for (const int signal : kSignals) {
    // An ignored signal stays ignored.
    if (std::signal(signal, NoteSignal) == SIG_IGN) Restore(signal, SIG_IGN);
  }
}

VerifyFolder::~VerifyFolder() {
  std::error_code ignored;
  if (temporary_) fs::remove_all(path_, ignored);
  for (const int signal : kSignals) {
    if (std::signal(signal, SIG_DFL) == SIG_IGN) Restore(signal, SIG_IGN);
  }
  if (noted_signal != 0) static_cast<void>(std::raise(noted_signal));
}

bool VerifyFolder::Interrupted() { return noted_signal != 0; }

}  // namespace fabscan
