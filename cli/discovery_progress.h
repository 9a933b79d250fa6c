#ifndef FABSCAN_CLI_DISCOVERY_PROGRESS_H
#define FABSCAN_CLI_DISCOVERY_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>

namespace fabscan {

/// How far a discovery is, in one line that is written over: on a terminal, and ten times a second
/// at the most. Elsewhere it is silent.
class DiscoveryProgress {
 public:
  DiscoveryProgress();
  ~DiscoveryProgress();
  DiscoveryProgress(const DiscoveryProgress&) = delete;
  DiscoveryProgress& operator=(const DiscoveryProgress&) = delete;

  /// `total` 0: not known; then `done` is shown where it is not 0.
  void Show(const std::string& what, std::size_t done, std::size_t total);
  /// Takes the line away, for what is said next.
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  void Print(const std::string& text);

  std::FILE* terminal_ = nullptr;
  bool shown_ = false;
  std::string what_;
  Clock::time_point begun_;  // of `what_`
  Clock::time_point last_;
};

}  // namespace fabscan

#endif
