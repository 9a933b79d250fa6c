#include "fuzz/generated_structure.h"

#include <cstdio>

#include "simulator/core/attributes.h"

namespace fabscan {

namespace {

// As the simulator has them, which shares nothing with the generator.
#define NAME_OF(record, member, function) #function,
constexpr std::string_view kFunctions[] = {
    SIMULATOR_ATTRIBUTES(NAME_OF, NAME_OF, NAME_OF, NAME_OF, NAME_OF)};
#undef NAME_OF

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

std::string ClassOf(const IBNode& node) {
  if (node.type == IB_SW_NODE) return "SW";
  if (node.type == IB_RTR_NODE) return "RTR";
  if (!node.isSpecialNode()) return "HCA";
  return node.getSpecialNodeType() == IB_SPECIAL_PORT_AN ? "AN" : "Unknown";
}

std::string TypeLineOf(const IBNode& node) {
  std::string word = "UNKNOWN";
  if (node.type == IB_SW_NODE) word = "SW";
  if (node.type == IB_RTR_NODE) word = "RTR";
  if (node.type == IB_CA_NODE) word = "CA";
  if (node.isSpecialNode()) word += "(Special Node)";
  char rest[64];
  static_cast<void>(std::snprintf(rest, sizeof rest, ", Node GUID: 0x%016llx, Ports: %u",
                                  static_cast<unsigned long long>(node.guid),
                                  unsigned{node.numPorts}));
  return "// Node Type: " + word + rest;
}

/// Checks line by line; the first unexpected line is the error.
class StructureReader {
 public:
  explicit StructureReader(std::string_view text) : rest_(text) {}

  std::string Read(std::string_view prefix, const std::vector<const IBNode*>& nodes) {
    SkipFrame();
    for (const IBNode* node : nodes) ReadNode(prefix, *node);
    if (fault_.empty() && !rest_.empty()) Refuse("nothing more");
    return fault_;
  }

 private:
  void SkipFrame() {
    while (!rest_.empty() && !StartsWith(line_, "#include <")) Take();
    if (rest_.empty() && !StartsWith(line_, "#include <")) Refuse("the include lines");
  }

  void ReadNode(std::string_view prefix, const IBNode& node) {
    Expect("");
    Expect("");
    Expect(TypeLineOf(node));
    Expect("// Name: '" + node.name + "', Alt: '" + node.getAlternativeName());
    for (const std::string_view& function : kFunctions) {
      if (&function != kFunctions) Expect("");
      Expect("void " + std::string(prefix) + "::" + ClassOf(node) + "::" + std::string(function) +
             "() {");
      ReadBody();
    }
  }

  void ReadBody() {
    std::size_t lines = 0;
    int depth = 0;
    for (Take(); fault_.empty() && line_ != "}"; Take()) {
      ++lines;
      if (StartsWith(line_, "//") || StartsWith(line_, "#error ")) continue;
      if (!line_.empty() && !StartsWith(line_, "    ")) Refuse("an indented line");
      for (const char c : line_.substr(0, line_.find("//"))) {
        if (c == '{') ++depth;
        if (c == '}') --depth;
        if (depth < 0) Refuse("no more closing than opening braces");
      }
    }
    if (depth != 0) Refuse("as many closing as opening braces");
    if (lines == 0) Refuse("a body");
  }

  void Expect(std::string_view line) {
    Take();
    if (line_ != line) Refuse("\"" + std::string(line) + '"');
  }

  void Take() {
    ++number_;
    const std::size_t end = rest_.find('\n');
    line_ = rest_.substr(0, end);
    if (end == std::string_view::npos) {
      rest_ = {};
      Refuse("a whole line");
    } else {
      rest_.remove_prefix(end + 1);
    }
  }

  void Refuse(const std::string& expected) {
    if (!fault_.empty()) return;
    fault_ = "line " + std::to_string(number_) + " is \"" + std::string(line_) + "\", expected " +
             expected;
  }

  std::string_view rest_;
  std::string_view line_;
  std::size_t number_ = 0;
  std::string fault_;
};

}  // namespace

std::string FaultOfStructure(std::string_view text, std::string_view prefix,
                             const std::vector<const IBNode*>& nodes) {
  return StructureReader(text).Read(prefix, nodes);
}

}  // namespace fabscan
