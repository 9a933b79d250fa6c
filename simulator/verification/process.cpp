#include "simulator/verification/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <mutex>
#include <set>

namespace fabscan {

namespace {

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  void open(int descriptor, const char* path, int flags) {
    constexpr mode_t kMode = 0600;
    posix_spawn_file_actions_addopen(&actions_, descriptor, path, flags, kMode);
  }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

/// A separate process group, which EndProcesses can end, without blocked signals.
class Attributes {
 public:
  Attributes() {
    sigset_t none;
    ::sigemptyset(&none);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
  }
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

std::mutex mutex;           // of what follows
std::set<pid_t> processes;  // not yet waited for

int Start(const std::vector<char*>& arguments, const FileActions& actions, pid_t& process) {
  const Attributes attributes;
  const std::lock_guard lock(mutex);
  const int error_number = posix_spawnp(&process, arguments[0], actions.get(), attributes.get(),
                                        arguments.data(), environ);
  if (error_number == 0) processes.insert(process);
  return error_number;
}

/// Waits without reaping first, so that the number is this process's until it is forgotten.
bool Wait(pid_t process, int& status) {
  siginfo_t information{};
  while (::waitid(P_PID, static_cast<id_t>(process), &information, WEXITED | WNOWAIT) != 0) {
    if (errno != EINTR) break;
  }
  const std::lock_guard lock(mutex);
  processes.erase(process);
  return ::waitpid(process, &status, 0) == process;
}

}  // namespace

void EndProcesses() {
  mutex.lock();  // for good
  for (const pid_t process : processes) static_cast<void>(::kill(-process, SIGKILL));
}

ProcessEnd RunProcess(const std::vector<std::string>& words, const std::string& output_file,
                      const std::string& error_file) {
  FileActions actions;
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  actions.open(STDOUT_FILENO, output_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC);
  actions.open(STDERR_FILENO, error_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC);

  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);

  ProcessEnd end;
  pid_t process = 0;
  end.start_error = Start(arguments, actions, process);
  if (end.start_error != 0) return end;

  int status = 0;
  if (!Wait(process, status)) return end;
  if (WIFEXITED(status)) end.status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) end.signal = WTERMSIG(status);
  return end;
}

}  // namespace fabscan
