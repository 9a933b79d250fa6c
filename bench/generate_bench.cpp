// What generating costs, against writing the same bytes and against other ways of making them.

#include <benchmark/benchmark.h>
#include <fabscan_sim_info_dump.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "fabric_maker.h"
#include "ratio_table.h"
#include "statement_list.h"

namespace {

using fabscan::FabricShape;
using fabscan::Statement;

constexpr char kPrefix[] = "Bench";
constexpr char kGeneratedName[] = "bench_generated.cpp";
constexpr std::size_t kPiece = std::size_t{1} << 20U;

/// A folder for the files that are written, removed at the end.
const std::filesystem::path& Folder() {
  static const struct Scratch {
    Scratch() {
      std::string name = (std::filesystem::current_path() / "bench-XXXXXX").string();
      path = ::mkdtemp(name.data());
    }
    ~Scratch() { std::filesystem::remove_all(path); }
    std::filesystem::path path;
  } scratch;
  return scratch.path;
}

/// A made fabric, what is generated from it, and that taken apart.
struct Subject {
  explicit Subject(unsigned switches) {
    FabricShape shape;
    shape.switches = switches;
    fabscan::MakeFabric(shape, fabscan);
    fabscan.setOutputFolder(Folder().string());
    Generate();
    std::ifstream file(Folder() / kGeneratedName, std::ios::binary);
    text.assign(std::istreambuf_iterator<char>(file), {});
    std::filesystem::remove(Folder() / kGeneratedName);
  }

  int Generate() { return SimInfoDumpCPP(fabscan).Generate(kPrefix, {}); }

  Fabscan fabscan;
  std::string text;
};

/// One fabric at a time: the large ones take gigabytes.
Subject& SubjectOf(unsigned switches) {
  static std::map<unsigned, std::unique_ptr<Subject>> subjects;
  if (subjects.count(switches) == 0) {
    subjects.clear();
    subjects.emplace(switches, std::make_unique<Subject>(switches));
  }
  return *subjects.at(switches);
}

/// Runs `write(path)` on a file that is not there yet, each time.
template <class Write>
void Measure(benchmark::State& state, Write write) {
  Subject& subject = SubjectOf(static_cast<unsigned>(state.range(0)));
  const std::filesystem::path path = Folder() / kGeneratedName;
  for (auto _ : state) {
    write(subject, path);
    state.PauseTiming();
    if (std::filesystem::file_size(path) != subject.text.size()) {
      state.SkipWithError("wrote other bytes");
      break;
    }
    std::filesystem::remove(path);
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(subject.text.size()));
}

void Generate(benchmark::State& state) {
  Measure(state, [](Subject& subject, const std::filesystem::path&) { subject.Generate(); });
}

void Write(benchmark::State& state) {
  Measure(state, [](Subject& subject, const std::filesystem::path& path) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    for (std::size_t at = 0; at < subject.text.size();) {
      const std::size_t size = std::min(kPiece, subject.text.size() - at);
      const ssize_t written = ::write(file, subject.text.data() + at, size);
      if (written <= 0) std::abort();
      at += static_cast<std::size_t>(written);
    }
    ::close(file);
  });
}

void Streams(benchmark::State& state) {
  const auto statements = fabscan::TakeApart(SubjectOf(static_cast<unsigned>(state.range(0))).text);
  Measure(state, [&](Subject&, const std::filesystem::path& path) {
    std::ofstream out(path, std::ios::binary);
    for (const Statement& statement : statements) {
      out << statement.before;
      if (statement.has_value) out << std::hex << statement.value << std::dec << statement.after;
      out << '\n';
    }
  });
}

void Formatted(benchmark::State& state) {
  const auto statements = fabscan::TakeApart(SubjectOf(static_cast<unsigned>(state.range(0))).text);
  Measure(state, [&](Subject&, const std::filesystem::path& path) {
    std::ofstream out(path, std::ios::binary);
    fmt::memory_buffer buffer;
    for (const Statement& statement : statements) {
      if (statement.has_value) {
        fmt::format_to(std::back_inserter(buffer), "{}{:x}{}\n", statement.before, statement.value,
                       statement.after);
      } else {
        fmt::format_to(std::back_inserter(buffer), "{}\n", statement.before);
      }
      if (buffer.size() < kPiece) continue;
      out.write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
      buffer.clear();
    }
    out.write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  });
}

constexpr int kRepetitions = 9;

BENCHMARK(Generate)->Arg(2000)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();
BENCHMARK(Write)->Arg(2000)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();
BENCHMARK(Streams)->Arg(2000)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();
BENCHMARK(Formatted)->Arg(2000)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();

const std::vector<fabscan::Ratio> kRatios = {
    {"Generate to a file, against write(2) of the same bytes", "Generate/2000", "Write/2000"},
    {"the same statements through a stream, against Generate", "Streams/2000", "Generate/2000"},
    {"the same statements through fmt, against Generate", "Formatted/2000", "Generate/2000"},
};

}  // namespace

int main(int argc, char** argv) { return fabscan::RunAndCompare(argc, argv, kRatios); }
