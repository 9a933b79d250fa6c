#ifndef FABSCAN_TESTING_EVERY_EMITTER_H
#define FABSCAN_TESTING_EVERY_EMITTER_H

#include <cstring>
#include <string>
#include <type_traits>

#include "fabric_builder.h"
#include "generated_functions.h"

namespace fabscan {

/// A switch and a router, of which every emitter has a block to write, with numbers of all widths:
/// every byte of every record is the same.
class FullFabric : public FabricBuilder {
 public:
  explicit FullFabric(u_int8_t byte = 0x77)
      : byte_(byte), switch_(Switch("S1", 12)), router_(Router("R1", 2)) {
    for (const IBNode* node : {&switch_, &router_}) {
      Support(*node, {0, 2, 9, 12, 13, 44, 55});
      fabscan.capability_module.put(*node, true, {{0xffffffff, 0, 0, 0}});
      Fill(NodeRecords{}, *node);
      for (const IBPort* port : node->Ports) {
        if (port != nullptr) FillPort(*port);
      }
    }
    switch_.Ports[11]->setSpecialPort(true);
  }

  /// The node that the function has a block for.
  const IBNode& NodeOf(const generator::GeneratedFunction& function) const {
    return function.emitter == &SimInfoDumpCPP::GenerateRouterInfo ? router_ : switch_;
  }
  std::string BodyOf(const generator::GeneratedFunction& function) {
    return Body(function.emitter, NodeOf(function));
  }

 private:
  template <class Record>
  void FillRecord(Record& record) const {
    static_assert(std::is_trivially_copyable_v<Record>);
    std::memset(&record, byte_, sizeof record);
  }
  template <class... Records, class Owner>
  void Fill(RecordList<Records...>, const Owner& owner) {
    (FillRecord(Put<Records>(owner)), ...);
  }
  void FillPort(const IBPort& port) {
    Fill(PortRecords{}, port);
    auto& store = fabscan.fabric_extended_info;
    store.putMonitors(port, 0);
    store.putMonitors(port, 1);
    FillRecord(store.putCounters(port, 7));
  }

  const u_int8_t byte_;
  IBNode& switch_;
  IBNode& router_;
};

}  // namespace fabscan

#endif
