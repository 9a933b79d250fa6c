#ifndef FABSCAN_FABRICS_EXPORT_FORMATS_H
#define FABSCAN_FABRICS_EXPORT_FORMATS_H

#include <infiniband/fabscan/fabscan.h>

#include <ostream>
#include <string_view>
#include <vector>

namespace fabscan {

/// A text in which other programs read a topology.
struct ExportFormat {
  std::string_view name;
  std::string_view what;
  void (*write)(std::ostream& out, const Fabscan& fabscan);
};

/// Every format, in the order of the help text.
const std::vector<ExportFormat>& ExportFormats();

// The formats, by the file that has them. Nodes are in natural order, ports by number, so that the
// same fabric gives the same text. All names are the harmless ones.

void WriteIbnetdiscover(std::ostream& out, const Fabscan& fabscan);

void WriteSlurmConf(std::ostream& out, const Fabscan& fabscan);
void WriteSlurmYaml(std::ostream& out, const Fabscan& fabscan);

void WriteDot(std::ostream& out, const Fabscan& fabscan);
void WriteMermaid(std::ostream& out, const Fabscan& fabscan);
void WriteNodeLinkJson(std::ostream& out, const Fabscan& fabscan);

void WriteLinkTable(std::ostream& out, const Fabscan& fabscan);
void WriteNodeNameMap(std::ostream& out, const Fabscan& fabscan);
void WriteRootGuids(std::ostream& out, const Fabscan& fabscan);
void WriteAdapterGuids(std::ostream& out, const Fabscan& fabscan);

}  // namespace fabscan

#endif
