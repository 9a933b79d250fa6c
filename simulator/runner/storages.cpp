#include "storages.h"

namespace fabscan {
namespace simulator {

namespace {

template <class Record>
std::vector<FieldValue> FieldsOf(const u_int8_t* bytes) {
  Record record{};
  Unpack(record, bytes);
  std::vector<FieldValue> fields;
  auto collect = [&fields](Place place, const char* name, int index, const auto& value) {
    std::string full_name = name;
    if (index != kNotIndexed) full_name += "[" + std::to_string(index) + "]";
    fields.push_back({std::move(full_name), place.width, value});
  };
  WalkFields(record, collect);
  return fields;
}

template <class Record>
void ClearFields(u_int8_t* bytes) {
  Pack(Record{}, bytes);
}

std::string Indexed(const char* name, std::initializer_list<unsigned> indices) {
  std::string text = name;
  for (const unsigned index : indices) text += "[" + std::to_string(index) + "]";
  return text;
}

class Collector {
 public:
  template <class Record>
  void add(std::string name, Packed<Record>& packed) {
    storages.push_back({std::move(name), packed.bytes, sizeof packed.bytes, &FieldsOf<Record>,
                        &ClearFields<Record>});
  }

  template <class Record>
  void add(const char* name, std::vector<Packed<Record>>& ports) {
    for (unsigned port = 0; port < ports.size(); ++port) {
      add(Indexed(name, {port}), ports[port]);
    }
  }

  std::vector<Storage> storages;
};

}  // namespace

std::vector<Storage> StoragesOf(Node& node) {
  Collector all;
#define STORAGE(member) all.add(#member, node.member)
  STORAGE(nodeInfo);
  STORAGE(switchInfo);
  STORAGE(routerInfo);
  STORAGE(extNodeInfo);
  STORAGE(plftInfo);
  STORAGE(AdaptiveRoutingInfo);
  STORAGE(fwInfo);
  STORAGE(hwInfo);
  STORAGE(swInfo);
  STORAGE(capMaskSMP);
  STORAGE(capMaskGMP);
  STORAGE(enhancedCongestionInfo);
  STORAGE(congSWGeneralInfo);
  STORAGE(wren_rma_class_port_info);
  STORAGE(wren_red_info);
  STORAGE(nodePortsInfo);
  STORAGE(nodePortsInfoExt);
  STORAGE(nodeExtPortsInfo);
  STORAGE(wrenReductionPortInfo);
#undef STORAGE
  all.add("getExtendedSwitchInfo()", *node.getExtendedSwitchInfo());
  for (auto& [key, counters] : node.reductionCounters()) {
    const auto& [port, index, lean_pipe] = key;
    all.add(Indexed("reductionCounters", {port, index, lean_pipe}), counters);
  }
  for (auto& [key, view] : node.pushCounters()) {
    all.add(Indexed("pushCounters", {key.first, key.second}), view.packed);
  }
  return std::move(all.storages);
}

}  // namespace simulator
}  // namespace fabscan
