// What `fabscan dump` of a whole fabric costs, end to end, against reading the snapshot and writing
// the same bytes.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/fabric_maker.h"
#include "bench/processor_time.h"
#include "bench/ratio_table.h"
#include "bench/scratch_directory.h"
#include "bench/whole_file.h"
#include "snapshot/snapshot.h"

extern char** environ;

namespace {

void WaitFor(pid_t child) {
  int status = 0;
  if (::waitpid(child, &status, 0) != child || status != 0) std::abort();
}

/// A made fabric, and what is generated from it.
struct Subject {
  Subject() {
    fabscan::FabricShape shape;
    shape.switches = 2000;
    shape.ports = 64;
    {
      Fabscan fabscan;
      fabscan::MakeFabric(shape, fabscan);
      std::ofstream out(snapshot, std::ios::binary);
      fabscan::WriteSnapshot(out, fabscan, {});
    }
    Dump();
    text.resize(std::filesystem::file_size(output));
    fabscan::ReadWholeFile(output, text);
  }

  /// Runs the command in a process of its own.
  void Dump() const {
    std::filesystem::remove(output);
    std::vector<std::string> words = {FABSCAN_COMMAND, "dump",     snapshot, "--prefix",
                                      "Bench",         "--output", output};
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    if (::posix_spawn(&child, FABSCAN_COMMAND, &actions, nullptr, arguments.data(), environ) != 0) {
      std::abort();
    }
    posix_spawn_file_actions_destroy(&actions);
    WaitFor(child);
  }

  /// In a process of its own too, whose memory is as new.
  void ReadAndWrite() const {
    std::filesystem::remove(output);
    const pid_t child = ::fork();
    if (child == 0) {
      Fabscan fabscan;
      fabscan::ReadSnapshot(snapshot, fabscan, {});
      fabscan::WriteWholeFile(output, text);
      ::_exit(0);
    }
    WaitFor(child);
  }

  const std::string snapshot = fabscan::DirectoryInMemory() / "fabric.jsonl";
  const std::string output = fabscan::DirectoryInMemory() / "bench_generated.cpp";
  std::string text;
};

const Subject& TheSubject() {
  static const Subject subject;
  return subject;
}

/// Processor time of this process and of those that it waited for.
double ProcessorSeconds() {
  double seconds = 0;
  for (const int whose : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage = {};
    ::getrusage(whose, &usage);
    for (const timeval& time : {usage.ru_utime, usage.ru_stime}) {
      seconds += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    }
  }
  return seconds;
}

template <class Work>
void Measure(benchmark::State& state, Work work) {
  const Subject& subject = TheSubject();
  double taken = 0;
  for (auto _ : state) {
    const double begin = ProcessorSeconds();
    work(subject);
    taken += ProcessorSeconds() - begin;
  }
  state.counters[fabscan::kProcessorSeconds] = taken;
}

void DumpCommand(benchmark::State& state) {
  Measure(state, [](const Subject& subject) { subject.Dump(); });
}

void ReadAndWrite(benchmark::State& state) {
  Measure(state, [](const Subject& subject) { subject.ReadAndWrite(); });
}

constexpr int kRepetitions = 9;

BENCHMARK(DumpCommand)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();
BENCHMARK(ReadAndWrite)->Iterations(1)->Repetitions(kRepetitions)->UseRealTime();

const std::vector<fabscan::Ratio> kRatios = {
    {"`fabscan dump` of 2,000 switches, against reading the snapshot and write(2)", "DumpCommand",
     "ReadAndWrite"},
};

}  // namespace

int main(int argc, char** argv) { return fabscan::RunAndCompare(argc, argv, kRatios); }
