#include "cli/terminal/ticking.h"

#include <exception>
#include <system_error>
#include <utility>

#include "cli/terminal/ending_signals.h"

namespace fabscan {

Ticking::Ticking(std::chrono::milliseconds pause, std::function<void()> tick)
    : pause_(pause), tick_(std::move(tick)) {
  const SignalsHeld held;  // in the new thread as well: a signal is for who does the work
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {  // the work goes on unseen
  }
}

Ticking::~Ticking() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    ends_ = true;
  }
  end_.notify_one();
  thread_.join();
}

void Ticking::run() {
  std::unique_lock<std::mutex> lock(mutex_);
  try {
    while (!end_.wait_for(lock, pause_, [this] { return ends_; })) tick_();
  } catch (const std::exception&) {  // the work goes on unseen
  }
}

}  // namespace fabscan
