#ifndef FABSCAN_DISCOVERY_FINDINGS_H
#define FABSCAN_DISCOVERY_FINDINGS_H

#include <sys/types.h>

#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

#include "discovery/payload.h"

namespace fabscan {

/// What came of one attribute of one node or port.
struct Answer {
  enum class Outcome {
    kNotAsked,  // the device does not have it, or the source cannot tell; `reason` may say so
    kRead,
    kFailed,  // asked for, and not read; `reason` says why
  };

  static Answer Read(const Payload& payload) { return {Outcome::kRead, payload, {}}; }
  static Answer Failed(std::string_view reason) { return {Outcome::kFailed, {}, reason}; }
  static Answer NotAsked(std::string_view reason) { return {Outcome::kNotAsked, {}, reason}; }

  bool read() const { return outcome == Outcome::kRead; }

  /// The same in place.
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
  std::string_view reason;  // lasts as long as the program: there are few, for very many answers
};

struct PortFindings {
  u_int8_t number = 0;
  Answer info;
  Answer extended;
  /// The scan came by this port: it knows whether the port has a peer. Ports of adapters that lead
  /// nowhere, or into another fabric, are not on its way.
  bool scanned = false;
  bool has_peer = false;
  /// Why the peer of a linked port is not known; may be empty. It lasts like an answer's reason.
  std::string_view peer_failure;
};

struct NodeFindings {
  u_int64_t guid = 0;
  Payload node_info = {};
  Answer description;
  Answer switch_info;               // of switches
  std::vector<PortFindings> ports;  // ascending by number
};

/// Which ports answer PortInfoExtended, as the device says. A switch says it at its port 0, for the
/// ports that links go out of; port 0 itself has no link to tell about.
class PortInfoExtendedOffer {
 public:
  explicit PortInfoExtendedOffer(const NodeFindings& node);
  bool Has(const PortFindings& port) const;

 private:
  bool is_switch_;
  bool of_all_ports_ = false;
};

/// A fabric as its devices described it, in the words of the wire. It is handed out node by node:
/// all of it at once may take more memory than the model that it becomes.
class FindingsSource {
 public:
  virtual ~FindingsSource() = default;

  virtual std::size_t NodeCount() const = 0;
  /// The GUID of node `place`, and its NodeDescription's text, which stands in the source; empty
  /// where it was not read.
  virtual u_int64_t Guid(std::size_t place) const = 0;
  virtual std::string_view Description(std::size_t place) const = 0;
  /// What was found of node `place`. It may stand in `room`, which is used over and over.
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
