#include "verification.h"

#include <fabscan_sim_info_dump.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <numeric>

#include "../core/node.h"
#include "simulator_sources.h"

namespace fabscan {

namespace {

/// Whether each function is what it must be: a block, a refusal, or neither.
void CompareOutcomes(const std::map<std::string, ExpectedFunction>& expected,
                     const CompilableCopy& copy, std::vector<FunctionResult>& functions) {
  for (FunctionResult& function : functions) {
    const Outcome outcome = expected.at(function.name).outcome;
    const bool refuses = std::any_of(
        copy.refusals.begin(), copy.refusals.end(),
        [&function](const GeneratedLine& line) { return line.function == function.name; });
    if (refuses && outcome != Outcome::kRefuses) {
      function.differences.emplace_back("refuses to compile, though nothing is missing");
    } else if (!refuses && outcome == Outcome::kRefuses) {
      function.differences.emplace_back("compiles, though its data is missing");
    }
  }
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

std::vector<NodeReport> Verify(const Workspace& workspace, const std::string& program,
                               const Fabscan& fabscan, const std::vector<GeneratedSource>& nodes) {
  std::vector<CompilableCopy> copies;
  std::vector<std::map<std::string, ExpectedFunction>> expected;
  std::vector<Workspace::Device> devices;
  for (const GeneratedSource& node : nodes) {
    if (node.node->numPorts > simulator::Node::kLastPort) {
      throw VerificationError("has 255 ports; a simulated node has 254 at most");
    }
    copies.push_back(MakeCompilable(node.text));
    expected.push_back(ExpectedFunctionsOf(fabscan, *node.node));
    for (const auto& function : expected.back()) {
      if (copies.back().functions.count(function.first) != 0) continue;
      throw VerificationError("the generated file defines no " + function.first);
    }
    devices.push_back({node.prefix, copies.back().kind, copies.back().text,
                       ExpectationsOf(node.prefix, *node.node, expected.back())});
  }

  auto results = workspace.Run(program, devices);
  std::vector<NodeReport> reports;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    std::vector<FunctionResult>& functions = results[nodes[i].prefix];
    CompareOutcomes(expected[i], copies[i], functions);
    reports.push_back(
        {std::move(copies[i].refusals), std::move(copies[i].hand_places), std::move(functions)});
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
