#include "discovery_progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

namespace fabscan {

namespace {

constexpr char kEraseLine[] = "\r\x1b[K";
constexpr std::chrono::milliseconds kPause(100);

/// What is left to do, judged by the pace so far.
std::string Estimate(std::chrono::duration<double> elapsed, std::size_t done, std::size_t total) {
  if (done == 0 || done >= total || elapsed.count() < 1) return {};
  const double pace = elapsed.count() / static_cast<double>(done);
  return fmt::format(", about {:.0f} s left", pace * static_cast<double>(total - done));
}

}  // namespace

DiscoveryProgress::DiscoveryProgress() {
  // A terminal of its own: the libraries' chatter on standard error is taken away meanwhile.
  if (::isatty(STDERR_FILENO) == 1) terminal_ = ::fdopen(::dup(STDERR_FILENO), "w");
}

DiscoveryProgress::~DiscoveryProgress() {
  Clear();
  if (terminal_ != nullptr) static_cast<void>(std::fclose(terminal_));
}

void DiscoveryProgress::Show(const std::string& what, std::size_t done, std::size_t total) {
  if (terminal_ == nullptr) return;
  const Clock::time_point now = Clock::now();
  const bool is_new = what != what_;
  if (is_new) {
    what_ = what;
    begun_ = now;
  } else if (now - last_ < kPause && done != total) {
    return;
  }
  last_ = now;
  std::string line = what;
  if (total != 0) {
    line += fmt::format(": {} of {}{}", done, total, Estimate(now - begun_, done, total));
  } else if (done != 0) {
    line += fmt::format(": {}", done);
  } else if (now != begun_) {
    line += fmt::format(", {} s",
                        std::chrono::duration_cast<std::chrono::seconds>(now - begun_).count());
  }
  Print(kEraseLine + line);
  shown_ = true;
}

// A terminal that is gone takes nothing, and nothing is lost by it.
void DiscoveryProgress::Print(const std::string& text) {
  static_cast<void>(std::fputs(text.c_str(), terminal_));
  static_cast<void>(std::fflush(terminal_));
}

void DiscoveryProgress::Clear() {
  if (!shown_) return;
  Print(kEraseLine);
  shown_ = false;
}

}  // namespace fabscan
