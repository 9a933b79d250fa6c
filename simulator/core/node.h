#ifndef SIMULATOR_CORE_NODE_H
#define SIMULATOR_CORE_NODE_H

#include <infiniband/fabscan/fabscan_fabric.h>

#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include "attributes.h"

namespace fabscan::simulator {

/// One simulated node with all of its attributes, packed as they are on the wire. The members have
/// the names that generated files use.
class Node {
 public:
  /// The loops of generated files count ports in eight bits, so more ports are impossible.
  static constexpr phys_port_t kLastPort = 254;

  /// `last_port`: number of the last port, at most `kLastPort`.
  explicit Node(phys_port_t last_port)
      : numPorts(static_cast<phys_port_t>(last_port + 1)), portPkeyTable(numPorts) {}

  /// The number of ports including port 0, even on nodes without port 0: port numbers are less than
  /// it, and generated loops stop before it.
  phys_port_t numPorts;

  // Port attributes, by port number.
#define NODE_MEMBER(record, member, function) Packed<record> member;
#define PORT_MEMBER(record, member, function) \
  std::vector<Packed<record>> member = std::vector<Packed<record>>(numPorts);
  SIMULATOR_ATTRIBUTES(NODE_MEMBER, NODE_MEMBER, SIMULATOR_NOTHING, PORT_MEMBER, SIMULATOR_NOTHING)
#undef PORT_MEMBER
#undef NODE_MEMBER

  std::vector<std::vector<u_int16_t>> portPkeyTable;

  Packed<SMP_ExtendedSwitchInfo>* getExtendedSwitchInfo() { return &extended_switch_info_; }

  /// Gives every port a partition key table of `entries` entries; existing entries are kept if
  /// they fit, new ones are zero.
  void resizePortPkeyTable(u_int16_t entries) {
    for (auto& table : portPkeyTable) table.resize(entries);
  }

  /// Null if the node has no such counter set.
  const ib_wren_reduction_counters_t* getWrenReductionCounters(phys_port_t port, u_int32_t index,
                                                               u_int8_t lean_pipe) const {
    return find(reduction_counters_, {port, index, lean_pipe});
  }
  /// Creates the counter set if missing.
  void setWrenReductionCounters(phys_port_t port, u_int32_t index, u_int8_t lean_pipe,
                                const ib_wren_reduction_counters_t* counters) {
    reduction_counters_[{port, index, lean_pipe}] = *counters;
  }

  /// Null if the node has no push counters for this port and multicast LID.
  const WrenPushReductionCounters_view_t* getWrenPushReductionCounters(u_int16_t port,
                                                                       u_int16_t mlid) const {
    return find(push_counters_, {port, mlid});
  }
  /// Push counters, under the same name as the others. Creates them if missing.
  void setWrenReductionCounters(u_int16_t port, u_int16_t mlid,
                                const WrenPushReductionCounters_view_t* counters) {
    push_counters_[{port, mlid}] = *counters;
  }

  using ReductionCountersKey = std::tuple<phys_port_t, u_int32_t, u_int8_t>;
  using PushCountersKey = std::pair<u_int16_t, u_int16_t>;
  /// By port, index and lean pipe.
  std::map<ReductionCountersKey, ib_wren_reduction_counters_t>& reductionCounters() {
    return reduction_counters_;
  }
  /// By port and multicast LID.
  std::map<PushCountersKey, WrenPushReductionCounters_view_t>& pushCounters() {
    return push_counters_;
  }

 private:
  template <class Map>
  static const typename Map::mapped_type* find(const Map& map, const typename Map::key_type& key) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
  }

  Packed<SMP_ExtendedSwitchInfo> extended_switch_info_;
  std::map<ReductionCountersKey, ib_wren_reduction_counters_t> reduction_counters_;
  std::map<PushCountersKey, WrenPushReductionCounters_view_t> push_counters_;
};

}  // namespace fabscan::simulator

#endif
