#include "simulator/verification/verification.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <numeric>

#include "fabscan/fabscan_sim_info_dump.h"
#include "simulator/core/node.h"
#include "simulator/verification/simulator_sources.h"

namespace fabscan {

namespace {

/// The lines of the function that do not compile as written.
std::vector<std::string> EditedLinesOf(const std::string& function, const NodeReport& report) {
  std::vector<std::string> lines;
  for (const SourceEdit& edit : report.edits) {
    if (edit.function == function) lines.push_back(edit.text);
  }
  return lines;
}

bool AllBeginWith(const std::vector<std::string>& lines,
                  const std::vector<std::string>& beginnings) {
  return std::equal(lines.begin(), lines.end(), beginnings.begin(), beginnings.end(),
                    [](const std::string& line, const std::string& beginning) {
                      return line.compare(0, beginning.size(), beginning) == 0;
                    });
}

std::string Listed(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "'" : ", '") + line + "'";
  return text.empty() ? "none" : text;
}

/// Checks whether each function has the expected form: a block, an #error line, or neither, and
/// only the lines that are known not to compile.
void CompareOutcomes(const std::map<std::string, ExpectedFunction>& expected, NodeReport& report) {
  for (FunctionResult& function : report.functions) {
    const auto rule = expected.find(function.name);
    if (rule == expected.end()) throw VerificationError(function.name + " has no rule");
    const auto& [outcome, values, expected_lines] = rule->second;
    const bool refuses = report.ErrorLineOf(function.name) != nullptr;
    const std::vector<std::string> lines = EditedLinesOf(function.name, report);
    if (refuses && outcome != Outcome::kRefuses) {
      function.differences.emplace_back("refuses to compile, though nothing is missing");
    } else if (!refuses && outcome == Outcome::kRefuses) {
      function.differences.emplace_back("compiles, though its data is missing");
    } else if (!AllBeginWith(lines, expected_lines)) {
      function.differences.emplace_back("has other lines to edit than expected: " + Listed(lines) +
                                        "; should begin with: " + Listed(expected_lines));
    }
  }
}

/// The class in which the file defines the function: SW, RTR, HCA, AN or Unknown; empty if it is
/// not defined.
std::string ClassThatDefines(const std::string& function, const GeneratedSource& node) {
  const std::string begin = "\nvoid " + node.prefix + "::";
  const std::size_t end = node.text.find("::" + function + "() {\n");
  if (end == std::string::npos) return {};
  const std::size_t found = node.text.rfind(begin, end);
  if (found == std::string::npos) return {};
  const std::size_t name = found + begin.size();
  return name > end ? std::string() : node.text.substr(name, end - name);
}

template <class Count>
std::size_t Sum(const std::vector<FunctionResult>& functions, Count count) {
  return std::accumulate(
      functions.begin(), functions.end(), std::size_t{0},
      [&count](std::size_t sum, const FunctionResult& function) { return sum + count(function); });
}

}  // namespace

std::size_t NodeReport::records() const {
  return Sum(functions, [](const FunctionResult& function) { return function.records; });
}
std::size_t NodeReport::fields() const {
  return Sum(functions, [](const FunctionResult& function) { return function.fields; });
}
std::size_t NodeReport::differences() const {
  return Sum(functions, [](const FunctionResult& function) { return function.differences.size(); });
}

const SourceEdit* NodeReport::ErrorLineOf(const std::string& function) const {
  for (const SourceEdit& edit : edits) {
    if (edit.is_error_line && edit.function == function) return &edit;
  }
  return nullptr;
}
std::size_t NodeReport::ErrorLines() const {
  return static_cast<std::size_t>(std::count_if(
      edits.begin(), edits.end(), [](const SourceEdit& edit) { return edit.is_error_line; }));
}

std::vector<NodeReport> Verify(const Workspace& workspace, const std::string& program,
                               const Fabscan& fabscan, const std::vector<GeneratedSource>& nodes) {
  std::vector<NodeReport> reports;
  std::vector<std::map<std::string, ExpectedFunction>> expected;
  std::vector<Workspace::Device> devices;
  for (const GeneratedSource& node : nodes) {
    if (node.node->numPorts > simulator::Node::kLastPort) {
      throw VerificationError("has 255 ports; a simulated node has 254 at most");
    }
    BuildableSource source = MakeBuildable(node.text, fabscan);
    expected.push_back(ExpectedFunctionsOf(fabscan, *node.node));
    const std::string class_name = ExpectedClassOf(*node.node);
    for (const auto& function : expected.back()) {
      const std::string defined = ClassThatDefines(function.first, node);
      if (defined == class_name) continue;
      throw VerificationError(defined.empty()
                                  ? "the generated file defines no " + function.first
                                  : "the generated file defines " + function.first + " for " +
                                        defined + ", but the node is dumped as " + class_name);
    }
    devices.push_back({node.prefix, class_name, std::move(source.text),
                       ExpectationsOf(node.prefix, *node.node, expected.back())});
    reports.push_back({std::move(source.edits), {}});
  }

  auto results = workspace.Run(program, devices);
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    reports[i].functions = std::move(results[nodes[i].prefix]);
    CompareOutcomes(expected[i], reports[i]);
  }
  return reports;
}

GeneratedSource Generate(const Workspace& workspace, Fabscan& fabscan, const IBNode& node,
                         const std::string& prefix) {
  const std::string folder = workspace.AddDevice(prefix);
  fabscan.setOutputFolder(folder);
  const int status = SimInfoDumpCPP(fabscan).Generate(prefix, {node.guid});
  const std::string path = folder + "/" + LowerCase(prefix) + "_generated.cpp";
  std::ifstream file(path, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (status != 0 || !file) throw VerificationError(path + ": cannot generate the file");
  return {prefix, std::move(text), &node};
}

}  // namespace fabscan
