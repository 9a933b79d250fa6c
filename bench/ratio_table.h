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

/// Runs the benchmarks that the command line chooses, then prints the table: for each row whose
/// benchmarks were run, the ratio of the medians of real time, and how far the repetitions of
/// either side lay apart (largest less smallest, as a part of the median). Returns what the
/// program's `main` is to return.
int RunAndCompare(int argc, char** argv, const std::vector<Ratio>& ratios);

}  // namespace fabscan

#endif
