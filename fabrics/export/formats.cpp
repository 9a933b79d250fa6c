#include "fabrics/export/formats.h"

namespace fabscan {

const std::vector<ExportFormat>& ExportFormats() {
  static const std::vector<ExportFormat> formats = {
      {"ibnetdiscover", "the text of ibnetdiscover, which many tools and ibsim read",
       WriteIbnetdiscover},
      {"slurm", "topology.conf of Slurm's plugin topology/tree", WriteSlurmConf},
      {"slurm-yaml", "the same as topology.yaml", WriteSlurmYaml},
      {"dot", "a graph for Graphviz", WriteDot},
      {"mermaid", "a graph for Mermaid, in Markdown pages", WriteMermaid},
      {"json", "a node-link graph, as networkx and d3 read it", WriteNodeLinkJson},
      {"csv", "a line per link: both ends, LIDs, width and speed", WriteLinkTable},
      {"names", "a node name map, for --node-name-map of other tools", WriteNodeNameMap},
      {"guids", "the root switches, for OpenSM's root_guid_file", WriteRootGuids},
      {"adapter-guids", "the adapters, for OpenSM's cn_guid_file", WriteAdapterGuids},
  };
  return formats;
}

}  // namespace fabscan
