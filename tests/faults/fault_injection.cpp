// A library to preload: makes one system call, or one allocation, of the program fail.
//
// The program is loaded once and forks just before main for each run, which saves most of the time
// of a run. FAULT_CONTROL is the number of a socket. Each number N that arrives there makes a run
// in which the Nth call fails, counted from 1 at the start of main. The answer is the run's status
// as from waitpid(2), and 1 if there was such a call, else 0.
//
//   FAULT_CALL     write, fsync, rename, read, open, malloc or thread; equivalent calls (writev,
//                  syncfs, renameat2, calloc, ...) count too. For write, only calls that write to
//                  files; for open, only calls that open for writing.
//   FAULT_KIND     an errno number; "signal N"; "remove DIRECTORY", then continue; "short" (half of
//                  the bytes, then ENOSPC)
//   FAULT_ONWARDS  if set, all later calls fail too

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* old, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

bool in_main = false;
bool running_short = false;
long count = 0;

const char* wanted_call = nullptr;
const char* kind = nullptr;
long at = 0;
bool onwards = false;
bool* reached = nullptr;  // shared by the processes

template <class Function>
Function* Next(const char* name, Function* /*same*/) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

void RemoveFolder(const char* folder) {
  char command[4096];
  std::snprintf(command, sizeof command, "rm -rf '%s'", folder);
  ::unsetenv("LD_PRELOAD");
  if (::system(command) != 0) std::abort();
}

enum class Outcome { kAsUsual, kFails, kShort };

/// Whether this call fails; if so, sets errno.
Outcome Meet(const char* call) {
  if (!in_main) return Outcome::kAsUsual;
  if (std::strcmp(wanted_call, call) != 0) return Outcome::kAsUsual;
  if (running_short) {
    errno = ENOSPC;
    return Outcome::kFails;
  }
  ++count;
  if (count != at && !(onwards && count > at)) return Outcome::kAsUsual;

  in_main = false;  // calls made here do not count
  *reached = true;
  Outcome outcome = Outcome::kAsUsual;
  if (std::strncmp(kind, "signal ", 7) == 0) {
    ::kill(::getpid(), std::atoi(kind + 7));
    ::usleep(50000);  // the program handles signals in a separate thread
  } else if (std::strncmp(kind, "remove ", 7) == 0) {
    RemoveFolder(kind + 7);
  } else if (std::strcmp(kind, "short") == 0) {
    running_short = true;
    outcome = Outcome::kShort;
  } else {
    errno = std::atoi(kind);
    outcome = Outcome::kFails;
  }
  in_main = true;
  return outcome;
}

using Main = int(int, char**, char**);
Main* real_main = nullptr;

const char* Setting(const char* name) {
  const char* value = ::getenv(name);
  if (value == nullptr) {
    std::fprintf(stderr, "fault_injection: %s is not set\n", name);
    ::_exit(1);
  }
  return value;
}

/// Returns once for each run, in a separate process.
void ForkForEachRun() {
  const int control = std::atoi(Setting("FAULT_CONTROL"));
  char line[32] = {};
  while (::read(control, line, sizeof line - 1) > 0) {
    at = std::atol(line);
    *reached = false;
    const pid_t run = ::fork();
    if (run == 0) {
      ::close(control);
      return;
    }
    int status = 0;
    if (run < 0 || ::waitpid(run, &status, 0) != run) ::_exit(1);
    ::dprintf(control, "%d %d\n", status, *reached ? 1 : 0);
    std::memset(line, 0, sizeof line);
  }
  ::_exit(0);
}

int MainWithFaults(int argc, char** argv, char** environment) {
  wanted_call = Setting("FAULT_CALL");
  kind = Setting("FAULT_KIND");
  onwards = ::getenv("FAULT_ONWARDS") != nullptr;
  void* const shared =
      ::mmap(nullptr, sizeof *reached, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) ::_exit(1);
  reached = static_cast<bool*>(shared);
  ForkForEachRun();
  ::unsetenv("LD_PRELOAD");  // programs that it starts run as usual
  in_main = true;
  return real_main(argc, argv, environment);
}

}  // namespace

extern "C" {

int __libc_start_main(Main* main, int argc, char** argv, void (*init)(), void (*fini)(),
                      void (*rtld_fini)(), void* stack_end) {
  real_main = main;
  return Next("__libc_start_main", &__libc_start_main)(MainWithFaults, argc, argv, init, fini,
                                                       rtld_fini, stack_end);
}

ssize_t write(int file, const void* data, size_t size) {
  static auto* const next = Next("write", &write);
  switch (file > STDERR_FILENO ? Meet("write") : Outcome::kAsUsual) {
    case Outcome::kFails:
      return -1;
    case Outcome::kShort:
      return next(file, data, size / 2);
    default:
      return next(file, data, size);
  }
}

ssize_t writev(int file, const iovec* pieces, int piece_count) {
  static auto* const next = Next("writev", &writev);
  switch (file > STDERR_FILENO ? Meet("write") : Outcome::kAsUsual) {
    case Outcome::kFails:
      return -1;
    case Outcome::kShort:
      return next(file, pieces, 1);
    default:
      return next(file, pieces, piece_count);
  }
}

ssize_t read(int file, void* to, size_t size) {
  static auto* const next = Next("read", &read);
  return Meet("read") == Outcome::kFails ? -1 : next(file, to, size);
}

int fsync(int file) {
  static auto* const next = Next("fsync", &fsync);
  return Meet("fsync") == Outcome::kFails ? -1 : next(file);
}

int syncfs(int file) noexcept {
  static auto* const next = Next("syncfs", &syncfs);
  return Meet("fsync") == Outcome::kFails ? -1 : next(file);
}

int rename(const char* from, const char* to) noexcept {
  static auto* const next = Next("rename", &rename);
  return Meet("rename") == Outcome::kFails ? -1 : next(from, to);
}

int renameat2(int from_folder, const char* from, int to_folder, const char* to,
              unsigned flags) noexcept {
  static auto* const next = Next("renameat2", &renameat2);
  return Meet("rename") == Outcome::kFails ? -1 : next(from_folder, from, to_folder, to, flags);
}

int open(const char* path, int flags, ...) {
  static auto* const next = Next("open", &open);
  std::va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = (flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0;
  va_end(arguments);
  const bool writes = (flags & O_ACCMODE) != O_RDONLY;
  return writes && Meet("open") == Outcome::kFails ? -1 : next(path, flags, mode);
}

// libstdc++ opens its files with fopen64 or open64, whichever it was built with.
FILE* fopen64(const char* path, const char* mode) {
  static auto* const next = Next("fopen64", &fopen64);
  const bool writes = std::strpbrk(mode, "wa+") != nullptr;
  return writes && Meet("open") == Outcome::kFails ? nullptr : next(path, mode);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*),
                   void* argument) noexcept {
  static auto* const next = Next("pthread_create", &pthread_create);
  return Meet("thread") == Outcome::kFails ? errno : next(thread, attributes, routine, argument);
}

void* malloc(size_t size) noexcept {
  return Meet("malloc") == Outcome::kFails ? nullptr : __libc_malloc(size);
}
void* calloc(size_t number, size_t size) noexcept {
  return Meet("malloc") == Outcome::kFails ? nullptr : __libc_calloc(number, size);
}
void* realloc(void* old, size_t size) noexcept {
  return Meet("malloc") == Outcome::kFails ? nullptr : __libc_realloc(old, size);
}
void* aligned_alloc(size_t alignment, size_t size) noexcept {
  return Meet("malloc") == Outcome::kFails ? nullptr : __libc_memalign(alignment, size);
}
int posix_memalign(void** to, size_t alignment, size_t size) noexcept {
  if (Meet("malloc") == Outcome::kFails) return ENOMEM;
  *to = __libc_memalign(alignment, size);
  return *to == nullptr ? ENOMEM : 0;
}

}  // extern "C"
