// Device-supplied names do not change the code that compilers see in a generated file.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "fabscan/fabscan_sim_info_dump.h"

namespace {

namespace fs = std::filesystem;

/// The output and messages of a preprocessor for a file.
struct Preprocessed {
  std::string tokens;
  std::string messages;
};

class HostileNamesTest : public testing::TestWithParam<const char*> {
 protected:
  ~HostileNamesTest() override { fs::remove_all(folder_); }

  /// Every name in the node's name and in its alternative name. The second half of the nodes claims
  /// every capability, so that all forms of #error line appear; `plain` gives the nodes ordinary
  /// names instead.
  std::string Generate(const std::vector<std::string>& names, bool plain) const {
    Fabscan fabscan;
    IBFabric& fabric = fabscan.discovered_fabric;
    capability_mask_t all = {{~0U, ~0U, ~0U, ~0U}};
    for (std::size_t i = 0; i < 2 * names.size(); ++i) {
      const bool second_half = i >= names.size();
      // The middle distinguishes the two nodes of a name without changing its ends.
      const std::string& hostile = names[i % names.size()];
      std::string name = second_half ? hostile + "-second-" + hostile : hostile;
      if (plain) name = "node" + std::to_string(i);
      IBNode& node = fabric.makeNode(name, i + 1, IB_SW_NODE, 1);
      node.setAlternativeName(plain ? "plain" : hostile);
      if (second_half) fabscan.capability_module.put(node, false, all);
    }
    // In the order of creation, for any names.
    fabric.NodeByName.clear();
    for (IBNode& node : fabric.nodes()) {
      char key[16];
      std::snprintf(key, sizeof key, "%08u", node.createIndex);
      fabric.NodeByName[key] = &node;
    }
    fabscan.setOutputFolder(folder_);
    EXPECT_EQ(SimInfoDumpCPP(fabscan).Generate("Hostile", {}), 0);
    EXPECT_EQ(fabscan.lastError(), "");
    return ReadFile(folder_ / "hostile_generated.cpp");
  }

  /// `compiler_and_standard`: what to call, such as "g++ -std=c++17". Include lines are
  /// removed; #error lines stay, and do not stop the preprocessor.
  Preprocessed Preprocess(const std::string& compiler_and_standard, const std::string& text) const {
    std::ofstream source(folder_ / "source.cpp", std::ios::binary);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      source << (line.rfind("#include ", 0) == 0 ? "" : line) << '\n';
    }
    source.close();
    std::string command = "cd '" + folder_.string() + "' && " + compiler_and_standard +
                          " -E -P -Wcomment -Wtrigraphs source.cpp >tokens 2>messages";
    if (compiler_and_standard.rfind("g++", 0) == 0) {
      command.insert(
          command.find(" source.cpp"),
          " -Wbidi-chars=any,ucn -fmax-errors=0 -fno-diagnostics-show-caret -fno-show-column");
    } else {
      command.insert(command.find(" source.cpp"), " -ferror-limit=0");
    }
    // The exit status only shows that there are #error lines.
    const int status = std::system(command.c_str());
    EXPECT_NE(status, -1) << command;
    return {ReadFile(folder_ / "tokens"), ReadFile(folder_ / "messages")};
  }

  static std::string ReadFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static fs::path MakeFolder() {
    std::string name = testing::TempDir() + "hostile-XXXXXX";
    return ::mkdtemp(name.data());
  }

  const fs::path folder_ = MakeFolder();
};

std::vector<std::string> HostileNames() {
  std::set<std::string> names;
  for (unsigned value = 0; value < 256; ++value) {
    const std::string byte(1, static_cast<char>(value));
    names.insert({byte + "xy", "x" + byte + "y", "xy" + byte});
  }
  const std::vector<std::string> pieces = {"/",
                                           "*",
                                           "?",
                                           "\\",
                                           "\"",
                                           "'",
                                           "%",
                                           "%0A",
                                           "\n",
                                           "\r",
                                           "\t",
                                           " ",
                                           "(",
                                           ")",
                                           "R",
                                           "#",
                                           "<:",
                                           "}",
                                           "u8",
                                           "\\u202e",
                                           std::string(1, '\0'),
                                           "\x7F",
                                           "\x80",
                                           "\xC2",
                                           "\xE2\x80\xAE",
                                           "\xE2\x81\xA6",
                                           "\xE2\x80\xA8",
                                           "\xC2\x85"};
  for (const std::string& first : pieces) {
    for (const std::string& second : pieces) {
      names.insert({"a" + first + second + "b", first + second + "ab", "ab" + first + second});
    }
  }
  for (const char* whole : {"/*",
                            "*/",
                            "//",
                            "??"
                            "/",
                            "R\"x(",
                            ")x\"",
                            "a\\\n",
                            "a\\ \n",
                            "\nvoid Hostile::SW::f() {}",
                            "\n}\nint x;\nvoid f() {",
                            "\n#include </etc/passwd>",
                            "\n#if 0",
                            "\n#endif",
                            "'",
                            "\"",
                            "\\",
                            "\\ ",
                            "??"
                            "'",
                            "%:if 0",
                            "_Pragma(\"x\")",
                            "', Alt: '"}) {
    names.insert({std::string(whole), std::string("x") + whole, whole + std::string("x")});
  }
  return {names.begin(), names.end()};
}

TEST_P(HostileNamesTest, TheCompilerSeesWhatItSeesWithPlainNames) {
  const std::vector<std::string> names = HostileNames();
  ASSERT_GT(names.size(), 2000U);
  const Preprocessed plain = Preprocess(GetParam(), Generate(names, true));
  const Preprocessed hostile = Preprocess(GetParam(), Generate(names, false));
  std::size_t functions = 0;
  for (std::size_t at = 0; (at = plain.tokens.find("void Hostile::", at)) != std::string::npos;
       ++at)
    ++functions;
  EXPECT_EQ(functions, 22 * 2 * names.size());
  EXPECT_TRUE(hostile.tokens == plain.tokens) << "names change what the compiler sees";
  for (const char* warning : {"[-Wcomment", "[-Wtrigraphs", "[-Wbidi-chars"}) {
    const std::size_t at = hostile.messages.find(warning);
    EXPECT_EQ(at, std::string::npos)
        << hostile.messages.substr(at - std::min<std::size_t>(at, 200), 200);
  }
}

TEST_P(HostileNamesTest, TheTestSeesANameThatIsNotMadeHarmless) {
  const std::string generated = Generate({"NAME"}, false);
  const std::string tokens = Preprocess(GetParam(), generated).tokens;
  ASSERT_NE(tokens.find("void Hostile::SW::setNodeInfo"), std::string::npos);
  for (const char* hostile : {"x\\", "x\n}"}) {
    std::string raw = generated;
    for (std::size_t at = 0; (at = raw.find("NAME", at)) != std::string::npos;) {
      raw.replace(at, 4, hostile);
    }
    EXPECT_TRUE(Preprocess(GetParam(), raw).tokens != tokens) << hostile;
  }
}

INSTANTIATE_TEST_SUITE_P(Compilers, HostileNamesTest,
                         testing::Values("g++ -std=c++14", "g++ -std=c++17", "g++ -std=c++20",
                                         "clang++ -std=c++14", "clang++ -std=c++17",
                                         "clang++ -std=c++20"));

}  // namespace
