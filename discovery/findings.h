#ifndef FABSCAN_DISCOVERY_FINDINGS_H
#define FABSCAN_DISCOVERY_FINDINGS_H

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

#include "payload.h"

namespace fabscan {

/// What came of one attribute of one node or port.
struct Answer {
  enum class Outcome {
    kNotAsked,  // the device does not have it, or the source cannot tell; `reason` may say so
    kRead,
    kFailed,  // asked for, and not read; `reason` says why
  };

  static Answer Read(const Payload& payload) { return {Outcome::kRead, payload, {}}; }
  static Answer Failed(std::string reason) { return {Outcome::kFailed, {}, std::move(reason)}; }
  static Answer NotAsked(std::string reason) { return {Outcome::kNotAsked, {}, std::move(reason)}; }

  bool read() const { return outcome == Outcome::kRead; }

  Outcome outcome = Outcome::kNotAsked;
  Payload payload = {};
  std::string reason;
};

struct PortFindings {
  u_int8_t number = 0;
  Answer info;
  Answer extended;
  /// The scan came by this port: it knows whether the port has a peer. Ports of adapters that lead
  /// nowhere, or into another fabric, are not on its way.
  bool scanned = false;
  bool has_peer = false;
  /// Why the peer of a linked port is not known; may be empty.
  std::string peer_failure;
};

struct NodeFindings {
  u_int64_t guid = 0;
  Payload node_info = {};
  Answer description;
  Answer switch_info;               // of switches
  std::vector<PortFindings> ports;  // ascending by number
};

/// The device says that this port answers PortInfoExtended. A switch says it at its port 0, for the
/// ports that links go out of; port 0 itself has no link to tell about.
bool OffersPortInfoExtended(const NodeFindings& node, const PortFindings& port);

/// A fabric as its devices described it, in the words of the wire.
struct FabricFindings {
  std::vector<NodeFindings> nodes;
};

}  // namespace fabscan

#endif
