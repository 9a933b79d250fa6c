#ifndef FABSCAN_EXAMPLES_DEVICE_MODELS_H
#define FABSCAN_EXAMPLES_DEVICE_MODELS_H

#include <infiniband/tessel/Fabric.h>

#include "examples/field_values.h"

namespace fabscan {

constexpr u_int32_t kVendor = 0x5A1E0C;
constexpr u_int64_t kGuidBase = u_int64_t{kVendor} << 40U;

/// An invented device.
struct DeviceModel {
  Generation generation;
  u_int16_t device_id;
  u_int16_t hardware_id;
  u_int32_t revision;
  u_int16_t partition_cap;
  const char* psid;  // empty: the device does not answer GeneralInfo
  std::array<u_int32_t, 3> firmware;
};

// clang-format off
//                                     generation device  hardware revision P_Keys PSID             firmware
constexpr DeviceModel kXdrSwitch     = {kXdr,     0x5A58, 0x0258,  0xA0,    32,    "DEMO0000SWX1",  {35, 2014, 4202}};
constexpr DeviceModel kNdrSwitch     = {kNdr,     0x5A50, 0x0250,  0xA1,    32,    "DEMO0000SWN1",  {31, 2012, 1068}};
constexpr DeviceModel kHdrSwitch     = {kHdr,     0x5A48, 0x0248,  0xB1,    16,    "",              {27, 2010, 6102}};
constexpr DeviceModel kEdrSwitch     = {kEdr,     0x5A40, 0x0240,  0xB0,    8,     "DEMO0000SWE1",  {15, 2008, 3326}};
constexpr DeviceModel kNdrRouter     = {kNdr,     0x5A52, 0x0252,  0xA2,    64,    "DEMO0000RTN1",  {31, 2012, 1071}};
constexpr DeviceModel kNdrAdapter    = {kNdr,     0x5A90, 0x0290,  0x02,    128,   "DEMO00000HCAN", {28, 39, 2066}};
constexpr DeviceModel kHdrAdapter    = {kHdr,     0x5A88, 0x0288,  0x03,    127,   "DEMO00000HCAH", {20, 38, 1018}};
constexpr DeviceModel kEdrAdapter    = {kEdr,     0x5A80, 0x0280,  0x04,    126,   "DEMO00000HCAE", {12, 28, 2302}};
constexpr DeviceModel kXdrReduction  = {kXdr,     0x5A5A, 0x025A,  0xA3,    4,     "",              {35, 2014, 4202}};
constexpr DeviceModel kHdrGateway    = {kHdr,     0x5A4C, 0x024C,  0xB2,    24,    "",              {27, 2010, 6110}};
// clang-format on

constexpr u_int64_t PortGuid(const IBNode& node, phys_port_t port) {
  return node.type == IB_CA_NODE ? node.guid + port : node.guid;
}

SMP_NodeInfo MakeNodeInfo(const DeviceModel& model, const IBNode& node);

/// `capabilities` is the node's GMP capability mask, which GeneralInfo repeats.
VendorSpec_GeneralInfo MakeGeneralInfo(const DeviceModel& model, const IBNode& node,
                                       const capability_mask_t& capabilities);

}  // namespace fabscan

#endif
