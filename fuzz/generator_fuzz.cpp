// The generator with any fabric, including inconsistent ones. The oracle checks the structure of
// the output: the right functions, each opened and closed, and names that change only the places
// where they appear.

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "cli/dump/function_body.h"
#include "fuzz/compiled_text.h"
#include "fuzz/generated_structure.h"
#include "fuzz/inconsistent_fabric.h"
#include "fuzz/require.h"
#include "fuzz/scratch_folder.h"

namespace fabscan {
namespace {

/// The mark that the whole body asks for.
Mark MarkOfBody(const std::string& body) {
  bool has_statement = false;
  std::istringstream in(body);
  for (std::string line; std::getline(in, line);) {
    if (line.compare(0, 7, "#error ") == 0) return Mark::kError;
    const std::size_t begin = line.find_first_not_of(' ');
    if (begin != std::string::npos && line.compare(begin, 2, "//") != 0) has_statement = true;
  }
  return has_statement ? Mark::kBlock : Mark::kComment;
}

/// Each emitter writes the same text as in the file, and its first line determines the type.
void RequireSameOfEmitters(const std::string& text, Fabscan& fabscan,
                           const std::vector<const IBNode*>& nodes) {
  const SimInfoDumpCPP dump(fabscan);
  BodyQuery query(fabscan);
  std::size_t at = 0;
  for (const IBNode* node : nodes) {
    for (const auto& function : generator::kGeneratedFunctions) {
      const std::string body = BodyText(dump, function, *node);
      const std::string written =
          '\n' + ("void Fuzz::" + query.ClassOf(*node) + "::").append(function.name) + "() {\n" +
          body + "}\n";
      at = text.find(written, at);
      Require(at != std::string::npos, "an emitter asked alone writes what the file has");
      const Mark mark = query.MarkOf(function, *node);
      Require(MarkOfBody(body) == (mark == Mark::kHand ? Mark::kBlock : mark),
              "the first line determines the type of a body");
      at += written.size() - 1;
    }
  }
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
  RequireSameOfEmitters(text, fabscan, selected);

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
