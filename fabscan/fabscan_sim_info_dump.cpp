#include "fabscan_sim_info_dump.h"

#include <unistd.h>

#include <cctype>
#include <fstream>
#include <string_view>

#include "gathering_buffer.h"
#include "generated_functions.h"
#include "source_writer.h"

namespace {

using fabscan::generator::GeneratedFunction;
using fabscan::generator::kGeneratedFunctions;

std::string LowerCased(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<signed char>(c)));
  return text;
}

// Not the words of GetDumpedNodeType, which name classes.
std::string_view TypeWord(const IBNode& node) {
  switch (node.type) {
    case IB_SW_NODE:
      return "SW";
    case IB_RTR_NODE:
      return "RTR";
    case IB_CA_NODE:
      return "CA";
    default:
      return "UNKNOWN";
  }
}

void WriteHostLine(std::ostream& out) {
  char host[1024] = {};
  static_cast<void>(gethostname(host, sizeof host));
  host[sizeof host - 1] = '\0';
  SourceWriter(out).Text("// Host Name: ").Text(host).EndLine().EndLine();
}

void WriteNodeHeader(std::ostream& out, const IBNode& node) {
  SourceWriter writer(out);
  writer.EndLine().EndLine();
  writer.Text("// Node Type: ").Text(TypeWord(node));
  if (node.isSpecialNode()) writer.Text("(Special Node)");
  writer.Text(", Node GUID: 0x").ZeroFilledHex(node.guid);
  writer.Text(", Ports: ").Decimal(node.numPorts).EndLine();
  // The quote is not closed after the alternative name.
  writer.Text("// Name: '").Text(node.name);
  writer.Text("', Alt: '").Text(node.getAlternativeName()).EndLine();
}

bool IsSelected(const IBNode* node, const std::set<uint64_t>& guids) {
  if (node == nullptr || !node->in_sub_fabric) return false;
  return guids.empty() || guids.count(node->guid) != 0;
}

void WriteNode(const SimInfoDumpCPP& dump, std::ostream& out, const std::string& prefix,
               const IBNode& node) {
  WriteNodeHeader(out, node);
  const std::string node_class = dump.GetDumpedNodeType(node);
  for (const GeneratedFunction& function : kGeneratedFunctions) {
    SourceWriter(out).AtOnce([&](auto& to) {
      if (&function != kGeneratedFunctions) to.EndLine().Text("}").EndLine().EndLine();
      to.Text("void ").Text(prefix).Text("::").Text(node_class).Text("::");
      to.Text(function.name).Text("() {").EndLine();
    });
    (dump.*function.emitter)(out, node);
  }
  SourceWriter(out).EndLine().Text("}").EndLine();
}

}  // namespace

int SimInfoDumpCPP::Generate(const std::string& prefix, const std::set<uint64_t>& guids) {
  const std::string name = LowerCased(prefix);
  const OutputControl::Identity identity(name + "_generated.cpp",
                                         OutputControl::Flags::OutputControl_Flag_CustomFileName);
  std::ofstream file;
  const int status = m_fabscan.OpenFile("Simulator generated code", identity, file, false, nullptr);
  if (status != 0) return status;

  PrintCopyright(file);
  IBFabric::WriteFileHeader(file, "//");

  GatheringBuffer gathered(file);
  std::ostream out(&gathered);
  out.exceptions(file.exceptions());
  WriteHostLine(out);
  PrintIncludes(out, name);

  for (const auto& entry : m_fabscan.discovered_fabric.NodeByName) {
    const IBNode* node = entry.second;
    if (IsSelected(node, guids)) WriteNode(*this, out, prefix, *node);
  }

  gathered.HandOver();
  m_fabscan.CloseFile(file, "//");
  return 0;
}
