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

/// What is counted on the way.
enum class Unit { kItems, kBytes };

/// How far a task of several steps is, in one line on standard error that is written over: on a
/// terminal, from the second second of all work on, and ten times a second at the most. Elsewhere,
/// and with `--quiet`, it is silent. With `--verbose` each step leaves a line when it is done,
/// anywhere.
///
///     Progress progress;
///     for (...) progress.Show("nodes generated", done, total);
///
/// The line goes with this object, before an error is told, and with a signal.
class Progress {
 public:
  Progress();
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// `total` 0: not known.
  void Show(std::string_view what, std::size_t done, std::size_t total, Unit unit = Unit::kItems);
  /// Runs `task`, which cannot tell how far it is, and meanwhile shows `done()`, from a thread of
  /// its own; that is asked on a terminal only.
  void Watch(std::string_view what, std::size_t total, const std::function<std::size_t()>& done,
             const std::function<void()>& task);
  /// The same, where only the time is known.
  void Watch(std::string_view what, const std::function<void()>& task);
  /// The same for operations that report by callback. The object must outlive what it returns.
  std::function<void(std::size_t done, std::size_t total)> Callback(std::string_view what);
  /// Ends the last step, and takes the line away for what is said next.
  void Finish();

 private:
  using Clock = std::chrono::steady_clock;

  void finishStep();
  void print(const std::string& text);
  void erase();

  std::FILE* terminal_ = nullptr;
  Clock::time_point shown_last_;
  // The step that is under way.
  std::string what_;
  std::size_t done_ = 0;
  Unit unit_ = Unit::kItems;
  Clock::time_point begun_;
};

/// `reading f.jsonl: 12.5 of 50.0 MB, 25.0 MB/s, about 2 s left`; `seconds` since the beginning.
std::string ProgressText(std::string_view what, std::size_t done, std::size_t total, Unit unit,
                         double seconds);

}  // namespace fabscan

#endif
