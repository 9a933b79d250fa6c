#ifndef FABSCAN_BENCH_RATIO_TABLE_H
#define FABSCAN_BENCH_RATIO_TABLE_H

#include <string>
#include <vector>

namespace fabscan {

/// One row of the table that ends a run: what is compared with what.
struct Ratio {
  std::string what;
  std::string measured;  // name of a benchmark
  std::string against;   // name of another
};

/// One row of a table of throughputs that are to be the same: what they are, and the benchmark.
struct Throughput {
  std::string what;
  std::string measured;
};

/// Runs the benchmarks that the command line chooses, a repetition of one after a repetition of
/// another, then prints the tables, in Markdown: for each row whose benchmarks were run, the ratio
/// of the medians of real time, that of processor time, and how far the repetitions lay apart in
/// real time (largest less smallest, as a part of the median). Returns what the program's `main` is
/// to return. For benchmarks that do not report their `ProcessorTime`, "-" stands in its place.
int RunAndCompare(int argc, char** argv, const std::vector<Ratio>& ratios,
                  const std::vector<Throughput>& throughputs = {});

}  // namespace fabscan

#endif
