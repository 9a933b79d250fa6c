// The generated files of the bundled fabrics, as the generator alone writes them on this platform,
// equal those in tests/golden/.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

#include "examples/bundled_fabrics.h"
#include "fabscan/fabscan_sim_info_dump.h"

namespace fabscan {
namespace {

namespace fs = std::filesystem;

std::string TextOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// What differs between machines and days is a word, as in tests/golden.py.
std::string Generated(Fabscan& fabscan) {
  std::string folder = testing::TempDir() + "goldenXXXXXX";
  EXPECT_NE(mkdtemp(folder.data()), nullptr);
  fabscan.setOutputFolder(folder);
  EXPECT_EQ(SimInfoDumpCPP(fabscan).Generate("MyDev", {}), 0);
  std::string text = TextOf(fs::path(folder) / "mydev_generated.cpp");
  fs::remove_all(folder);
  text = std::regex_replace(text, std::regex("(// Host Name: )[^\n]*"), "$1HOST");
  text = std::regex_replace(text, std::regex("(Copyright \\(c\\) 2024-)\\d+"), "$1YEAR");
  return std::regex_replace(text, std::regex("(RedirectGID = 0x0x)[0-9a-f]+;"), "$1ADDRESS;");
}

/// Reports the first byte that differs.
void ExpectGolden(Fabscan& fabscan, const char* name) {
  const std::string text = Generated(fabscan);
  const std::string golden = TextOf(fs::path(FABSCAN_GOLDEN) / name);
  ASSERT_FALSE(golden.empty()) << name;
  const auto differ = std::mismatch(text.begin(), text.end(), golden.begin(), golden.end());
  const auto at = static_cast<std::size_t>(differ.first - text.begin());
  EXPECT_TRUE(text == golden) << name << " differs at byte " << at << ": " << text.substr(at, 80);
}

TEST(GoldenFiles, AreWhatTheGeneratorWrites) {
  ExampleFabric demo(kManagerLid);
  MakeDemo(demo);
  ExpectGolden(demo.fabscan(), "demo_generated.cpp.golden");

  ExampleFabric partial(1);
  MakePartial(partial);
  ExpectGolden(partial.fabscan(), "partial_generated.cpp.golden");
}

}  // namespace
}  // namespace fabscan
