#ifndef FABSCAN_EXAMPLES_EXAMPLE_FABRIC_H
#define FABSCAN_EXAMPLES_EXAMPLE_FABRIC_H

#include <infiniband/fabscan/fabscan.h>

#include "examples/device_models.h"
#include "examples/port_values.h"

namespace fabscan {

/// The LID of a port: a switch has one for all its ports. It follows from the GUID.
u_int16_t LidOf(const IBNode& node, phys_port_t port);

/// Builds a fabric: nodes, their ports, and the records that devices of their models return.
class ExampleFabric {
 public:
  /// `manager_lid` is the LID of the port that the subnet manager runs on.
  explicit ExampleFabric(u_int16_t manager_lid) : manager_lid_(manager_lid) {}

  Fabscan& fabscan() { return fabscan_; }
  TesselExtendedInfo& store() { return fabscan_.fabric_extended_info; }

  /// A node with NodeInfo and a basic SMP mask. Its GUID is the next one.
  IBNode& Node(const char* name, IBNodeType type, phys_port_t ports, const DeviceModel& model);
  /// A node without any record.
  IBNode& BareNode(const char* name, u_int64_t guid, IBNodeType type, phys_port_t ports,
                   const DeviceModel& model);

  // Records of the node that was created last.

  void AddSmpMask(const IBNode& node, const capability_mask_t& mask);
  /// GeneralInfo and the GMP mask.
  void AddGeneral(const IBNode& node);
  /// SwitchInfo, then the records of a switch that the InfiniBand architecture does not define.
  void AddSwitch(const IBNode& node);
  void AddSwitchExtensions(const IBNode& node);
  /// The same for a router or an adapter.
  void AddEndNodeExtensions(const IBNode& node);
  template <class Record>
  void Add(const IBNode& node, const FieldTable& values) {
    store().put(node, MakeRecord<Record>(values, model_->generation));
  }

  /// A port with PortInfo and, but for port 0 of a switch, the two records that extend it.
  IBPort& Port(IBNode& node, phys_port_t number, PortKind kind = PortKind::kRegular,
               IBPortState state = IB_PORT_STATE_ACTIVE,
               IBSpecialPortType special_type = IB_NOT_SPECIAL_PORT);
  /// A cable between two ports.
  void Link(const char* node, phys_port_t port, const char* other, phys_port_t other_port);
  /// A cable to a port of a switch that is not in the snapshot.
  void LinkOutside(const char* node, phys_port_t port, phys_port_t other_port);
  /// A port with only the record that the InfiniBand architecture does not define.
  IBPort& BarePort(IBNode& node, phys_port_t number);

 private:
  /// Both ports use the width and speed of the slower one.
  void Negotiate(const IBPort& one, const IBPort& other);

  Fabscan fabscan_;
  const u_int16_t manager_lid_;
  const DeviceModel* model_ = nullptr;
};

}  // namespace fabscan

#endif
