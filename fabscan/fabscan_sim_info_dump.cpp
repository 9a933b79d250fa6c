#include "fabscan_sim_info_dump.h"

#include <unistd.h>

#include <fstream>
#include <string_view>

#include "chunked_buffer.h"
#include "generated_functions.h"
#include "source_writer.h"

namespace fabscan::generator {
namespace {

constexpr Template kNodeHeader(R"(

// Node Type: $type$$special$, Node GUID: 0x$guid$, Ports: $ports$
// Name: '$name$', Alt: '$alternative$
)",
                               {"type", "special", "guid", "ports", "name", "alternative"});

constexpr Template kFunctionHead(R"(
void $prefix$::$class$::$function$() {
)",
                                 {"prefix", "class", "function"});
constexpr Template kNextFunction(R"(
}

void $prefix$::$class$::$function$() {
)",
                                 {"prefix", "class", "function"});
constexpr Template kLastFunctionEnd(R"(
}
)");

/// Whatever the locale of the program.
std::string LowerCased(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
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

bool IsSelected(const IBNode* node, const std::set<uint64_t>& guids) {
  if (node == nullptr || !node->in_sub_fabric) return false;
  return guids.empty() || guids.count(node->guid) != 0;
}

void WriteNode(const SimInfoDumpCPP& dump, std::ostream& out, const std::string& prefix,
               const IBNode& node) {
  // The quote is not closed after the alternative name.
  SourceWriter(out).EmitLines<kNodeHeader>(
      0, TypeWord(node), node.isSpecialNode() ? "(Special Node)" : "", GuidValue{node.guid},
      unsigned{node.numPorts}, node.name, node.getAlternativeName());
  const std::string node_class = dump.GetDumpedNodeType(node);
  for (const GeneratedFunction& function : kGeneratedFunctions) {
    if (&function == kGeneratedFunctions) {
      SourceWriter(out).Emit<kFunctionHead>(0, prefix, node_class, function.name);
    } else {
      SourceWriter(out).EmitLines<kNextFunction>(0, prefix, node_class, function.name);
    }
    (dump.*function.emitter)(out, node);
  }
  SourceWriter(out).EmitLines<kLastFunctionEnd>(0);
}

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

int SimInfoDumpCPP::Generate(const std::string& prefix, const std::set<uint64_t>& guids) {
  const std::string name = LowerCased(prefix);
  const OutputControl::Identity identity(name + "_generated.cpp",
                                         OutputControl::Flags::OutputControl_Flag_CustomFileName);
  std::ofstream file;
  const int status = m_fabscan.OpenFile("Simulator generated code", identity, file, false, nullptr);
  if (status != 0) return status;

  PrintCopyright(file);
  IBFabric::WriteFileHeader(file, "//");

  ChunkedBuffer chunks(file);
  std::ostream out(&chunks);
  out.exceptions(file.exceptions());
  out.imbue(file.getloc());
  WriteHostLine(out);
  PrintIncludes(out, name);

  for (const auto& entry : m_fabscan.discovered_fabric.NodeByName) {
    const IBNode* node = entry.second;
    if (IsSelected(node, guids)) WriteNode(*this, out, prefix, *node);
  }

  chunks.Flush();
  m_fabscan.CloseFile(file, "//");
  return 0;
}
