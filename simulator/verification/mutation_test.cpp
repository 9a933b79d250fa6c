// Verification must detect faults: the values and the structure of generated functions are changed,
// one change at a time, and the report of the function must show each. If every assignment is
// changed, the report must list all.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
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
    // The lowest digits of a longer value: all of them may not fit, and not compile.
    const auto cut = [](const std::string& value, std::size_t size) {
      return value.size() <= size ? value : "0x" + value.substr(value.size() + 2 - size);
    };
    std::swap(first.field, second.field);
    const std::size_t size = first.value.size();
    first.value = cut(first.value, second.value.size());
    second.value = cut(second.value, size);
    body[numbers[0]] = first.line();
    body[number] = second.line();
    return;
  }
  first.field = first.field == "turbo_path_cap" ? "turbo_path_enable" : "push_ack_coal_en";
  first.value = "0x1";
  body[numbers[0]] = first.line();
}

struct ValueMutation {
  const char* name;
  void (*apply)(Lines& body);
};
constexpr ValueMutation kValueMutations[] = {{"Keep", [](Lines&) {}},
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

/// The test fabric, and a workspace to compile mutants in.
class Mutation : public testing::Test {
 protected:
  // Shared by all tests, because compiling the runner takes longest.
  static void SetUpTestSuite() {
    folder_ = testing::TempDir() + "mutationXXXXXX";
    ASSERT_NE(mkdtemp(folder_.data()), nullptr);
    workspace_ = new Workspace(folder_, Compiler{});
  }
  static void TearDownTestSuite() {
    delete workspace_;
    std::filesystem::remove_all(folder_);
  }

  Mutation() { MakeTestFabric(fabscan_); }

  /// A node that the function assigns values to.
  const IBNode& NodeOf(const std::string& function) {
    return *fabscan_.discovered_fabric.getNodeByGuid(function == "setRouterInfo" ? 0x12 : 0x10);
  }
  GeneratedSource Mutant(const std::string& prefix, const IBNode& node, const std::string& function,
                         const std::function<void(Lines&)>& change) {
    GeneratedSource source = Generate(*workspace_, fabscan_, node, prefix);
    source.text = Mutated(source.text, function, change);
    return source;
  }
  std::vector<NodeReport> VerifyAll(const std::vector<GeneratedSource>& mutants) {
    return Verify(*workspace_, "mutants", fabscan_, mutants);
  }
  /// Why a mutant that ends the program, or does not compile, cannot be verified.
  std::string FailureOf(const GeneratedSource& mutant) {
    try {
      VerifyAll({mutant});
    } catch (const VerificationError& error) {
      std::string text = error.what();
      for (const std::string& line : error.details()) text += '\n' + line;
      return text;
    }
    return "";
  }

  Fabscan fabscan_;
  static std::string folder_;
  static Workspace* workspace_;
};

std::string Mutation::folder_;
Workspace* Mutation::workspace_ = nullptr;

TEST_F(Mutation, ReportsEveryChangeOfEveryFunction) {
  std::vector<std::string> functions;
  std::vector<GeneratedSource> mutants;
  for (const auto& [function, expected] : ExpectedFunctionsOf(fabscan_, NodeOf(""))) {
    for (const ValueMutation& mutation : kValueMutations) {
      mutants.push_back(
          Mutant(mutation.name + function, NodeOf(function), function, mutation.apply));
    }
    functions.push_back(function);
  }
  ASSERT_EQ(functions.size(), 22U);

  const std::vector<NodeReport> reports = VerifyAll(mutants);
  constexpr std::size_t kVariants = std::size(kValueMutations);
  for (std::size_t i = 0; i < reports.size(); ++i) {
    const std::string& function = functions[i / kVariants];
    const FunctionResult& result = ResultOf(reports[i], function);
    EXPECT_GT(result.fields, 0U) << function;
    const ValueMutation& mutation = kValueMutations[i % kVariants];
    if (mutation.apply == ChangeEveryValue) {
      // The line to edit is replaced, which is one more.
      const bool edited = function == "setVSReductionManagerClassPortInfo";
      EXPECT_EQ(result.differences.size(), result.fields + (edited ? 1 : 0)) << function;
    } else if (i % kVariants == 0) {
      EXPECT_TRUE(result.differences.empty()) << function << ": " << result.differences.at(0);
    } else {
      EXPECT_FALSE(result.differences.empty()) << function << ": " << mutants[i].prefix;
    }
  }
}

/// `from` replaced by `to` in the first line that contains it.
std::function<void(Lines&)> Replacing(const std::string& from, const std::string& to) {
  return [=](Lines& body) {
    for (std::string& line : body) {
      const std::size_t at = line.find(from);
      if (at == line.npos) continue;
      line.replace(at, from.size(), to);
      return;
    }
    ADD_FAILURE() << "nothing to replace: " << from;
  };
}

std::function<void(Lines&)> Appending(const std::string& line) {
  return [=](Lines& body) { body.push_back(line); };
}

std::function<void(Lines&)> Doubling(const std::string& part) {
  return [=](Lines& body) {
    for (std::size_t i = 0; i < body.size(); ++i) {
      if (body[i].find(part) == std::string::npos) continue;
      body.insert(body.begin() + static_cast<std::ptrdiff_t>(i), body[i]);
      return;
    }
    ADD_FAILURE() << "nothing to double: " << part;
  };
}

std::function<void(Lines&)> Without(const std::string& part) {
  return [=](Lines& body) {
    const auto at = std::find_if(body.begin(), body.end(), [&](const std::string& line) {
      return line.find(part) != std::string::npos;
    });
    ASSERT_NE(at, body.end()) << part;
    body.erase(at);
  };
}

TEST_F(Mutation, ReportsEveryChangeOfTheStructure) {
  struct Change {
    std::string function;
    std::string name;
    std::function<void(Lines&)> apply;
    std::string difference;  // how the first difference begins, or any
  };
  std::vector<Change> changes = {
      // Loops over ports.
      {"setPortInfo", "start", Replacing("i = 0;", "i = 1;"), "nodePortsInfo[0]."},
      {"setPortInfo", "end", Replacing("i < ", "i + 1 < "), "nodePortsInfo[6]."},
      {"setPortInfoExtended", "start", Replacing("i = 0;", "i = 1;"), "nodePortsInfoExt[0]."},
      {"setPortInfoExtended", "end", Replacing("i < ", "i + 1 < "), "nodePortsInfoExt[6]."},
      {"setExtendedPortInfo", "start", Replacing("i = 0;", "i = 1;"), "nodeExtPortsInfo[0]."},
      {"setExtendedPortInfo", "end", Replacing("i < ", "i + 1 < "), "nodeExtPortsInfo[6]."},
      {"setWrenReductionPortInfo", "zero", Replacing("i = 1;", "i = 0;"),
       "wrenReductionPortInfo[0]."},
      {"setWrenReductionPortInfo", "start", Replacing("i = 1;", "i = 2;"),
       "wrenReductionPortInfo[1]."},
      {"setWrenReductionPortInfo", "end", Replacing("i < ", "i + 1 < "),
       "wrenReductionPortInfo[6]."},
      {"setExtendedPortInfo", "break", Without("break;"), "nodeExtPortsInfo[4]."},
      // The port's own storage.
      {"setPortInfo", "unpacked", Replacing("nodePortsInfo[i]", "nodePortsInfo[1]"), ""},
      {"setWrenReductionCounters", "set", Replacing(", &ctr)", " + 1, &ctr)"), ""},
      {"setWrenReductionCounters", "pipe", Replacing("lean_pipe = 0x0F", "lean_pipe = 0x0"), ""},
      {"setWrenPushReductionCounters", "set", Replacing(", &wrapper)", " ^ 1, &wrapper)"), ""},
      // What the node stores besides records.
      {"setNodeInfo", "ports", Appending("    m_node->numPorts = 3;"),
       "numPorts is 3, should have stayed 7"},
      {"setNodeInfo", "key", Appending("    m_node->portPkeyTable[2][1] ^= 0xFFFF;"),
       "portPkeyTable of port 2 has 0x"},
      {"setNodeInfo", "keys", Appending("    m_node->portPkeyTable[2].push_back(0);"),
       "portPkeyTable of port 2 has "},
      {"setNodeInfo", "tables", Appending("    m_node->portPkeyTable.pop_back();"),
       "portPkeyTable has 6 ports, should have 7"},
      {"setNodeInfo", "twice", Appending("    m_node->resizePortPkeyTable(mad_buffer.DeviceID);"),
       "portPkeyTable of port 0 has "},
      {"setNodeInfo", "resize", Without("resizePortPkeyTable"), "portPkeyTable of port 0 has "},
      {"setNodeInfo", "lost", Appending("    m_node->nodeExtPortsInfo.pop_back();"),
       "nodeExtPortsInfo[6] is lost, though the node kept it"},
      {"setNodeInfo", "counters", Appending("    m_node->reductionCounters().clear();"),
       "reductionCounters[1][0][0] is lost, though the node kept it"},
      // Bits that the member can hold, but not the field on the wire.
      {"setPortInfo", "wide", Replacing("mad_buffer.MTUCap = 0x", "mad_buffer.MTUCap = 0x10 + 0x"),
       "nodePortsInfo[0].MTUCap is assigned 0x1"},
      {"setSwitchInfo", "wide", Replacing("mad_buffer.ENP0 = 0x", "mad_buffer.ENP0 = 0x2 + 0x"),
       "switchInfo.ENP0 is assigned 0x3, which its 1-bit field cannot hold"},
      // Lines that do not compile.
      {"setVSReductionManagerClassPortInfo", "doubled", Doubling("RedirectGID"),
       "has other lines to edit than expected: 'mad_buffer.RedirectGID = 0x0x...;', "
       "'mad_buffer.RedirectGID = 0x0x...;'; should begin with: 'mad_buffer.RedirectGID = 0x0x'"},
      {"setWrenPushReductionCounters", "doubled", Doubling("TarnExtPortInfo_pack"),
       "has other lines to edit than expected: 'case 4:', "},
      {"setWrenPushReductionCounters", "dropped", Without("TarnExtPortInfo_pack"),
       "has other lines to edit than expected: 'case 4:'; should begin with: 'case 4:', "
       "'SMP_TarnExtPortInfo_pack('"},
  };
  // If every field of the record is assigned, what was unpacked does not matter.
  const std::set<std::string> whole = {"setGMPCapability", "setSMPCapability", "setPrivateLftInfo",
                                       "setEnhancedCongestionInfo"};
  for (const auto& [function, expected] : ExpectedFunctionsOf(fabscan_, NodeOf(""))) {
    if (function == "setWrenPushReductionCounters") {
      changes.push_back({function, "stored", Without(", &wrapper)"), ""});
      continue;
    }
    if (whole.count(function) == 0)
      changes.push_back({function, "unpack", Without("_unpack("), ""});
    changes.push_back({function, "pack", Without("_pack("), ""});
  }

  std::vector<GeneratedSource> mutants;
  for (const Change& change : changes) {
    mutants.push_back(Mutant("Structure" + std::to_string(mutants.size()), NodeOf(change.function),
                             change.function, change.apply));
  }
  const std::vector<NodeReport> reports = VerifyAll(mutants);
  for (std::size_t i = 0; i < reports.size(); ++i) {
    const FunctionResult& result = ResultOf(reports[i], changes[i].function);
    const std::string first = result.differences.empty() ? "none" : result.differences.front();
    EXPECT_TRUE(first != "none" && first.rfind(changes[i].difference, 0) == 0)
        << changes[i].function << ", " << changes[i].name << ": " << first;
  }
}

TEST_F(Mutation, ReportsASecondErrorLine) {
  const IBNode& bare = *fabscan_.discovered_fabric.getNodeByGuid(0x14);
  const NodeReport report =
      VerifyAll({Mutant("Bare", bare, "setNodeInfo", Doubling("#error "))}).front();
  const FunctionResult& result = ResultOf(report, "setNodeInfo");
  ASSERT_EQ(result.differences.size(), 1U);
  EXPECT_NE(result.differences[0].find("should begin with: '#error '"), std::string::npos);
}

TEST_F(Mutation, RefusesTheClassOfAnotherTypeOfNode) {
  const std::pair<u_int64_t, std::pair<const char*, const char*>> classes[] = {
      {0x10, {"SW", "HCA"}}, {0x11, {"HCA", "AN"}},     {0x12, {"RTR", "SW"}},
      {0x13, {"AN", "HCA"}}, {0x13, {"AN", "Unknown"}},
  };
  for (const auto& [guid, words] : classes) {
    const IBNode& node = *fabscan_.discovered_fabric.getNodeByGuid(guid);
    GeneratedSource source = Generate(*workspace_, fabscan_, node, "Class");
    const std::string from = std::string("Class::") + words.first + "::";
    const std::string to = std::string("Class::") + words.second + "::";
    for (std::size_t at = 0; (at = source.text.find(from, at)) != std::string::npos;) {
      source.text.replace(at, from.size(), to);
    }
    EXPECT_EQ(FailureOf(source), std::string("the generated file defines setArInfo for ") +
                                     words.second + ", but the node is dumped as " + words.first);
  }
}

TEST_F(Mutation, RefusesALoopThatPassesTheLastPort) {
  const std::pair<const char*, const char*> loops[] = {
      {"setPortInfo", "nodePortsInfo.size()"},
      {"setPortInfoExtended", "nodePortsInfoExt.size()"},
      {"setExtendedPortInfo", "nodeExtPortsInfo.size()"},
      {"setWrenReductionPortInfo", "numPorts"},
  };
  for (const auto& [function, bound] : loops) {
    const std::string end = std::string("m_node->") + bound;
    const std::string failure =
        FailureOf(Mutant("Loop", NodeOf(function), function, Replacing("< " + end, "<= " + end)));
    EXPECT_EQ(failure.rfind("the compiled program was killed by signal 6", 0), 0U)
        << function << ": " << failure;
  }
}

TEST_F(Mutation, RefusesAValueThatItsMemberCannotHold) {
  const std::string failure =
      FailureOf(Mutant("Wide", NodeOf(""), "setSwitchInfo",
                       Replacing("LinearFDBCap = 0x", "LinearFDBCap = 0x10000 + 0x")));
  EXPECT_EQ(failure.rfind("c++: the compiler failed", 0), 0U) << failure;
  EXPECT_NE(failure.find("overflow"), std::string::npos) << failure;
}

TEST_F(Mutation, RefusesAProgramThatEndsEarly) {
  for (const char* report : {"done\\n", "unit\\tEnds\\ndone\\n"}) {
    const std::string end =
        std::string("    std::fputs(\"") + report + "\", stdout); std::fflush(stdout); _exit(0);";
    GeneratedSource source = Mutant("Ends", NodeOf(""), "setNodeInfo", Appending(end));
    source.text.insert(0, "#include <unistd.h>\n#include <cstdio>\n");
    EXPECT_EQ(FailureOf(source), "the compiled program reported 0 of 22 functions of Ends");
  }
}

// The FNM port's own values go to the port before it, and the regular ones to the FNM port.
TEST_F(Mutation, ReportsAMarkedPortWithTheWrongNumber) {
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
    mutants.push_back(Mutant(function, NodeOf(function), function, renumber));
  }
  const std::vector<NodeReport> reports = VerifyAll(mutants);
  for (std::size_t i = 0; i < reports.size(); ++i) {
    const FunctionResult& result = ResultOf(reports[i], functions[i]);
    ASSERT_FALSE(result.differences.empty()) << functions[i];
    EXPECT_NE(result.differences.front().find("[3]."), std::string::npos);
    EXPECT_NE(result.differences.back().find("[4]."), std::string::npos);
  }
}

}  // namespace
}  // namespace fabscan
