// The generator with any fabric, including inconsistent ones. The oracle checks the structure of
// the output: the right functions, each opened and closed, and names that change only the places
// where they appear.

#include <cstdint>
#include <sstream>

#include "cli/dump/generated_file.h"
#include "fuzz/compiled_text.h"
#include "fuzz/generated_structure.h"
#include "fuzz/inconsistent_fabric.h"
#include "fuzz/require.h"
#include "fuzz/scratch_folder.h"

namespace fabscan {
namespace {

/// The command's own reader finds the same nodes and functions.
void RequireReadable(const std::string& text, std::size_t nodes) {
  std::istringstream in(text);
  GeneratedFileReader reader(in);
  GeneratedNode node;
  std::size_t found = 0;
  for (; reader.Next(node); ++found) {
    Require(node.functions.size() == 22, "the reader of generated files finds 22 functions a node");
  }
  Require(found == nodes, "the reader of generated files finds every node");
}

/// The compiler sees names only in lines that stop the build.
std::string WithoutErrors(const std::string& text) {
  std::istringstream in(text);
  std::string rest;
  for (std::string line; std::getline(in, line);) {
    if (line.compare(0, 7, "#error ") != 0) rest += line + '\n';
  }
  return rest;
}

void Check(Bytes bytes) {
  static const ScratchFolder folder;
  Fabscan fabscan;
  InconsistentFabric fabric(bytes, fabscan);

  const std::string text = folder.Generated(fabscan, fabric.guids());
  Require(folder.Generated(fabscan, fabric.guids()) == text, "a second run gives the same text");
  const std::vector<const IBNode*> selected = fabric.Selected();
  const std::string fault = FaultOfStructure(text, "Fuzz", selected);
  Require(fault.empty(), fault);
  RequireReadable(text, selected.size());

  fabric.UsePlainNames();
  const std::string plain = folder.Generated(fabscan, fabric.guids());
  Require(fabric.WithFirstNames(plain) == text, "names change nothing but themselves");
  Require(CompiledText(WithoutErrors(plain)) == CompiledText(WithoutErrors(text)),
          "names change nothing that is compiled");
}

}  // namespace
}  // namespace fabscan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fabscan::Check(fabscan::Bytes(data, size));
  return 0;
}
