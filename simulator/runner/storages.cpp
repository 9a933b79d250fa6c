#include "storages.h"

namespace fabscan::simulator {

namespace {

std::string Indexed(const char* name, std::initializer_list<unsigned> indices) {
  std::string text = name;
  for (const unsigned index : indices) text += "[" + std::to_string(index) + "]";
  return text;
}

class Collector {
 public:
  template <class Record>
  void add(std::string name, Packed<Record>& packed) {
    storages.push_back(
        {std::move(name), &TableOf<Record>::value, packed.bytes, sizeof packed.bytes});
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
#define STORAGE(record, member, function) all.add(#member, node.member);
#define STORAGE_FROM_NODE(record, member, function) all.add(#member "()", *node.member());
  SIMULATOR_ATTRIBUTES(STORAGE, STORAGE, STORAGE_FROM_NODE, STORAGE, SIMULATOR_NOTHING)
#undef STORAGE_FROM_NODE
#undef STORAGE
  for (auto& [key, counters] : node.reductionCounters()) {
    const auto& [port, index, lean_pipe] = key;
    all.add(Indexed("reductionCounters", {port, index, lean_pipe}), counters);
  }
  for (auto& [key, view] : node.pushCounters()) {
    all.add(Indexed("pushCounters", {key.first, key.second}), view.packed);
  }
  return std::move(all.storages);
}

}  // namespace fabscan::simulator
