#ifndef FABSCAN_BENCH_PROCESSOR_TIME_H
#define FABSCAN_BENCH_PROCESSOR_TIME_H

#include <benchmark/benchmark.h>

#include <ctime>

namespace fabscan {

/// The counter in which a benchmark says how much processor time its repetition took.
inline constexpr char kProcessorSeconds[] = "processor_seconds";

/// Adds up what a repetition takes of the processor, the kernel's work on its behalf included.
class ProcessorTime {
 public:
  void Start() { begin_ = std::clock(); }
  void Stop() { taken_ += std::clock() - begin_; }
  void Report(benchmark::State& state) const {
    state.counters[kProcessorSeconds] = static_cast<double>(taken_) / CLOCKS_PER_SEC;
  }

 private:
  std::clock_t begin_ = 0;
  std::clock_t taken_ = 0;
};

}  // namespace fabscan

#endif
