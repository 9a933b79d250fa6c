#include "cli/terminal/progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "cli/output/report.h"
#include "cli/terminal/terminal.h"
#include "cli/terminal/termination.h"

namespace fabscan {

namespace {

constexpr char kEraseLine[] = "\r\x1b[K";
constexpr std::chrono::milliseconds kPause(100);
constexpr std::chrono::seconds kDelay(1);
/// Minimum time before a pace is shown.
constexpr double kSecondsToJudge = 0.5;

bool quiet = false;
bool verbose = false;

std::atomic<bool> line_is_shown{false};

void EraseShownLine() {
  if (!line_is_shown) return;
  // Writing fails if the terminal is gone.
  if (::write(STDERR_FILENO, kEraseLine, sizeof kEraseLine - 1) < 0) return;
}

bool CanWriteOver() {
  const char* kind = std::getenv("TERM");
  return ::isatty(STDERR_FILENO) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

/// Calls `tick` periodically from another thread while this object exists. An exception ends the
/// ticks; if no thread can be started, there are none.
class PeriodicTimer {
 public:
  PeriodicTimer(std::chrono::milliseconds pause, std::function<void()> tick)
      : pause_(pause), tick_(std::move(tick)) {
    try {
      thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {  // continue without progress
    }
  }
  ~PeriodicTimer() {
    if (!thread_.joinable()) return;
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    end_.notify_one();
    thread_.join();
  }
  PeriodicTimer(const PeriodicTimer&) = delete;
  PeriodicTimer& operator=(const PeriodicTimer&) = delete;

 private:
  void run() {
    std::unique_lock lock(mutex_);
    try {
      while (!end_.wait_for(lock, pause_, [this] { return ended_; })) tick_();
    } catch (const std::exception&) {  // continue without progress
    }
  }

  std::chrono::milliseconds pause_;
  std::function<void()> tick_;
  std::mutex mutex_;
  std::condition_variable end_;
  bool ended_ = false;
  std::thread thread_;
};

struct Scale {
  double divisor;
  const char* name;
};

/// The unit for numbers of bytes up to `largest`.
Scale ScaleFor(double largest) {
  if (largest >= 1e9) return {1e9, "GB"};
  if (largest >= 1e6) return {1e6, "MB"};
  return {1e3, "kB"};
}

std::string BytesText(double bytes) {
  const Scale scale = ScaleFor(bytes);
  return fmt::format("{:.1f} {}", bytes / scale.divisor, scale.name);
}

std::string CountText(std::size_t done, std::size_t total, Unit unit) {
  if (unit == Unit::kItems) {
    return total == 0 ? std::to_string(done) : fmt::format("{} of {}", done, total);
  }
  const auto bytes = static_cast<double>(done);
  if (total == 0) return BytesText(bytes);
  const Scale scale = ScaleFor(static_cast<double>(total));
  return fmt::format("{:.1f} of {}", bytes / scale.divisor, BytesText(static_cast<double>(total)));
}

std::string TimeText(double seconds) {
  if (seconds < 100) return fmt::format("{:.0f} s", seconds);
  if (seconds < 6000) return fmt::format("{:.0f} min", seconds / 60);
  return fmt::format("{:.1f} h", seconds / 3600);
}

double SecondsBetween(std::chrono::steady_clock::time_point from,
                      std::chrono::steady_clock::time_point to) {
  return std::chrono::duration<double>(to - from).count();
}

/// Start of the first step that is shown.
std::chrono::steady_clock::time_point Beginning() {
  static const std::chrono::steady_clock::time_point beginning = std::chrono::steady_clock::now();
  return beginning;
}

}  // namespace

std::string ProgressText(std::string_view what, std::size_t done, std::size_t total, Unit unit,
                         double seconds) {
  std::string text = WithoutControls(what);
  if (done == 0 && total == 0) return text + fmt::format(", {}", TimeText(seconds));
  text += ": " + CountText(done, total, unit);
  if (done == 0 && seconds >= 1) return text + fmt::format(", {}", TimeText(seconds));
  if (done == 0 || seconds < kSecondsToJudge) return text;
  const double pace = static_cast<double>(done) / seconds;
  text += unit == Unit::kBytes ? fmt::format(", {}/s", BytesText(pace))
                               : fmt::format(", {:.{}f}/s", pace, pace < 10 ? 1 : 0);
  if (done >= total) return text;
  return text + fmt::format(", about {} left", TimeText(static_cast<double>(total - done) / pace));
}

void AddLoudnessOptions(CLI::App& app) {
  app.add_flag("--quiet", quiet, "Show no progress, not even on a terminal");
  app.add_flag("-v,--verbose", verbose, "Report each step and how long it took");
}

Progress::Progress() {
  Beginning();
  if (quiet || !CanWriteOver()) return;
  // A separate stream, because messages of libraries on standard error are captured meanwhile.
  const int terminal = ::dup(STDERR_FILENO);
  if (terminal < 0) return;
  terminal_ = ::fdopen(terminal, "w");
  if (terminal_ == nullptr) ::close(terminal);
}

Progress::~Progress() {
  try {
    Finish();
  } catch (const std::exception&) {  // the line of the last step is lost
  }
  if (terminal_ != nullptr) static_cast<void>(std::fclose(terminal_));
}

void Progress::Show(std::string_view what, std::size_t done, std::size_t total, Unit unit) {
  if (terminal_ == nullptr && !verbose) return;
  const Clock::time_point now = Clock::now();
  if (what != what_) {
    FinishStep();
    what_ = what;
    unit_ = unit;
    begun_ = now;
  }
  done_ = done;
  if (terminal_ == nullptr || now - Beginning() < kDelay || now - shown_last_ < kPause) return;
  shown_last_ = now;
  std::string line = ProgressText(what, done, total, unit, SecondsBetween(begun_, now));
  // A wrapped line could not be overwritten.
  const std::size_t width = WidthOf(::fileno(terminal_));
  if (width > 1) line = Cut(line, width - 1);
  static const CleanupAtTermination erase_line(EraseShownLine);
  line_is_shown = true;
  print(kEraseLine + line);
}

void Progress::Watch(std::string_view what, std::size_t total,
                     const std::function<std::size_t()>& done, const std::function<void()>& task,
                     Unit unit) {
  Show(what, 0, total, unit);
  if (terminal_ == nullptr) {
    task();
  } else {
    const PeriodicTimer timer(kPause, [&] { Show(what, done(), total, unit); });
    task();
  }
}

void Progress::Watch(std::string_view what, const std::function<void()>& task) {
  Watch(
      what, 0, [] { return std::size_t{0}; }, task);
}

void Progress::FinishStep() {
  erase();
  if (!verbose || what_.empty()) return;
  const std::string count = done_ == 0 ? std::string() : ": " + CountText(done_, 0, unit_);
  PrintMessage(fmt::format("fabscan: {}{} in {:.1f} s\n", WithoutControls(what_), count,
                           SecondsBetween(begun_, Clock::now())));
}

std::function<void(std::size_t, std::size_t)> Progress::Callback(std::string_view what) {
  return [this, name = std::string(what)](std::size_t done, std::size_t total) {
    Show(name, done, total);
  };
}

void Progress::Finish() {
  FinishStep();
  what_.clear();
  done_ = 0;
}

// Writing fails if the terminal is gone, which is harmless.
void Progress::print(const std::string& text) {
  static_cast<void>(std::fputs(text.c_str(), terminal_));
  static_cast<void>(std::fflush(terminal_));
}

void Progress::erase() {
  if (!line_is_shown) return;
  print(kEraseLine);
  line_is_shown = false;
}

}  // namespace fabscan
