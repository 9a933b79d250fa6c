// What generating costs, against writing the same bytes and against other ways of making them.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/fabric_maker.h"
#include "bench/processor_time.h"
#include "bench/ratio_table.h"
#include "bench/scratch_directory.h"
#include "bench/statement_list.h"
#include "bench/whole_file.h"
#include "fabscan/fabscan_sim_info_dump.h"

namespace {

using fabscan::DirectoryInMemory;
using fabscan::FabricShape;
using fabscan::ScratchDirectory;
using fabscan::StatementList;

constexpr char kPrefix[] = "Bench";
constexpr char kGeneratedName[] = "bench_generated.cpp";

/// A made fabric, and what is generated from it.
class Subject {
 public:
  explicit Subject(unsigned switches) {
    FabricShape shape;
    shape.switches = switches;
    fabscan::MakeFabric(shape, fabscan_);
    Generate(ScratchDirectory());
    size_ = std::filesystem::file_size(ScratchDirectory() / kGeneratedName);
    std::filesystem::remove(ScratchDirectory() / kGeneratedName);
  }

  void Generate(const std::filesystem::path& directory) {
    fabscan_.setOutputFolder(directory.string());
    if (SimInfoDumpCPP(fabscan_).Generate(kPrefix, {}) != 0) std::abort();
  }

  std::uintmax_t Size() const { return size_; }

  const std::string& Text() {
    if (!text_.empty()) return text_;
    Generate(ScratchDirectory());
    std::ifstream file(ScratchDirectory() / kGeneratedName, std::ios::binary);
    text_.assign(std::istreambuf_iterator<char>(file), {});
    std::filesystem::remove(ScratchDirectory() / kGeneratedName);
    return text_;
  }

  const StatementList& Statements() {
    if (!statements_) statements_.emplace(Text());
    return *statements_;
  }

 private:
  Fabscan fabscan_;
  std::uintmax_t size_ = 0;
  std::string text_;
  std::optional<StatementList> statements_;
};

Subject& SubjectOf(unsigned switches) {
  static std::map<unsigned, std::unique_ptr<Subject>> subjects;
  auto& subject = subjects[switches];
  if (subject == nullptr) subject = std::make_unique<Subject>(switches);
  return *subject;
}

/// Runs `write(path)` on a file that is not there yet, each time. Removing it again is not
/// measured, nor is a first run, which leaves its pages to the others: where those come from
/// somewhere else, as in a virtual machine, they may take longer than all the rest.
template <class Write>
void Measure(benchmark::State& state, Write write,
             const std::filesystem::path& directory = ScratchDirectory()) {
  Subject& subject = SubjectOf(static_cast<unsigned>(state.range(0)));
  const std::filesystem::path path = directory / kGeneratedName;
  fabscan::ProcessorTime processor_time;
  write(subject, path);
  std::filesystem::remove(path);
  for (auto _ : state) {
    const auto begin = std::chrono::steady_clock::now();
    processor_time.Start();
    write(subject, path);
    processor_time.Stop();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    state.SetIterationTime(taken.count());
    if (std::filesystem::file_size(path) != subject.Size()) {
      state.SkipWithError("wrote other bytes");
      break;
    }
    std::filesystem::remove(path);
  }
  processor_time.Report(state);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(subject.Size()));
}

void Generate(benchmark::State& state) {
  Measure(state, [](Subject& subject, const std::filesystem::path& path) {
    subject.Generate(path.parent_path());
  });
}

void GenerateInMemory(benchmark::State& state) {
  Measure(
      state,
      [](Subject& subject, const std::filesystem::path& path) {
        subject.Generate(path.parent_path());
      },
      DirectoryInMemory());
}

void Write(benchmark::State& state) {
  const std::string& text = SubjectOf(static_cast<unsigned>(state.range(0))).Text();
  Measure(state, [&](Subject&, const std::filesystem::path& path) {
    fabscan::WriteWholeFile(path, text);
  });
}

/// The conventional way: each part of a statement inserted into the file's stream.
void Streams(benchmark::State& state) {
  const auto& statements = SubjectOf(static_cast<unsigned>(state.range(0))).Statements();
  Measure(state, [&](Subject&, const std::filesystem::path& path) {
    std::ofstream out(path, std::ios::binary);
    for (const auto& [text, value] : statements) {
      out << text->indent << text->text;
      if (text->has_value) out << "0x" << std::hex << value << std::dec << text->after;
      out << '\n';
    }
  });
}

/// The same with fmt, into a buffer that is flushed in large chunks.
void Formatted(benchmark::State& state) {
  const auto& statements = SubjectOf(static_cast<unsigned>(state.range(0))).Statements();
  Measure(state, [&](Subject&, const std::filesystem::path& path) {
    std::ofstream out(path, std::ios::binary);
    fmt::memory_buffer buffer;
    for (const auto& [text, value] : statements) {
      const auto end = fmt::appender(buffer);
      if (text->has_value) {
        fmt::format_to(end, "{}{}0x{:x}{}\n", text->indent, text->text, value, text->after);
      } else {
        fmt::format_to(end, "{}{}\n", text->indent, text->text);
      }
      if (buffer.size() < fabscan::kFilePiece) continue;
      out.write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
      buffer.clear();
    }
    out.write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  });
}

void Repeat(benchmark::internal::Benchmark* measured, int switches, int iterations) {
  constexpr int kRepetitions = 15;
  measured->Arg(switches)->Iterations(iterations)->Repetitions(kRepetitions)->UseManualTime();
}

void OnSwitches2000(benchmark::internal::Benchmark* measured) { Repeat(measured, 2000, 1); }
void OnSwitches20(benchmark::internal::Benchmark* measured) { Repeat(measured, 20, 100); }
void OnSwitches20000(benchmark::internal::Benchmark* measured) { Repeat(measured, 20000, 1); }

BENCHMARK(Generate)->Apply(OnSwitches2000);
BENCHMARK(Write)->Apply(OnSwitches2000);
BENCHMARK(Streams)->Apply(OnSwitches2000);
BENCHMARK(Formatted)->Apply(OnSwitches2000);
BENCHMARK(GenerateInMemory)->Apply(OnSwitches20);
BENCHMARK(GenerateInMemory)->Apply(OnSwitches2000);
BENCHMARK(GenerateInMemory)->Apply(OnSwitches20000);

const std::vector<fabscan::Ratio> kRatios = {
    {"Generate to a file, against write(2) of the same bytes", "Generate/2000", "Write/2000"},
    {"the same statements through a stream, against Generate", "Streams/2000", "Generate/2000"},
    {"the same statements through fmt, against Generate", "Formatted/2000", "Generate/2000"},
};

const std::vector<fabscan::Throughput> kThroughputs = {
    {"Generate of 20 switches, to a file in memory", "GenerateInMemory/20"},
    {"the same of 2,000 switches", "GenerateInMemory/2000"},
    {"the same of 20,000 switches", "GenerateInMemory/20000"},
};

}  // namespace

int main(int argc, char** argv) {
  return fabscan::RunAndCompare(argc, argv, kRatios, kThroughputs);
}
