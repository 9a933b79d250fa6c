"""another_record_test.py CXX: applies the edits of docs/architecture.md for another record to a copy of
the tree. Code that does not name the record must then save it, read it, pack it for a simulated node
and anonymise it."""

import pathlib
import shutil
import subprocess
import sys
import tempfile

from document_blocks import ROOT, blocks

COPIED = ("include", "records", "model", "fabrics", "snapshot", "simulator/core", "simulator/include")
EDITED = {"include/infiniband/fabscan/fabscan_types.h",
          "include/infiniband/fabscan/fabscan_tessel_extended_info.h", "records/vendor_records.h",
          "simulator/core/attributes.h"}

PROGRAM = r"""
#include <infiniband/fabscan/fabscan.h>

#include <iostream>
#include <sstream>

#include "fabrics/anonymised_fabric.h"
#include "simulator/core/node.h"
#include "snapshot/testing/snapshot_text.h"

namespace {

int failures = 0;

void Check(bool holds, const char* what) {
  if (holds) return;
  std::cout << "false: " << what << '\n';
  ++failures;
}

std::string TextOf(const Fabscan& fabscan) { return fabscan::WriteText(fabscan); }

}  // namespace

int main() {
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
  return failures;
}
"""


def apply(block, root):
    """Edits the file that the block's first line names, and returns its name."""
    name, *lines = block.splitlines()
    old = "".join(line[1:] + "\n" for line in lines if line[:1] != "+")
    new = "".join(line[1:] + "\n" for line in lines if line[:1] != "-")
    path = root / name
    text = path.read_text()
    if text.count(old) != 1:
        sys.exit(f"docs/architecture.md: {name} contains this {text.count(old)} times, not once:\n{old}")
    path.write_text(text.replace(old, new))
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
        sources = [path for directory in ("model", "snapshot") for path in (root / directory).glob("*.cpp")
                   if not path.name.endswith("_test.cpp") and path.name != "list_record_fields.cpp"]
        sources += [root / "fabrics" / name for name in ("anonymised_fabric.cpp", "keyed_mapping.cpp")]
        libraries = subprocess.run(["pkg-config", "--libs", "simdjson", "libzstd", "libsodium", "fmt"],
                                   check=True, text=True, stdout=subprocess.PIPE).stdout.split()
        subprocess.run([compiler, "-std=c++17", "-O0", "-w", '-DFABSCAN_VERSION="0"', f"-I{root}",
                        f"-I{root}/include", f"-I{root}/simulator/include", root / "program.cpp",
                        *sources, "-o", root / "program", *libraries], check=True)
        run = subprocess.run([root / "program"], text=True, stdout=subprocess.PIPE, timeout=60)
        if run.returncode != 0:
            sys.exit(f"with the record of docs/architecture.md:\n{run.stdout}")


if __name__ == "__main__":
    main(sys.argv[1])
