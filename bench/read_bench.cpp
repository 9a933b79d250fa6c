// What reading a snapshot costs, against simdjson merely walking the same bytes: taken from the
// file in the same pieces, so that both sides pay for reading it, or in memory already.

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "bench/fabric_maker.h"
#include "bench/processor_time.h"
#include "bench/ratio_table.h"
#include "bench/scratch_directory.h"
#include "fabscan/fabscan_sim_info_dump.h"
#include "snapshot/byte_source.h"
#include "snapshot/line_reader.h"
#include "snapshot/snapshot.h"

namespace {

constexpr unsigned kSwitches = 500;
constexpr unsigned kAdapters = 19500;

/// The snapshot that is read.
const std::filesystem::path& Snapshot() {
  static const std::filesystem::path snapshot = [] {
    std::filesystem::path path = fabscan::ScratchDirectory() / "fabric.jsonl";
    Fabscan fabscan;
    fabscan::FabricShape shape;
    shape.switches = kSwitches;
    shape.adapters = kAdapters;
    fabscan::MakeFabric(shape, fabscan);
    std::ofstream out(path, std::ios::binary);
    fabscan::WriteSnapshot(out, fabscan, {});
    return path;
  }();
  return snapshot;
}

/// Runs `work`, which reads the snapshot. What it returns goes again unmeasured.
template <class Work>
void Measure(benchmark::State& state, Work work) {
  fabscan::ProcessorTime processor_time;
  for (auto _ : state) {
    processor_time.Start();
    std::optional result = work();
    processor_time.Stop();
    state.PauseTiming();
    result.reset();
    state.ResumeTiming();
  }
  processor_time.Report(state);
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(std::filesystem::file_size(Snapshot())));
}

std::unique_ptr<Fabscan> Read(const std::set<u_int64_t>* guids) {
  fabscan::SnapshotReadOptions options;
  options.guids = guids;
  auto fabscan = std::make_unique<Fabscan>();
  fabscan::ReadSnapshot(Snapshot().string(), *fabscan, options);
  return fabscan;
}

void ReadAll(benchmark::State& state) {
  Measure(state, [] { return std::optional(Read(nullptr)); });
}

void DumpThreeNodes(benchmark::State& state) {
  const std::set<u_int64_t> guids = {0x5a1e0c0300a00007, 0x5a1e0c0300d00005, 0x5a1e0c0300d00f00};
  Measure(state, [&] {
    auto fabscan = Read(&guids);
    fabscan->setOutputFolder(Snapshot().parent_path().string());
    if (SimInfoDumpCPP(*fabscan).Generate("Three", guids) != 0) std::abort();
    return std::optional(std::move(fabscan));
  });
}

/// Visits every value, and does nothing with it.
void Walk(simdjson::ondemand::value value) {
  switch (value.type()) {
    case simdjson::ondemand::json_type::object:
      for (auto field : value.get_object()) {
        benchmark::DoNotOptimize(field.key().raw());
        Walk(field.value());
      }
      break;
    case simdjson::ondemand::json_type::array:
      for (auto element : value.get_array()) Walk(element.value());
      break;
    case simdjson::ondemand::json_type::string:
      benchmark::DoNotOptimize(value.get_string().value().data());
      break;
    case simdjson::ondemand::json_type::number:
      benchmark::DoNotOptimize(value.get_uint64().value());
      break;
    default:
      benchmark::DoNotOptimize(value.get_bool().value());
  }
}

using Document = simdjson::ondemand::document;

/// One document after the other, each on its line, as the file is read. Returns their number.
template <class Visit>
std::size_t ForEachLine(Visit visit) {
  std::size_t documents = 0;
  simdjson::ondemand::parser parser;
  const auto source = fabscan::OpenFileSource(Snapshot().string());
  fabscan::LineReader lines(*source, fabscan::SnapshotReadOptions().max_line_bytes);
  while (const auto line = lines.Next()) {
    Document document = parser.iterate(line->text.data(), line->text.size(), line->readable);
    visit(document);
    ++documents;
  }
  return documents;
}

/// The same of bytes that are in memory already.
template <class Visit>
std::size_t ForEachLineInMemory(const simdjson::padded_string& json, Visit visit) {
  std::size_t documents = 0;
  simdjson::ondemand::parser parser;
  const char* const end = json.data() + json.size();
  for (const char* line = json.data(); line < end;) {
    const auto left = static_cast<std::size_t>(end - line);
    const auto* line_end = static_cast<const char*>(std::memchr(line, '\n', left));
    const auto length = static_cast<std::size_t>((line_end == nullptr ? end : line_end) - line);
    Document document = parser.iterate(line, length, left + simdjson::SIMDJSON_PADDING);
    visit(document);
    ++documents;
    line += length + 1;
  }
  return documents;
}

void WalkDocument(Document& document) { Walk(document); }

void WalkAll(benchmark::State& state) {
  Measure(state, [] { return std::optional(ForEachLine(WalkDocument)); });
}

void WalkAllInMemory(benchmark::State& state) {
  const simdjson::padded_string json = simdjson::padded_string::load(Snapshot().string());
  Measure(state, [&] { return std::optional(ForEachLineInMemory(json, WalkDocument)); });
}

/// The scan alone: where every document begins and ends.
void ScanAll(benchmark::State& state) {
  Measure(state, [] { return std::optional(ForEachLine([](Document&) {})); });
}

constexpr int kRepetitions = 7;

BENCHMARK(ReadAll)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();
BENCHMARK(WalkAllInMemory)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();
BENCHMARK(WalkAll)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();
BENCHMARK(DumpThreeNodes)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();
BENCHMARK(ScanAll)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();

const std::vector<fabscan::Ratio> kRatios = {
    {"reading a snapshot, against simdjson walking the same file", "ReadAll", "WalkAll"},
    {"the same, against simdjson walking it in memory", "ReadAll", "WalkAllInMemory"},
    {"dumping three nodes of it, against simdjson's scan of the file", "DumpThreeNodes", "ScanAll"},
};

}  // namespace

int main(int argc, char** argv) { return fabscan::RunAndCompare(argc, argv, kRatios); }
