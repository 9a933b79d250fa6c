#ifndef FABSCAN_CLI_TICKING_H
#define FABSCAN_CLI_TICKING_H

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace fabscan {

/// Calls `tick` again and again while it lives, from a thread of its own, for what shows how other
/// work goes on. A tick that throws is the last one; where no thread is to be had, there is none.
class Ticking {
 public:
  Ticking(std::chrono::milliseconds pause, std::function<void()> tick);
  ~Ticking();
  Ticking(const Ticking&) = delete;
  Ticking& operator=(const Ticking&) = delete;

 private:
  void run();

  std::chrono::milliseconds pause_;
  std::function<void()> tick_;
  std::mutex mutex_;
  std::condition_variable end_;
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace fabscan

#endif
