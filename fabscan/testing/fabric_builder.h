#ifndef FABSCAN_TESTING_FABRIC_BUILDER_H
#define FABSCAN_TESTING_FABRIC_BUILDER_H

#include <fabscan_sim_info_dump.h>
#include <infiniband/fabscan/fabscan.h>

#include <initializer_list>
#include <sstream>
#include <string>

namespace fabscan {

/// A fabric in memory, and the emitters run on it:
///
///     FabricBuilder fabric;
///     IBNode& node = fabric.Switch("S1", 4);
///     fabric.Put<SMP_NodeInfo>(node).VendorID = 0x2c9;
///     EXPECT_EQ(fabric.Body(&SimInfoDumpCPP::GenerateNodeInfo, node), "…");
class FabricBuilder {
 public:
  using Emitter = void (SimInfoDumpCPP::*)(std::ostream&, const IBNode&) const;

  /// A node whose ports, 1 to `ports` and 0 on a switch, are all active.
  IBNode& Node(const std::string& name, IBNodeType type, phys_port_t ports = 0) {
    IBNode& node = fabscan.discovered_fabric.makeNode(name, next_guid_++, type, ports);
    for (unsigned number = type == IB_SW_NODE ? 0 : 1; number <= ports; ++number) {
      IBPort& port = fabscan.discovered_fabric.makePort(node, static_cast<phys_port_t>(number));
      port.port_state = IB_PORT_STATE_ACTIVE;
    }
    return node;
  }
  IBNode& Switch(const std::string& name, phys_port_t ports = 0) {
    return Node(name, IB_SW_NODE, ports);
  }
  IBNode& Router(const std::string& name, phys_port_t ports = 0) {
    return Node(name, IB_RTR_NODE, ports);
  }
  IBNode& Adapter(const std::string& name, phys_port_t ports = 0) {
    return Node(name, IB_CA_NODE, ports);
  }
  IBNode& Special(const std::string& name, IBSpecialPortType kind, phys_port_t ports = 0) {
    IBNode& node = Adapter(name, ports);
    node.setSpecialNodeType(kind);
    return node;
  }

  /// The record of a node or a port, zeroed until it is filled.
  template <class Record, class Owner>
  Record& Put(const Owner& owner) {
    return fabscan.fabric_extended_info.put<Record>(owner);
  }
  template <class Record>
  Record& PutAt(const IBNode& node, std::size_t port) {
    return Put<Record>(*node.Ports[port]);
  }

  /// The node reports these SMP capability bits and no others.
  void Support(const IBNode& node, std::initializer_list<unsigned> bits) {
    capability_mask_t mask = {};
    for (const unsigned bit : bits) mask.mask[bit / 32] |= 1U << (bit % 32);
    fabscan.capability_module.put(node, false, mask);
  }

  std::string Body(Emitter emitter, const IBNode& node) {
    std::ostringstream out;
    const SimInfoDumpCPP dump(fabscan);
    (dump.*emitter)(out, node);
    return out.str();
  }

  /// What any emitter or overload writes: `write(dump, out)`.
  template <class Write>
  std::string Text(Write write) {
    std::ostringstream out;
    write(SimInfoDumpCPP(fabscan), out);
    return out.str();
  }

  Fabscan fabscan;

 private:
  u_int64_t next_guid_ = 1;
};

}  // namespace fabscan

#endif
