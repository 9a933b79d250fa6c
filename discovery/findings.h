#ifndef FABSCAN_DISCOVERY_FINDINGS_H
#define FABSCAN_DISCOVERY_FINDINGS_H

#include <infiniband/tessel/Fabric.h>
#include <sys/types.h>

#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "discovery/payload.h"

namespace fabscan {

/// The result of a query for one attribute of one node or port.
struct Answer {
  enum class Outcome {
    kNotAsked,  // the device lacks it, or the source does not know; `reason` is optional
    kRead,
    kFailed,  // requested but not read, because of `reason`
  };

  static Answer Read(const Payload& payload) { return {Outcome::kRead, payload, {}}; }
  static Answer Failed(std::string_view reason) { return {Outcome::kFailed, {}, reason}; }
  static Answer NotAsked(std::string_view reason) { return {Outcome::kNotAsked, {}, reason}; }

  bool read() const { return outcome == Outcome::kRead; }

  /// These do the same in place.
  void SetRead(std::string_view bytes) {
    outcome = Outcome::kRead;
    std::memcpy(payload.data(), bytes.data(), payload.size());
    reason = {};
  }
  void SetFailed(std::string_view why) { SetMissing(Outcome::kFailed, why); }
  void SetNotAsked(std::string_view why) { SetMissing(Outcome::kNotAsked, why); }
  void SetMissing(Outcome missing, std::string_view why) {
    outcome = missing;
    payload = {};
    reason = why;
  }

  Outcome outcome = Outcome::kNotAsked;
  Payload payload = {};
  std::string_view reason;  // static lifetime: few reasons, many answers
};

struct PortFindings {
  u_int8_t number = 0;
  u_int64_t guid = 0;  // 0 if not known
  Answer info;
  Answer extended;
  /// The scan traversed this port, so it is known whether the port has a peer. The scan does not
  /// reach adapter ports that are unconnected or connected to another fabric.
  bool scanned = false;
  std::optional<RemotePort> peer;
  /// Why the peer of a linked port is not known; may be empty. Static lifetime, as for `Answer`.
  std::string_view peer_failure;
};

struct NodeFindings {
  u_int64_t guid = 0;
  Payload node_info = {};
  Answer description;
  Answer switch_info;               // of switches
  std::vector<PortFindings> ports;  // ascending by number
};

/// Which ports support PortInfoExtended, according to the device. A switch reports this at its port
/// 0 for all external ports; port 0 itself has no link.
class PortInfoExtendedOffer {
 public:
  explicit PortInfoExtendedOffer(const NodeFindings& node);
  bool Has(const PortFindings& port) const;

 private:
  bool is_switch_;
  bool of_all_ports_ = false;
};

/// A fabric as its devices described it, in wire format. Nodes are returned one by one: the
/// complete findings can need more memory than the model that is built from them.
class FindingsSource {
 public:
  virtual ~FindingsSource() = default;

  virtual std::size_t NodeCount() const = 0;
  /// The GUID of node `place`, and the text of its NodeDescription, which the source owns; empty if
  /// it was not read.
  virtual u_int64_t Guid(std::size_t place) const = 0;
  virtual std::string_view Description(std::size_t place) const = 0;
  /// The findings for node `place`. They may be stored in `room`, which callers reuse.
  virtual const NodeFindings& Node(std::size_t place, NodeFindings& room) const = 0;
};

/// Findings that are all in memory.
struct FabricFindings final : FindingsSource {
  std::size_t NodeCount() const override { return nodes.size(); }
  u_int64_t Guid(std::size_t place) const override { return nodes[place].guid; }
  std::string_view Description(std::size_t place) const override;
  const NodeFindings& Node(std::size_t place, NodeFindings& /*room*/) const override {
    return nodes[place];
  }

  std::vector<NodeFindings> nodes;
};

}  // namespace fabscan

#endif
