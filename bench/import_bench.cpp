// What importing a discovery cache costs, against reading the file and writing the snapshot's
// bytes.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "bench/cache_maker.h"
#include "bench/processor_time.h"
#include "bench/ratio_table.h"
#include "bench/scratch_directory.h"
#include "bench/whole_file.h"
#include "discovery/cache_file.h"
#include "discovery/fabric_builder.h"
#include "snapshot/snapshot_writer.h"

namespace {

constexpr fabscan::FabricShape kShape = {1600, 64, 23400, 1};  // 25,000 nodes

void ImportCache(const std::string& cache, std::ostream& out) {
  fabscan::SnapshotWriter writer(out, {"a discovery cache", "", ""});
  fabscan::BuildFabricInParts(fabscan::ReadCacheFile(cache), fabscan::kPortsOfAPart,
                              [&](const Fabscan& part) { writer.Write(part); });
  writer.Finish();
}

/// The cache, and the snapshot that it becomes.
struct Subject {
  Subject() {
    const std::string made = fabscan::MakeCache(kShape);
    fabscan::WriteWholeFile(cache, made);
    cache_size = made.size();
    std::ostringstream out;
    ImportCache(cache, out);
    snapshot = out.str();
  }

  const std::string cache = fabscan::ScratchDirectory() / "fabric.cache";
  const std::string output = fabscan::ScratchDirectory() / "fabric.jsonl";
  std::size_t cache_size = 0;
  std::string snapshot;
};

Subject& TheSubject() {
  static Subject subject;
  return subject;
}

/// Runs `work`, which leaves the snapshot in a file that was not there. A first run, which is not
/// measured, leaves its pages to the others.
template <class Work>
void Measure(benchmark::State& state, Work work) {
  Subject& subject = TheSubject();
  fabscan::ProcessorTime processor_time;
  work(subject);
  std::filesystem::remove(subject.output);
  for (auto _ : state) {
    processor_time.Start();
    work(subject);
    processor_time.Stop();
    state.PauseTiming();
    if (std::filesystem::file_size(subject.output) != subject.snapshot.size()) {
      state.SkipWithError("wrote other bytes");
      break;
    }
    std::filesystem::remove(subject.output);
    state.ResumeTiming();
  }
  processor_time.Report(state);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(subject.snapshot.size()));
}

void Import(benchmark::State& state) {
  Measure(state, [](Subject& subject) {
    std::ofstream out(subject.output, std::ios::binary);
    ImportCache(subject.cache, out);
  });
}

void ReadAndWrite(benchmark::State& state) {
  Measure(state, [](Subject& subject) {
    std::string bytes(subject.cache_size, '\0');
    fabscan::ReadWholeFile(subject.cache, bytes);
    benchmark::DoNotOptimize(bytes.data());
    fabscan::WriteWholeFile(subject.output, subject.snapshot);
  });
}

constexpr int kRepetitions = 45;

BENCHMARK(Import)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();
BENCHMARK(ReadAndWrite)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();

const std::vector<fabscan::Ratio> kRatios = {
    {"importing a cache, against reading it and write(2)", "Import", "ReadAndWrite"},
};

}  // namespace

int main(int argc, char** argv) { return fabscan::RunAndCompare(argc, argv, kRatios); }
