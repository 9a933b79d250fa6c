#ifndef FABSCAN_BENCH_RATIO_TABLE_H
#define FABSCAN_BENCH_RATIO_TABLE_H

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace fabscan {

/// One row of the table that ends a run: what is compared with what.
struct Ratio {
  std::string what;
  std::string measured;  // name of a benchmark
  std::string against;   // name of another
};

/// Prints the benchmarks as they come, and keeps the median and the spread of each.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override;

  /// The rows whose benchmarks were run: the ratio of the medians of real time, and how far the
  /// repetitions of either side lay apart (largest less smallest, as a part of the median).
  void PrintTable(const std::vector<Ratio>& ratios) const;

 private:
  std::map<std::string, std::vector<double>> seconds_;
};

}  // namespace fabscan

#endif
