#ifndef INFINIBAND_FABSCAN_TESSEL_EXTENDED_INFO_H
#define INFINIBAND_FABSCAN_TESSEL_EXTENDED_INFO_H

#include <infiniband/fabscan/absent_table.h>
#include <infiniband/fabscan/fabscan_types.h>
#include <infiniband/fabscan/slot_table.h>
#include <infiniband/tessel/Fabric.h>

#include <cstddef>
#include <string_view>
#include <tuple>

/// The attribute store: every collected record, by the `createIndex` of its node or port.
///
/// Getters take constant time and return null if a record was not collected. The store owns its
/// records; their addresses are stable until it is cleared or destroyed. Records are stored by node
/// or port, so that the index cannot be wrong:
///
///     store.put<SMP_NodeInfo>(node).VendorID = 0x5a1e0c;
///     store.put(port, port_info);
class TesselExtendedInfo {
 public:
  /// Numbers of counter sets and of monitor selectors of a port.
  static constexpr u_int32_t kCounterSets = 8;
  static constexpr u_int8_t kMonitorSelectors = 2;

  // ---------- Getters; the key is a node's or a port's createIndex ----------

  const SMP_NodeInfo* getSMPNodeInfo(u_int32_t node) const { return ofNode<SMP_NodeInfo>(node); }
  const SMP_SwitchInfo* getSMPSwitchInfo(u_int32_t node) const {
    return ofNode<SMP_SwitchInfo>(node);
  }
  const SMP_RouterInfo* getSMPRouterInfo(u_int32_t node) const {
    return ofNode<SMP_RouterInfo>(node);
  }
  const SMP_ExtendedSwitchInfo* getSMP_ExtendedSwitchInfo(u_int32_t node) const {
    return ofNode<SMP_ExtendedSwitchInfo>(node);
  }
  const ib_extended_node_info* getSMPExtNodeInfo(u_int32_t node) const {
    return ofNode<ib_extended_node_info>(node);
  }
  const ib_private_lft_info* getPLFTInfo(u_int32_t node) const {
    return ofNode<ib_private_lft_info>(node);
  }
  const adaptive_routing_info* getARInfo(u_int32_t node) const {
    return ofNode<adaptive_routing_info>(node);
  }
  const VendorSpec_GeneralInfo* getVSGeneralInfo(u_int32_t node) const {
    return ofNode<VendorSpec_GeneralInfo>(node);
  }
  const CC_EnhancedCongestionInfo* getCCEnhancedCongestionInfo(u_int32_t node) const {
    return ofNode<CC_EnhancedCongestionInfo>(node);
  }
  const CC_CongestionSwitchGeneralSettings* getCCSwitchGeneralSettings(u_int32_t node) const {
    return ofNode<CC_CongestionSwitchGeneralSettings>(node);
  }
  /// ClassPortInfo of the reduction management class.
  const IB_ClassPortInfo* getWrenClassPortInfo(u_int32_t node) const {
    return ofNode<IB_ClassPortInfo>(node);
  }
  const WrenReductionInfo* getWrenReductionInfo(u_int32_t node) const {
    return ofNode<WrenReductionInfo>(node);
  }

  const SMP_PortInfo* getSMPPortInfo(u_int32_t port) const { return ofPort<SMP_PortInfo>(port); }
  const SMP_PortInfoExtended* getSMPPortInfoExtended(u_int32_t port) const {
    return ofPort<SMP_PortInfoExtended>(port);
  }
  const SMP_TarnExtPortInfo* getSMPTarnExtPortInfo(u_int32_t port) const {
    return ofPort<SMP_TarnExtPortInfo>(port);
  }
  const WrenReductionPortInfo* getWrenReductionPortInfo(u_int32_t port) const {
    return ofPort<WrenReductionPortInfo>(port);
  }
  const WrenPushReductionCounters* getWrenPushReductionCounters(u_int32_t port) const {
    return ofPort<WrenPushReductionCounters>(port);
  }
  /// `index`: 0 to 7; null for any other.
  const WrenReductionCounters* getWrenReductionCounters(u_int32_t port, u_int32_t index) const {
    if (index >= kCounterSets) return nullptr;
    return counters_.find(std::size_t{port} * kCounterSets + index);
  }
  /// `selector`: 0 for the reduction counters, 1 for the push reduction counters.
  const WrenReductionConfigureMLIDMonitors* getWrenReductionConfigureMLIDMonitors(
      u_int32_t port, u_int8_t selector) const {
    if (selector >= kMonitorSelectors) return nullptr;
    return monitors_.find(std::size_t{port} * kMonitorSelectors + selector);
  }

  /// Whether any port has counter sets or monitors: most fabrics have none.
  bool hasCountersOrMonitors() const { return counters_.size() + monitors_.size() != 0; }

  /// The getters by record type, for code that visits all records.
  template <class Record>
  const Record* find(const IBNode& node) const {
    return std::get<fabscan::SlotTable<Record>>(node_records_).find(node.createIndex);
  }
  template <class Record>
  const Record* find(const IBPort& port) const {
    return std::get<fabscan::SlotTable<Record>>(port_records_).find(port.createIndex);
  }

  // ---------- Storing records ----------

  /// The node's record of this type, created with zeros if missing.
  template <class Record>
  Record& put(const IBNode& node) {
    return std::get<fabscan::SlotTable<Record>>(node_records_).slot(node.createIndex);
  }
  template <class Record>
  void put(const IBNode& node, const Record& record) {
    put<Record>(node) = record;
  }
  /// The port's record of this type, created with zeros if missing.
  template <class Record>
  Record& put(const IBPort& port) {
    return std::get<fabscan::SlotTable<Record>>(port_records_).slot(port.createIndex);
  }
  template <class Record>
  void put(const IBPort& port, const Record& record) {
    put<Record>(port) = record;
  }
  /// Counter set `index` of the port. Throws std::out_of_range if `index` is above 7.
  WrenReductionCounters& putCounters(const IBPort& port, u_int32_t index);
  /// Records that the port has a monitor configuration. Throws std::out_of_range if `selector` is
  /// neither 0 nor 1.
  void putMonitors(const IBPort& port, u_int8_t selector);

  // ---------- Why a record was not collected ----------

  /// Record name -> reason, ascending by record name.
  using AbsentReasons = fabscan::AbsentReasons;

  void setAbsent(const IBNode& node, std::string_view record, std::string_view reason) {
    node_absent_.Set(node.createIndex, record, reason);
  }
  void setAbsent(const IBPort& port, std::string_view record, std::string_view reason) {
    port_absent_.Set(port.createIndex, record, reason);
  }
  /// Copies the reasons of another port to a port without reasons.
  void shareAbsent(const IBPort& port, const IBPort& other) {
    port_absent_.Share(port.createIndex, other.createIndex);
  }
  /// Empty if no reason was stored. Owners with equal reasons share a set, which never changes
  /// while the store exists; adding a reason gives the owner another set.
  const AbsentReasons& absentReasons(const IBNode& node) const {
    return node_absent_.At(node.createIndex);
  }
  const AbsentReasons& absentReasons(const IBPort& port) const {
    return port_absent_.At(port.createIndex);
  }
  /// Removes all reasons of the node.
  void clearAbsent(const IBNode& node) { node_absent_.Clear(node.createIndex); }
  void clearAbsent(const IBPort& port) { port_absent_.Clear(port.createIndex); }

  /// Clears all records and reasons, and keeps the memory.
  void clear();

 private:
  template <class List>
  struct TablesOf;
  template <class... Records>
  struct TablesOf<fabscan::RecordList<Records...>> {
    using type = std::tuple<fabscan::SlotTable<Records>...>;
  };

  template <class Record>
  const Record* ofNode(u_int32_t index) const {
    return std::get<fabscan::SlotTable<Record>>(node_records_).find(index);
  }
  template <class Record>
  const Record* ofPort(u_int32_t index) const {
    return std::get<fabscan::SlotTable<Record>>(port_records_).find(index);
  }

  TablesOf<fabscan::NodeRecords>::type node_records_;
  TablesOf<fabscan::PortRecords>::type port_records_;
  fabscan::SlotTable<WrenReductionCounters> counters_;               // port * kCounterSets + index
  fabscan::SlotTable<WrenReductionConfigureMLIDMonitors> monitors_;  // port * kMonitorSelectors + s
  fabscan::AbsentTable node_absent_;
  fabscan::AbsentTable port_absent_;
};

#endif
