#include "ratio_table.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace fabscan {

namespace {

struct Summary {
  double median;
  double spread;
};

Summary Summarise(std::vector<double> seconds) {
  std::sort(seconds.begin(), seconds.end());
  const double median = seconds[seconds.size() / 2];
  return {median, (seconds.back() - seconds.front()) / median};
}

/// Prints the benchmarks as they come, and keeps the time of each repetition.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override;
  void PrintTable(const std::vector<Ratio>& ratios) const;

 private:
  std::map<std::string, std::vector<double>> seconds_;
};

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
    seconds_[run.run_name.function_name +
             (run.run_name.args.empty() ? "" : "/" + run.run_name.args)]
        .push_back(run.real_accumulated_time / static_cast<double>(run.iterations));
  }
  ConsoleReporter::ReportRuns(runs);
}

void RatioReporter::PrintTable(const std::vector<Ratio>& ratios) const {
  fmt::print("\n{:<58} {:>8} {:>14}\n", "ratio of medians", "ratio", "spread");
  for (const Ratio& ratio : ratios) {
    const auto measured = seconds_.find(ratio.measured);
    const auto against = seconds_.find(ratio.against);
    if (measured == seconds_.end() || against == seconds_.end()) continue;
    const Summary left = Summarise(measured->second);
    const Summary right = Summarise(against->second);
    fmt::print("{:<58} {:>8.2f} {:>6.0f}% {:>5.0f}%\n", ratio.what, left.median / right.median,
               100 * left.spread, 100 * right.spread);
  }
}

}  // namespace

int RunAndCompare(int argc, char** argv, const std::vector<Ratio>& ratios) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintTable(ratios);
  benchmark::Shutdown();
  return 0;
}

}  // namespace fabscan
