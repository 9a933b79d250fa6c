#ifndef FABSCAN_DISCOVERY_TOPOLOGY_TEXT_H
#define FABSCAN_DISCOVERY_TOPOLOGY_TEXT_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "discovery/fabric_builder.h"

namespace fabscan {

/// A text that is not a complete topology. `what()` gives the line and the error.
class TopologyError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Whether a file that begins with this byte may be a topology text: a comment, an empty line, or
/// the first word of a node.
bool MayBeginTopology(char first);

/// Reads the text of `ibnetdiscover`, line by line: nodes, ports with links, LIDs, descriptions,
/// widths and speeds. The net files of ibsim are read too.
///
/// The text contains no records: NodeInfo, SwitchInfo and PortInfo are absent with that reason.
class TopologyText {
 public:
  /// Adds a line, without its line end. Throws TopologyError.
  void Add(std::string_view line);
  /// Fills the empty model of `fabscan`. `ended`: the last line had a line end. Throws
  /// TopologyError if the text ends too early, or contradicts itself.
  DiscoveryReport Build(Fabscan& fabscan, bool ended);

 private:
  struct Port {
    phys_port_t number = 0;
    u_int64_t guid = 0;
    RemotePort remote = {};
    u_int16_t lid = 0;
    IBLinkWidth width = IB_UNKNOWN_LINK_WIDTH;
    IBLinkSpeed speed = IB_UNKNOWN_LINK_SPEED;
  };
  struct Node {
    u_int64_t guid = 0;
    IBNodeType type = IB_UNKNOWN_NODE_TYPE;
    phys_port_t ports = 0;
    std::string description;
    u_int16_t lid = 0;  // of a switch
    std::map<phys_port_t, Port> linked;
    std::size_t line = 0;
  };

  void AddNode(std::string_view line, IBNodeType type);
  void AddPort(std::string_view line);
  [[noreturn]] void Fail(const std::string& problem) const;
  void BuildNode(Fabscan& fabscan, const Node& node, std::string_view name) const;

  std::map<u_int64_t, Node> nodes_;  // by GUID
  Node* node_ = nullptr;             // whose lines are being added
  std::size_t line_ = 0;
};

}  // namespace fabscan

#endif
