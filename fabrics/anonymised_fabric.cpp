#include "fabrics/anonymised_fabric.h"

#include <cstring>

#include "model/harmless_name.h"
#include "records/record_kinds.h"

namespace fabscan {

namespace {

// What identifies a device, in the records that hold such.

void Anonymise(SMP_NodeInfo& info, const KeyedMapping& mapping) {
  info.SystemImageGUID = mapping.Guid(info.SystemImageGUID);
  info.NodeGUID = mapping.Guid(info.NodeGUID);
  info.PortGUID = mapping.Guid(info.PortGUID);
}

void Anonymise(SMP_PortInfo& info, const KeyedMapping& mapping) {
  info.GIDPrefix = mapping.GidHalf(info.GIDPrefix);
}

void Anonymise(VendorSpec_GeneralInfo& info, const KeyedMapping& mapping) {
  HWInfo_Block_Element& hardware = info.HWInfo;
  const u_int64_t address =
      mapping.MacAddress(u_int64_t{hardware.manufacturing_base_mac_32_47} << 32U |
                         hardware.manufacturing_base_mac_0_31);
  hardware.manufacturing_base_mac_32_47 = static_cast<u_int16_t>(address >> 32U);
  hardware.manufacturing_base_mac_0_31 = static_cast<u_int32_t>(address);
}

void Anonymise(IB_ClassPortInfo& info, const KeyedMapping& mapping) {
  for (u_int64_t& half : info.RedirectGID) half = mapping.GidHalf(half);
  for (std::size_t i = 0; i < std::size(info.TrapGID); i += 2) {
    const u_int64_t half = mapping.GidHalf(u_int64_t{info.TrapGID[i]} << 32U | info.TrapGID[i + 1]);
    info.TrapGID[i] = static_cast<u_int32_t>(half >> 32U);
    info.TrapGID[i + 1] = static_cast<u_int32_t>(half);
  }
  info.RedirectQKey = mapping.QueueKey(info.RedirectQKey);
  info.TrapQKey = mapping.QueueKey(info.TrapQKey);
}

class Copy {
 public:
  Copy(const Fabscan& from, const KeyedMapping& mapping, bool keep_reasons, Fabscan& to)
      : from_(from), mapping_(mapping), keep_reasons_(keep_reasons), to_(to) {}

  void Add(const IBNode& node) {
    IBNode& copy = to_.discovered_fabric.makeNode(
        mapping_.Name(OriginalName(node.name)), mapping_.Guid(node.guid), node.type, node.numPorts);
    copy.setAlternativeName(mapping_.Name(OriginalName(node.getAlternativeName())));
    copy.in_sub_fabric = node.in_sub_fabric;
    copy.setSpecialNodeType(node.getSpecialNodeType());
    copy.setOpalSwitch(node.isOpalSwitch());
    for (const bool gmp : {false, true}) {
      const capability_mask_t* mask = from_.capability_module.find(node, gmp);
      if (mask != nullptr) to_.capability_module.put(copy, gmp, *mask);
    }
    CopyRecords(kNodeRecords, node, copy);
    AnonymiseRecord<SMP_NodeInfo>(copy);
    AnonymiseRecord<VendorSpec_GeneralInfo>(copy);
    AnonymiseRecord<IB_ClassPortInfo>(copy);
    for (const IBPort* port : node.Ports) {
      if (port != nullptr) AddPort(*port, copy);
    }
  }

 private:
  void AddPort(const IBPort& port, IBNode& node) {
    IBPort& copy = to_.discovered_fabric.makePort(node, port.num);
    copy.port_state = port.port_state;
    copy.setInSubFabric(port.getInSubFabric());
    copy.setFNMPort(port.isFNMPort());
    copy.setFNM1Port(port.isFNM1Port());
    copy.setSpecialPort(port.isSpecialPort());
    CopyRecords(kPortRecords, port, copy);
    AnonymiseRecord<SMP_PortInfo>(copy);
    const TesselExtendedInfo& store = from_.fabric_extended_info;
    for (u_int32_t index = 0; index < TesselExtendedInfo::kCounterSets; ++index) {
      const auto* counters = store.getWrenReductionCounters(port.createIndex, index);
      if (counters != nullptr) to_.fabric_extended_info.putCounters(copy, index) = *counters;
    }
    for (u_int8_t selector = 0; selector < TesselExtendedInfo::kMonitorSelectors; ++selector) {
      if (store.getWrenReductionConfigureMLIDMonitors(port.createIndex, selector) != nullptr) {
        to_.fabric_extended_info.putMonitors(copy, selector);
      }
    }
  }

  template <class Kinds, class Owner>
  void CopyRecords(const Kinds& kinds, const Owner& owner, const Owner& copy) {
    TesselExtendedInfo& store = to_.fabric_extended_info;
    for (const auto& kind : kinds) {
      const void* record = kind.find(from_.fabric_extended_info, owner);
      if (record != nullptr) std::memcpy(kind.put(store, copy), record, kind.table->size);
    }
    for (const auto& [record, reason] : from_.fabric_extended_info.absentReasons(owner)) {
      store.setAbsent(copy, record, keep_reasons_ ? reason : kWithheldReason);
    }
  }

  template <class Record, class Owner>
  void AnonymiseRecord(const Owner& copy) {
    TesselExtendedInfo& store = to_.fabric_extended_info;
    if (store.find<Record>(copy) != nullptr) Anonymise(store.put<Record>(copy), mapping_);
  }

  const Fabscan& from_;
  const KeyedMapping& mapping_;
  bool keep_reasons_;
  Fabscan& to_;
};

}  // namespace

void AnonymiseFabric(const Fabscan& from, const KeyedMapping& mapping, bool keep_reasons,
                     Fabscan& to, const NodeProgress& progress) {
  Copy copy(from, mapping, keep_reasons, to);
  const std::size_t total = from.discovered_fabric.nodeCount();
  for (const IBNode& node : from.discovered_fabric.nodes()) {
    if (progress) progress(node.createIndex, total);
    copy.Add(node);
  }
  if (progress) progress(total, total);
}

}  // namespace fabscan
