#include "bench/ratio_table.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "bench/processor_time.h"

namespace fabscan {

namespace {

struct Summary {
  double median;
  double spread;
};

Summary Summarise(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const double median = values[values.size() / 2];
  return {median, (values.back() - values.front()) / median};
}

/// Of the repetitions of one benchmark.
struct Measured {
  std::vector<double> seconds;
  std::vector<double> processor_seconds;
  std::vector<double> bytes_per_second;
  std::vector<double> bytes_per_processor_second;
};

/// Prints the benchmarks as they come, and keeps what each repetition took.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  RatioReporter() : ConsoleReporter(OO_Tabular) {}
  void ReportRuns(const std::vector<Run>& runs) override;
  void PrintRatios(const std::vector<Ratio>& ratios) const;
  void PrintThroughputs(const std::vector<Throughput>& throughputs) const;

 private:
  std::map<std::string, Measured> measured_;
};

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
    auto& measured = measured_[run.run_name.function_name +
                               (run.run_name.args.empty() ? "" : "/" + run.run_name.args)];
    measured.seconds.push_back(run.real_accumulated_time / static_cast<double>(run.iterations));
    const auto bytes = run.counters.find("bytes_per_second");
    if (bytes != run.counters.end()) measured.bytes_per_second.push_back(bytes->second);
    const auto processor = run.counters.find(kProcessorSeconds);
    if (processor == run.counters.end()) continue;
    measured.processor_seconds.push_back(processor->second / static_cast<double>(run.iterations));
    if (bytes == run.counters.end()) continue;
    measured.bytes_per_processor_second.push_back(bytes->second * run.real_accumulated_time /
                                                  processor->second);
  }
  ConsoleReporter::ReportRuns(runs);
}

void RatioReporter::PrintRatios(const std::vector<Ratio>& ratios) const {
  fmt::print(
      "\n| ratio of medians | ratio | of processor time | ms | spread | against ms | spread |\n");
  fmt::print("|---|---|---|---|---|---|---|\n");
  for (const Ratio& ratio : ratios) {
    const auto measured = measured_.find(ratio.measured);
    const auto against = measured_.find(ratio.against);
    if (measured == measured_.end() || against == measured_.end()) continue;
    const Measured& one = measured->second;
    const Measured& other = against->second;
    const Summary left = Summarise(one.seconds);
    const Summary right = Summarise(other.seconds);
    std::string processor = "-";
    if (!one.processor_seconds.empty() && !other.processor_seconds.empty()) {
      processor = fmt::format("{:.2f}", Summarise(one.processor_seconds).median /
                                            Summarise(other.processor_seconds).median);
    }
    fmt::print("| {} | {:.2f} | {} | {:.1f} | {:.0f} % | {:.1f} | {:.0f} % |\n", ratio.what,
               left.median / right.median, processor, 1e3 * left.median, 100 * left.spread,
               1e3 * right.median, 100 * right.spread);
  }
}

/// How far the highest of some medians lies above the lowest.
class Range {
 public:
  void Add(double median) {
    least_ = least_ == 0 ? median : std::min(least_, median);
    most_ = std::max(most_, median);
  }
  double Above() const { return least_ == 0 ? 0 : most_ / least_ - 1; }

 private:
  double least_ = 0;
  double most_ = 0;
};

void RatioReporter::PrintThroughputs(const std::vector<Throughput>& throughputs) const {
  Range of_time;
  Range of_processor_time;
  fmt::print("\n| throughput | GB a second | spread | GB a processor second | spread |\n");
  fmt::print("|---|---|---|---|---|\n");
  for (const Throughput& throughput : throughputs) {
    const auto measured = measured_.find(throughput.measured);
    if (measured == measured_.end()) continue;
    const Summary bytes = Summarise(measured->second.bytes_per_second);
    const Summary of_processor = Summarise(measured->second.bytes_per_processor_second);
    fmt::print("| {} | {:.2f} | {:.0f} % | {:.2f} | {:.0f} % |\n", throughput.what,
               bytes.median / 1e9, 100 * bytes.spread, of_processor.median / 1e9,
               100 * of_processor.spread);
    of_time.Add(bytes.median);
    of_processor_time.Add(of_processor.median);
  }
  fmt::print("| highest above lowest | {:.0f} % | | {:.0f} % | |\n", 100 * of_time.Above(),
             100 * of_processor_time.Above());
}

}  // namespace

int RunAndCompare(int argc, char** argv, const std::vector<Ratio>& ratios,
                  const std::vector<Throughput>& throughputs) {
  // Whatever else the machine does then meets all of them; the command line may say otherwise.
  std::vector<char*> arguments(argv, argv + argc);
  char interleaved[] = "--benchmark_enable_random_interleaving=true";
  arguments.insert(arguments.begin() + 1, interleaved);
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios(ratios);
  if (!throughputs.empty()) reporter.PrintThroughputs(throughputs);
  benchmark::Shutdown();
  return 0;
}

}  // namespace fabscan
