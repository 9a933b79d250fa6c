"""another_record_test.py CXX: applies the edits of docs/architecture.md for another record to a copy of
the tree. The record is then saved, read, anonymised, dumped, and verified in a simulated node."""

import pathlib
import shutil
import subprocess
import sys
import tempfile

from document_blocks import ROOT, blocks

COPIED = ("cmake", "include", "fabscan", "records", "model", "fabrics", "snapshot", "simulator", "cli/check")
EDITED = {"include/infiniband/fabscan/fabscan_types.h",
          "include/infiniband/fabscan/fabscan_tessel_extended_info.h", "records/vendor_records.h",
          "fabscan/fabscan_sim_info_dump.h", "fabscan/node_emitters.cpp", "fabscan/generated_functions.h",
          "simulator/core/attributes.h", "simulator/verification/node_rules.cpp",
          "cli/check/requirements.cpp"}

PROJECT = """
cmake_minimum_required(VERSION 3.22)
project(fabscan VERSION 0 LANGUAGES CXX)
list(APPEND CMAKE_MODULE_PATH ${PROJECT_SOURCE_DIR}/cmake)
include(BuildSettings)
include(LicenceText)
foreach(directory fabscan model snapshot simulator)
  add_subdirectory(${directory})
endforeach()
find_package(fmt REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(sodium REQUIRED IMPORTED_TARGET libsodium)
add_executable(program program.cpp
  cli/check/requirements.cpp fabrics/anonymised_fabric.cpp fabrics/keyed_mapping.cpp)
target_link_libraries(program PRIVATE fabscan::snapshot fabscan::verification fabscan::generator
  fabscan::model fmt::fmt PkgConfig::sodium fabscan_settings)
"""

PROGRAM = r"""
#include <infiniband/fabscan/fabscan.h>

#include <iostream>
#include <sstream>

#include "cli/check/requirements.h"
#include "fabrics/anonymised_fabric.h"
#include "fabscan/fabscan_sim_info_dump.h"
#include "simulator/core/node.h"
#include "simulator/verification/verification.h"
#include "snapshot/testing/snapshot_text.h"

namespace {

int failures = 0;

void Check(bool holds, const char* what) {
  if (holds) return;
  std::cout << "false: " << what << '\n';
  ++failures;
}

std::string TextOf(const Fabscan& fabscan) { return fabscan::WriteText(fabscan); }

std::string Dumped(Fabscan& fabscan, const IBNode& node) {
  std::ostringstream out;
  SimInfoDumpCPP(fabscan).GeneratePowerInfo(out, node);
  return out.str();
}

/// How the function that sets the record differs from its rule.
std::vector<std::string> Differences(const fabscan::Workspace& workspace, const Fabscan& fabscan,
                                     const fabscan::GeneratedSource& source) {
  const fabscan::NodeReport report = Verify(workspace, "program", fabscan, {source}).front();
  for (const fabscan::FunctionResult& function : report.functions) {
    if (function.name == "setPowerInfo" && function.fields == 2) return function.differences;
  }
  return {"not verified"};
}

}  // namespace

/// main COMPILER DIRECTORY
int main(int, char** arguments) {
  Fabscan first;
  const IBNode& node = first.discovered_fabric.makeNode("S1", 1, IB_SW_NODE, 1);
  const PowerInfo power = {2, 0x01020304, 0x5a1e0c0000000001};
  first.fabric_extended_info.put(node, power);

  const std::string text = TextOf(first);
  const std::string record =
      R"("PowerInfo":{"State":2,"Consumed":16909060,"MeterGUID":"0x5a1e0c0000000001"})";
  Check(text.find(record) != text.npos, "a snapshot holds the record");
  Fabscan second;
  fabscan::ReadText(text, second);
  Check(TextOf(second) == text, "it is read back");
  const PowerInfo* taken = second.fabric_extended_info.getPowerInfo(0);
  Check(taken != nullptr && taken->Consumed == power.Consumed, "the getter answers it");
  const std::string error = fabscan::ReadError(
      fabscan::OneNode(fabscan::NodeLine(R"(,"attributes":{"PowerInfo":{"State":2}})")));
  Check(error.find("the field \"Consumed\" is missing") != error.npos, "a dumped field is needed");

  fabscan::simulator::Node simulated(1);
  PowerInfo_pack(&power, simulated.powerInfo.bytes);
  const u_int8_t bytes[] = {2, 1, 2, 3, 4, 0x5a, 0x1e, 0x0c, 0, 0, 0, 0, 1, 0};
  Check(std::equal(std::begin(bytes), std::end(bytes), simulated.powerInfo.bytes), "it is packed");
  PowerInfo unpacked = {};
  PowerInfo_unpack(&unpacked, simulated.powerInfo.bytes);
  Check(unpacked.MeterGUID == power.MeterGUID, "it is unpacked");

  Fabscan shared;
  const fabscan::KeyedMapping mapping;
  fabscan::AnonymiseFabric(first, mapping, false, shared, {});
  const PowerInfo* anonymous = shared.fabric_extended_info.getPowerInfo(0);
  Check(anonymous != nullptr && anonymous->State == 2, "it is copied");
  Check(anonymous != nullptr && anonymous->MeterGUID == mapping.Guid(power.MeterGUID) &&
            anonymous->MeterGUID != power.MeterGUID,
        "its GUID is replaced");

  Check(Dumped(first, node) ==
            R"(    PowerInfo mad_buffer = {0};
    PowerInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->powerInfo));

    mad_buffer.State = 0x2;
    mad_buffer.Consumed = 0x1020304;

    PowerInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->powerInfo));)",
        "it is dumped");
  IBNode& bare = first.discovered_fabric.makeNode("S2", 2, IB_SW_NODE, 1);
  Check(Dumped(first, bare) == "// Failed to get PowerInfo mad for the node=S2", "it is optional");
  IBNode& adapter = first.discovered_fabric.makeNode("A1", 3, IB_CA_NODE, 1);
  Check(Dumped(first, adapter) == "// The node=A1 is not a switch", "only switches have it");

  const fabscan::Requirement* requirement = fabscan::FindRequirement("setPowerInfo");
  Check(requirement != nullptr && requirement->records.front().name == "PowerInfo",
        "check knows its requirement");

  const fabscan::Workspace workspace(arguments[2], {arguments[1]});
  fabscan::GeneratedSource source = Generate(workspace, first, node, "Dev");
  Check(Differences(workspace, first, source).empty(), "its values are those of the rule");
  const std::string assignment = "mad_buffer.State = 0x2;";
  source.text.replace(source.text.find(assignment), assignment.size(), "mad_buffer.State = 0x3;");
  Check(Differences(workspace, first, source) ==
            std::vector<std::string>{"powerInfo.State is 0x3, should be 0x2"},
        "another value is noticed");
  return failures;
}
"""


def apply(block, root):
    """Edits the file that the block's first line names, and returns its name."""
    name, edits = block.split("\n", 1)
    path = root / name
    text = path.read_text()
    for edit in edits.split("@@\n"):
        lines = edit.splitlines()
        old = "".join(line[1:] + "\n" for line in lines if line[:1] != "+")
        new = "".join(line[1:] + "\n" for line in lines if line[:1] != "-")
        if text.count(old) != 1:
            sys.exit(f"docs/architecture.md: {name} contains this {text.count(old)} times, not once:\n{old}")
        text = text.replace(old, new)
    path.write_text(text)
    return name


def main(compiler):
    text = (ROOT / "docs/architecture.md").read_text()
    with tempfile.TemporaryDirectory(prefix="fabscan-another-record-") as folder:
        root = pathlib.Path(folder)
        for directory in COPIED:
            shutil.copytree(ROOT / directory, root / directory)
        edited = {apply(block, root) for block in blocks(text, "text")}
        if edited != EDITED:
            sys.exit(f"docs/architecture.md edits {sorted(edited)}, not {sorted(EDITED)}")
        (root / "program.cpp").write_text(PROGRAM)
        (root / "CMakeLists.txt").write_text(PROJECT)
        build = root / "build"
        for command in (
            ["cmake", "-S", root, "-B", build, "-G", "Ninja", f"-DCMAKE_CXX_COMPILER={compiler}",
             "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DFABSCAN_WERROR=ON"],
            ["cmake", "--build", build, "--target", "program"],
        ):
            made = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            if made.returncode != 0:
                sys.exit(made.stdout)
        (root / "workspace").mkdir()
        run = subprocess.run([build / "bin/program", compiler, root / "workspace"], text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
        if run.returncode != 0:
            sys.exit(f"with the record of docs/architecture.md: status {run.returncode}\n{run.stdout}")


if __name__ == "__main__":
    main(sys.argv[1])
