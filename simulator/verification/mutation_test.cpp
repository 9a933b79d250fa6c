// Verification must detect faults: every generated function is changed in three ways, and the
// report of the function must show each change. If every assignment is changed, the report must
// list all.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <sstream>

#include "simulator/verification/testing/test_fabric.h"
#include "simulator/verification/verification.h"

namespace fabscan {
namespace {

using Lines = std::vector<std::string>;

/// mad_buffer.FIELD = VALUE; or wrapper.set_FIELD(VALUE);
struct Assignment {
  std::string before_field, field, before_value, value, after_value;

  std::string line() const { return before_field + field + before_value + value + after_value; }
};

bool ParseAssignment(const std::string& line, Assignment& assignment) {
  const std::pair<const char*, const char*> forms[] = {{"mad_buffer.", " = "},
                                                       {"wrapper.set_", "("}};
  for (const auto& [opening, middle] : forms) {
    const std::size_t blanks = line.find_first_not_of(' ');
    if (blanks == line.npos || line.compare(blanks, std::string(opening).size(), opening) != 0) {
      continue;
    }
    const std::size_t field = blanks + std::string(opening).size();
    const std::size_t middle_at = line.find(middle, field);
    const std::size_t value = middle_at + std::string(middle).size();
    const std::size_t end = line.find_first_of(");", value);
    assignment = {line.substr(0, field), line.substr(field, middle_at - field), middle,
                  line.substr(value, end - value), line.substr(end)};
    return true;
  }
  return false;
}

/// Line numbers of a function's assignments.
std::vector<std::size_t> AssignmentsIn(const Lines& body) {
  std::vector<std::size_t> numbers;
  Assignment assignment;
  for (std::size_t i = 0; i < body.size(); ++i) {
    if (ParseAssignment(body[i], assignment)) numbers.push_back(i);
  }
  return numbers;
}

Assignment AssignmentAt(const Lines& body, std::size_t number) {
  Assignment assignment;
  EXPECT_TRUE(ParseAssignment(body[number], assignment));
  return assignment;
}

void ChangeValueAt(Lines& body, std::size_t number) {
  Assignment assignment = AssignmentAt(body, number);
  const bool is_zero = assignment.value == "0x0";
  assignment.value = is_zero ? "0x1" : "0x0";
  body[number] = assignment.line();
}

void ChangeValue(Lines& body) { ChangeValueAt(body, AssignmentsIn(body).at(0)); }

void ChangeEveryValue(Lines& body) {
  for (const std::size_t number : AssignmentsIn(body)) {
    if (AssignmentAt(body, number).field == "RedirectGID") {
      // An address, which is edited into the record's own words; these are others.
      body[number] = "    mad_buffer.RedirectGID[0] = 0x0; mad_buffer.RedirectGID[1] = 0x0;";
    } else {
      ChangeValueAt(body, number);
    }
  }
}

void DropLine(Lines& body) {
  body.erase(body.begin() + static_cast<std::ptrdiff_t>(AssignmentsIn(body).at(0)));
}

/// Swaps the names of two fields with different values. A function that assigns only one field, in
/// all or per port, assigns an adjacent field instead.
void SwapFields(Lines& body) {
  const std::vector<std::size_t> numbers = AssignmentsIn(body);
  Assignment first = AssignmentAt(body, numbers.at(0));
  for (const std::size_t number : numbers) {
    Assignment second = AssignmentAt(body, number);
    if (second.field == first.field || second.value == first.value) continue;
    std::swap(first.field, second.field);
    body[numbers[0]] = first.line();
    body[number] = second.line();
    return;
  }
  first.field = first.field == "turbo_path_cap" ? "turbo_path_enable" : "push_ack_coal_en";
  body[numbers[0]] = first.line();
}

struct Mutation {
  const char* name;
  void (*apply)(Lines& body);
};
constexpr Mutation kMutations[] = {{"Keep", [](Lines&) {}},
                                   {"Change", ChangeValue},
                                   {"Drop", DropLine},
                                   {"Swap", SwapFields},
                                   {"Every", ChangeEveryValue}};

/// The generated file with the lines of one function passed through `change`, and all other
/// functions empty, so that many fit into one program.
std::string Mutated(const std::string& text, const std::string& function,
                    const std::function<void(Lines&)>& change) {
  std::istringstream lines(text);
  std::string mutated;
  std::string line;
  Lines body;
  bool inside = false;
  bool wanted = false;
  while (std::getline(lines, line)) {
    if (line == "}") {
      if (wanted) change(body);
      for (const std::string& part : body) mutated += part + '\n';
      inside = wanted = false;
    }
    if (!inside) mutated += line + '\n';
    if (inside && wanted) body.push_back(line);
    if (line.rfind("void ", 0) == 0) {
      inside = true;
      wanted = line.find("::" + function + "()") != line.npos;
      body.clear();
    }
  }
  return mutated;
}

const FunctionResult& ResultOf(const NodeReport& report, const std::string& name) {
  for (const FunctionResult& function : report.functions) {
    if (function.name == name) return function;
  }
  throw std::logic_error("no such function: " + name);
}

TEST(Mutation, ReportsEveryChangeOfEveryFunction) {
  std::string folder = testing::TempDir() + "mutationXXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  Fabscan fabscan;
  MakeTestFabric(fabscan);
  const Workspace workspace(folder, Compiler{});
  const IBNode& switch_node = *fabscan.discovered_fabric.getNodeByGuid(0x10);
  const IBNode& router_node = *fabscan.discovered_fabric.getNodeByGuid(0x12);

  std::vector<std::string> functions;
  std::vector<GeneratedSource> mutants;
  for (const auto& [function, expected] : ExpectedFunctionsOf(fabscan, switch_node)) {
    const IBNode& node = function == "setRouterInfo" ? router_node : switch_node;
    for (const Mutation& mutation : kMutations) {
      mutants.push_back(Generate(workspace, fabscan, node, mutation.name + function));
      mutants.back().text = Mutated(mutants.back().text, function, mutation.apply);
    }
    functions.push_back(function);
  }
  ASSERT_EQ(functions.size(), 22U);

  const std::vector<NodeReport> reports = Verify(workspace, "mutants", fabscan, mutants);
  constexpr std::size_t kVariants = std::size(kMutations);
  for (std::size_t i = 0; i < reports.size(); ++i) {
    const std::string& function = functions[i / kVariants];
    const FunctionResult& result = ResultOf(reports[i], function);
    EXPECT_GT(result.fields, 0U) << function;
    const Mutation& mutation = kMutations[i % kVariants];
    if (mutation.apply == ChangeEveryValue) {
      EXPECT_EQ(result.differences.size(), result.fields) << function;
    } else if (i % kVariants == 0) {
      EXPECT_TRUE(result.differences.empty()) << function << ": " << result.differences.at(0);
    } else {
      EXPECT_FALSE(result.differences.empty()) << function << ": " << mutants[i].prefix;
    }
  }
  std::filesystem::remove_all(folder);
}

// The FNM port's own values go to the port before it, and the regular ones to the FNM port.
TEST(Mutation, ReportsAMarkedPortWithTheWrongNumber) {
  std::string folder = testing::TempDir() + "mutationXXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  Fabscan fabscan;
  MakeTestFabric(fabscan);
  const Workspace workspace(folder, Compiler{});
  const IBNode& node = *fabscan.discovered_fabric.getNodeByGuid(0x10);
  const char* const functions[] = {"setPortInfo", "setExtendedPortInfo",
                                   "setWrenReductionPortInfo"};
  const auto renumber = [](Lines& body) {
    bool found = false;
    for (std::string& line : body) {
      for (const char* label : {"case 4:", "i == 4)"}) {
        const std::size_t at = line.find(label);
        if (at == line.npos) continue;
        line[line.find('4', at)] = '3';
        found = true;
      }
    }
    EXPECT_TRUE(found);
  };
  std::vector<GeneratedSource> mutants;
  for (const char* function : functions) {
    mutants.push_back(Generate(workspace, fabscan, node, function));
    mutants.back().text = Mutated(mutants.back().text, function, renumber);
  }
  const std::vector<NodeReport> reports = Verify(workspace, "mutants", fabscan, mutants);
  for (std::size_t i = 0; i < reports.size(); ++i) {
    const FunctionResult& result = ResultOf(reports[i], functions[i]);
    ASSERT_FALSE(result.differences.empty()) << functions[i];
    EXPECT_NE(result.differences.front().find("[3]."), std::string::npos);
    EXPECT_NE(result.differences.back().find("[4]."), std::string::npos);
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace fabscan
