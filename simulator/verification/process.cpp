#include "simulator/verification/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

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

}  // namespace

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
  end.start_error =
      posix_spawnp(&process, arguments[0], actions.get(), nullptr, arguments.data(), environ);
  if (end.start_error != 0) return end;

  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) return end;
  }
  if (WIFEXITED(status)) end.status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) end.signal = WTERMSIG(status);
  return end;
}

}  // namespace fabscan
