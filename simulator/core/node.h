#ifndef SIMULATOR_CORE_NODE_H
#define SIMULATOR_CORE_NODE_H

#include <infiniband/fabscan/fabscan_fabric.h>

#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include "attributes.h"

namespace fabscan {
namespace simulator {

/// One simulated node: every attribute that it answers, packed as it goes on the wire. The names of
/// the members are those that generated files use.
class Node {
 public:
  /// The loops of generated files count ports in eight bits, so more cannot be served.
  static constexpr phys_port_t kLastPort = 254;

  /// `last_port`: number of the last port, at most `kLastPort`.
  explicit Node(phys_port_t last_port)
      : numPorts(static_cast<phys_port_t>(last_port + 1)), portPkeyTable(numPorts) {}

  /// Ports with port 0 counted, on nodes without a port 0 as well: ports are indices below it, and
  /// generated loops end before it.
  phys_port_t numPorts;

  // Of a port by its number.
#define NODE_MEMBER(record, member, function) Packed<record> member;
#define PORT_MEMBER(record, member, function) \
  std::vector<Packed<record>> member = std::vector<Packed<record>>(numPorts);
  SIMULATOR_ATTRIBUTES(NODE_MEMBER, NODE_MEMBER, SIMULATOR_NOTHING, PORT_MEMBER, SIMULATOR_NOTHING)
#undef PORT_MEMBER
#undef NODE_MEMBER

  std::vector<std::vector<u_int16_t>> portPkeyTable;

  Packed<SMP_ExtendedSwitchInfo>* getExtendedSwitchInfo() { return &extended_switch_info_; }

  /// Gives every port a partition key table of `entries` entries; those that it had are kept as far
  /// as they fit, new ones are zero.
  void resizePortPkeyTable(u_int16_t entries) {
    for (auto& table : portPkeyTable) table.resize(entries);
  }

  /// Null where the node keeps no such counter set.
  const ib_wren_reduction_counters_t* getWrenReductionCounters(phys_port_t port, u_int32_t index,
                                                               u_int8_t lean_pipe) const {
    return find(reduction_counters_, {port, index, lean_pipe});
  }
  /// Makes the counter set where there was none.
  void setWrenReductionCounters(phys_port_t port, u_int32_t index, u_int8_t lean_pipe,
                                const ib_wren_reduction_counters_t* counters) {
    reduction_counters_[{port, index, lean_pipe}] = *counters;
  }

  /// Null where the node keeps no push counters for this port and multicast LID.
  const WrenPushReductionCounters_view_t* getWrenPushReductionCounters(u_int16_t port,
                                                                       u_int16_t mlid) const {
    return find(push_counters_, {port, mlid});
  }
  /// The push counters go by the name of the others. Makes them where there were none.
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

}  // namespace simulator
}  // namespace fabscan

#endif
