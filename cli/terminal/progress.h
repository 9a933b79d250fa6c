#ifndef FABSCAN_CLI_PROGRESS_H
#define FABSCAN_CLI_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace fabscan {

/// The options `--quiet` and `--verbose`, which every subcommand has.
void AddLoudnessOptions(CLI::App& app);

/// What the progress counts.
enum class Unit { kItems, kBytes };

/// Shows the progress of a task with several steps in one line on standard error, which is
/// overwritten. Only on a terminal, after the first second of work, and at most ten times per
/// second. Elsewhere, and with `--quiet`, it is silent. With `--verbose`, each completed step
/// prints a line, also without a terminal.
///
///     Progress progress;
///     for (...) progress.Show("nodes generated", done, total);
///
/// The line is erased by the destructor, before an error message, and on a signal.
class Progress {
 public:
  Progress();
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// `total` 0: unknown.
  void Show(std::string_view what, std::size_t done, std::size_t total, Unit unit = Unit::kItems);
  /// Runs `task`, which does not report progress, and shows `done()` meanwhile. `done` is called
  /// from another thread, and only on a terminal.
  void Watch(std::string_view what, std::size_t total, const std::function<std::size_t()>& done,
             const std::function<void()>& task, Unit unit = Unit::kItems);
  /// The same, with only the elapsed time.
  void Watch(std::string_view what, const std::function<void()>& task);
  /// A callback for operations that report their progress. This object must outlive it.
  std::function<void(std::size_t done, std::size_t total)> Callback(std::string_view what);
  /// Ends the last step, and erases the line.
  void Finish();

 private:
  using Clock = std::chrono::steady_clock;

  void FinishStep();
  void print(const std::string& text);
  void erase();

  std::FILE* terminal_ = nullptr;
  Clock::time_point shown_last_;
  // The current step.
  std::string what_;
  std::size_t done_ = 0;
  Unit unit_ = Unit::kItems;
  Clock::time_point begun_;
};

/// `reading f.jsonl: 12.5 of 50.0 MB, 25.0 MB/s, about 2 s left`; `seconds` since the start.
std::string ProgressText(std::string_view what, std::size_t done, std::size_t total, Unit unit,
                         double seconds);

}  // namespace fabscan

#endif
