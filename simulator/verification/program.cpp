#include "simulator/verification/program.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <system_error>

#include "fabscan/generated_functions.h"
#include "simulator/verification/expected_values.h"
#include "simulator/verification/process.h"
#include "simulator/verification/simulator_sources.h"

namespace fabscan {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLogLines = 8;

void WriteFile(const fs::path& path, std::string_view text) {
  std::error_code error;
  fs::create_directories(path.parent_path(), error);
  std::ofstream file(path, std::ios::binary);
  file << text << std::flush;
  if (!file) {
    throw VerificationError(
        path.string() + ": cannot write; check the permissions and free space of the directory");
  }
}

/// The first lines, or those from the first line that reports an error.
std::vector<std::string> FirstLines(const std::string& path) {
  std::vector<std::string> lines;
  bool error_seen = false;
  std::ifstream file(path);
  std::string line;
  while (std::getline(file, line)) {
    if (!error_seen && line.find("error") != std::string::npos) {
      error_seen = true;
      lines.clear();
    }
    if (lines.size() < kLogLines) lines.push_back(line);
  }
  return lines;
}

std::string CauseOf(int error_number) {
  return std::error_code(error_number, std::generic_category()).message();
}

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> words;
  std::istringstream stream(line);
  std::string word;
  while (std::getline(stream, word, '\t')) words.push_back(word);
  return words;
}

std::map<std::string, std::vector<FunctionResult>> ReadResults(const std::string& path) {
  std::map<std::string, std::vector<FunctionResult>> results;
  std::vector<FunctionResult>* unit = nullptr;
  std::ifstream file(path);
  std::string line;
  while (std::getline(file, line)) {
    if (line == "done" && !std::getline(file, line)) return results;
    const std::vector<std::string> words = Split(line);
    if (words.size() == 2 && words[0] == "unit") {
      unit = &results[words[1]];
    } else if (words.size() == 5 && words[0] == "function" && unit != nullptr) {
      unit->push_back({words[1], std::stoul(words[2]), std::stoul(words[3]), {}});
    } else if (words.size() == 3 && words[0] == "differ" && unit != nullptr && !unit->empty()) {
      unit->back().differences.push_back(words[1] + ' ' + words[2]);
    } else {
      break;
    }
  }
  throw VerificationError(path + ": the compiled program did not finish its report");
}

/// A program that ends before its functions were called has nothing to report.
void RequireEveryFunction(const std::vector<FunctionResult>& results, const std::string& unit) {
  std::set<std::string> names;
  for (const FunctionResult& function : results) names.insert(function.name);
  constexpr std::size_t kAll = std::size(generator::kGeneratedFunctions);
  if (results.size() == kAll && names.size() == kAll) return;
  throw VerificationError("the compiled program reported " + std::to_string(names.size()) + " of " +
                          std::to_string(kAll) + " functions of " + unit);
}

}  // namespace

Workspace::Workspace(const std::string& folder, Compiler compiler)
    : folder_(fs::absolute(folder).string()), compiler_(std::move(compiler)) {
  std::string runner;
  for (const SimulatorSource* source = kSimulatorSources; source->path != nullptr; ++source) {
    const std::string path = source->path;
    WriteFile(fs::path(folder_) / path, source->text);
    const bool is_part = path.rfind("runner/", 0) == 0 && fs::path(path).extension() == ".cpp";
    if (is_part) runner += "#include \"" + path + "\"\n";
  }
  // One compilation for all: the headers cost more than the code.
  WriteFile(fs::path(folder_) / "runner.cpp", runner);
  compile({"-c", folder_ + "/runner.cpp", "-o", folder_ + "/runner.o"}, folder_ + "/runner");
}

std::string Workspace::AddDevice(const std::string& prefix) const {
  const std::string name = LowerCase(prefix);
  const fs::path folder = fs::path(folder_) / "devices" / name;
  WriteFile(folder / (name + ".h"), DeviceSource("devices/example/example.h", prefix));
  return folder.string();
}

std::map<std::string, std::vector<FunctionResult>> Workspace::Run(
    const std::string& name, const std::vector<Device>& devices) const {
  const std::string program = folder_ + "/" + name;
  std::ostringstream source;
  std::ostringstream expectations;
  source << "#include \"runner/unit.h\"\n";
  for (const Device& device : devices) {
    const std::string file = LowerCase(device.prefix) + "_verified.cpp";
    WriteFile(fs::path(AddDevice(device.prefix)) / file, device.text);
    source << "#include \"devices/" << LowerCase(device.prefix) << '/' << file << "\"\n"
           << "RUNNER_UNIT(" << device.prefix << ", " << device.kind << ")\n";
    WriteExpectations(expectations, device.expectations);
  }
  WriteFile(program + ".cpp", source.str());
  WriteFile(program + ".expectations", expectations.str());
  compile({program + ".cpp", folder_ + "/runner.o", "-o", program}, program);

  const std::string report = program + ".report";
  const std::string errors = program + ".errors";
  const ProcessEnd end = RunProcess({program, program + ".expectations"}, report, errors);
  if (end.start_error != 0) {
    throw VerificationError(program + ": cannot run: " + CauseOf(end.start_error) +
                            "; use --keep with a directory that allows execution");
  }
  if (end.signal != 0) {
    throw VerificationError(
        "the compiled program was killed by signal " + std::to_string(end.signal),
        FirstLines(errors));
  }
  if (end.status > 1) {
    throw VerificationError("the compiled program failed", FirstLines(errors));
  }
  auto results = ReadResults(report);
  for (const Device& device : devices) RequireEveryFunction(results[device.prefix], device.prefix);
  return results;
}

void Workspace::compile(const std::vector<std::string>& words, const std::string& log) const {
  // The standard include directories are those of an installed simulator. With assertions, a
  // generated loop that passes the last port ends the program.
  std::vector<std::string> call = {compiler_.command, "-std=" + compiler_.standard,
                                   "-D_GLIBCXX_ASSERTIONS", "-I", folder_ + "/include"};
  call.insert(call.end(), words.begin(), words.end());
  const std::string errors = log + ".compiler";
  const ProcessEnd end = RunProcess(call, log + ".output", errors);
  if (end.start_error != 0) {
    throw VerificationError(compiler_.command + ": cannot run the compiler: " +
                            CauseOf(end.start_error) + "; use a different compiler");
  }
  if (end.status != 0) {
    throw VerificationError(
        compiler_.command + ": the compiler failed" +
            (end.signal != 0 ? ", signal " + std::to_string(end.signal) : std::string()) +
            "; fix the errors above, or use a different compiler",
        FirstLines(errors));
  }
}

}  // namespace fabscan
