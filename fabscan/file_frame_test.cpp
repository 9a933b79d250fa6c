#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "testing/fabric_builder.h"

// The owner of the generated code is the build's to say.
#include FABSCAN_LICENCE_TEXT
#ifndef FABSCAN_LICENCE_HOLDER
#define FABSCAN_LICENCE_HOLDER "The fabscan authors"
#endif
#ifndef FABSCAN_LICENCE_IDENTIFIER
#define FABSCAN_LICENCE_IDENTIFIER "fabscan-Proprietary"
#endif

// This program's own clock and host, which stand before the library's.

namespace {

std::tm* clock_now = nullptr;
int host_bytes = 0;

}  // namespace

extern "C" std::tm* localtime(const std::time_t* /*time*/) noexcept { return clock_now; }

extern "C" int gethostname(char* name, std::size_t size) noexcept {
  const std::size_t count = std::min<std::size_t>(size, static_cast<std::size_t>(host_bytes));
  std::memset(name, 'h', count);
  return count == size ? -1 : 0;
}

namespace fabscan {
namespace {

std::string Block() {
  FabricBuilder fabric;
  return fabric.Text(
      [](const SimInfoDumpCPP& dump, std::ostream& out) { dump.PrintCopyright(out); });
}

std::string CopyrightLine() {
  const std::string block = Block();
  EXPECT_EQ(std::count(block.begin(), block.end(), '\n'), 12);
  EXPECT_EQ(block.substr(0, 3), "/*\n");
  EXPECT_EQ(block.substr(block.size() - 5), "\n*/\n\n");
  const std::size_t begin = block.find('\n') + 1;
  return block.substr(begin, block.find('\n', begin) - begin);
}

TEST(FileFrame, NamesTheCurrentYear) {
  static std::tm now;  // the clock goes on showing it
  now.tm_year = 2031 - 1900;
  clock_now = &now;
  EXPECT_EQ(CopyrightLine(), "* SPDX-FileCopyrightText: Copyright (c) 2024-2031 " +
                                 std::string(FABSCAN_LICENCE_HOLDER) + ". All rights reserved");
}

TEST(FileFrame, NamesTheLicenceThenSixLinesOfANotice) {
  clock_now = nullptr;
  std::istringstream lines(Block());
  std::string line;
  std::getline(lines, line);
  std::getline(lines, line);
  std::getline(lines, line);
  EXPECT_EQ(line, "* SPDX-License-Identifier: LicenseRef-" FABSCAN_LICENCE_IDENTIFIER);
  std::getline(lines, line);
  EXPECT_EQ(line, "*");
  for (int i = 0; i < 6; ++i) {
    std::getline(lines, line);
    EXPECT_EQ(line.substr(0, 2), "* ");
    EXPECT_GT(line.size(), 2U);
  }
  EXPECT_EQ(line.back(), '.');
}

TEST(FileFrame, RepeatsTheFirstYearInIt) {
  static std::tm now;  // the clock goes on showing it
  now.tm_year = 2024 - 1900;
  clock_now = &now;
  EXPECT_EQ(CopyrightLine().substr(0, 50), "* SPDX-FileCopyrightText: Copyright (c) 2024-2024 ");
}

TEST(FileFrame, NamesAYearWithoutAClock) {
  clock_now = nullptr;
  EXPECT_EQ(CopyrightLine().substr(0, 50), "* SPDX-FileCopyrightText: Copyright (c) 2024-2025 ");
}

TEST(FileFrame, IncludesTheDeviceTheNodeAndTheRecords) {
  FabricBuilder fabric;
  EXPECT_EQ(fabric.Text([](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.PrintIncludes(out, "mydev");
  }),
            "#include \"mydev.h\"\n"
            "#include \"../../core/node.h\"\n"
            "#include <infiniband/fabscan/fabscan_fabric.h>\n");
}

std::string HostLine() {
  FabricBuilder fabric;
  std::string name = "/tmp/fabscan-XXXXXX";
  fabric.fabscan.setOutputFolder(::mkdtemp(name.data()));
  EXPECT_EQ(SimInfoDumpCPP(fabric.fabscan).Generate("Host", {}), 0);
  std::ifstream file(name + "/host_generated.cpp");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  std::remove((name + "/host_generated.cpp").c_str());
  ::rmdir(name.c_str());
  const std::size_t begin = text.find("// Host Name: ");
  return text.substr(begin, text.find("#include", begin) - begin);
}

TEST(FileFrame, NamesTheHost) {
  host_bytes = 4;
  EXPECT_EQ(HostLine(), "// Host Name: hhhh\n\n");
}

TEST(FileFrame, EndsAHostNameThatFillsTheBuffer) {
  host_bytes = 2000;
  EXPECT_EQ(HostLine(), "// Host Name: " + std::string(1023, 'h') + "\n\n");
}

TEST(FileFrame, TakesAHostWithoutAName) {
  host_bytes = 0;
  EXPECT_EQ(HostLine(), "// Host Name: \n\n");
}

}  // namespace
}  // namespace fabscan
