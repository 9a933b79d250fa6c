#include "fabrics/anonymised_fabric.h"

#include <cstring>
#include <map>
#include <utility>
#include <vector>

#include "model/harmless_name.h"
#include "records/number.h"
#include "records/record_kinds.h"

namespace fabscan {

namespace {

u_int64_t Mapped(Identity identity, u_int64_t value, const KeyedMapping& mapping) {
  switch (identity) {
    case Identity::kNone:
      break;
    case Identity::kGuid:
      return mapping.Guid(value);
    case Identity::kGidHalf:
      return mapping.GidHalf(value);
    case Identity::kMacAddress:
      return mapping.MacAddress(value);
    case Identity::kQueueKey:
      return mapping.QueueKey(static_cast<u_int32_t>(value));
  }
  return value;
}

/// A value in one or more numbers of a record, the most significant first.
class JoinedNumbers {
 public:
  void Add(const Number& number, const void* record) {
    parts_.push_back({number.offset, &number.row});
    value_ = bits_ == 0 ? number.Load(record) : value_ << number.row.bits() | number.Load(record);
    bits_ += number.row.bits();
  }
  unsigned bits() const { return bits_; }
  u_int64_t value() const { return value_; }

  /// Stores the parts of `value` in the numbers, and begins a new value.
  void Replace(void* record, u_int64_t value) {
    for (; !parts_.empty(); parts_.pop_back()) {
      const auto& [offset, row] = parts_.back();
      StoreNumber(static_cast<char*>(record) + offset, row->size, value & row->largest());
      value = row->bits() == 64 ? 0 : value >> row->bits();
    }
    bits_ = 0;
  }

 private:
  std::vector<std::pair<std::size_t, const FieldRow*>> parts_;
  u_int64_t value_ = 0;
  unsigned bits_ = 0;
};

/// Replaces identifying values, in the fields whose rows mark them.
void Anonymise(const RecordTable& table, void* record, const KeyedMapping& mapping) {
  if (!table.identifies) return;
  std::map<Identity, JoinedNumbers> joined;
  ForEachNumber(table, [&](const Number& number) {
    const Identity identity = number.row.identity;
    if (identity == Identity::kNone) return;
    JoinedNumbers& numbers = joined[identity];
    numbers.Add(number, record);
    if (numbers.bits() < BitsOf(identity)) return;
    numbers.Replace(record, Mapped(identity, numbers.value(), mapping));
  });
}

class Copy {
 public:
  Copy(const Fabscan& from, const KeyedMapping& mapping, bool keep_reasons, Fabscan& to)
      : from_(from), mapping_(mapping), keep_reasons_(keep_reasons), to_(to) {}

  void Add(const IBNode& node) {
    IBNode& copy = to_.discovered_fabric.makeNode(
        mapping_.Name(OriginalName(node.name)), mapping_.Guid(node.guid), node.type, node.numPorts);
    copy.setAlternativeName(mapping_.Name(OriginalName(node.getAlternativeName())));
    if (node.getDescription()) {
      copy.setDescription(mapping_.Name(OriginalName(*node.getDescription())));
    }
    copy.in_sub_fabric = node.in_sub_fabric;
    copy.setSpecialNodeType(node.getSpecialNodeType());
    copy.setOpalSwitch(node.isOpalSwitch());
    for (const bool gmp : {false, true}) {
      const capability_mask_t* mask = from_.capability_module.find(node, gmp);
      if (mask != nullptr) to_.capability_module.put(copy, gmp, *mask);
    }
    CopyRecords(kNodeRecords, node, copy);
    for (const IBPort* port : node.Ports) {
      if (port != nullptr) AddPort(*port, copy);
    }
  }

 private:
  void AddPort(const IBPort& port, IBNode& node) {
    IBPort& copy = to_.discovered_fabric.makePort(node, port.num);
    copy.port_state = port.port_state;
    copy.lid = port.lid;
    copy.link_width = port.link_width;
    copy.link_speed = port.link_speed;
    if (port.guid != 0) copy.guid = mapping_.Guid(port.guid);
    if (const auto remote = port.getRemotePort()) {
      copy.setRemotePort(RemotePort{mapping_.Guid(remote->node_guid), remote->number});
    }
    copy.setInSubFabric(port.getInSubFabric());
    copy.setFNMPort(port.isFNMPort());
    copy.setFNM1Port(port.isFNM1Port());
    copy.setSpecialPort(port.isSpecialPort());
    CopyRecords(kPortRecords, port, copy);
    const TesselExtendedInfo& store = from_.fabric_extended_info;
    for (u_int32_t index = 0; index < TesselExtendedInfo::kCounterSets; ++index) {
      const auto* counters = store.getWrenReductionCounters(port.createIndex, index);
      if (counters == nullptr) continue;
      WrenReductionCounters& copied = to_.fabric_extended_info.putCounters(copy, index);
      copied = *counters;
      Anonymise(kCountersTable, &copied, mapping_);
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
      if (record == nullptr) continue;
      void* copied = kind.put(store, copy);
      std::memcpy(copied, record, kind.table->size);
      Anonymise(*kind.table, copied, mapping_);
    }
    for (const auto& [record, reason] : from_.fabric_extended_info.absentReasons(owner)) {
      store.setAbsent(copy, record, keep_reasons_ ? reason : kWithheldReason);
    }
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
