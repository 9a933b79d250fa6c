#include "examples/device_models.h"

#include <cstring>

namespace fabscan {

namespace {

// clang-format off

// Dates are binary-coded decimals: 0x2025 is the year 2025, 0x1142 is 11:42.
const FieldTable kGeneralInfo = {
    //                                         EDR         HDR         NDR         XDR
    {"HWInfo.DeviceHWRevision",              {0xB0,       0xB1,       0xA1,       0xA0}},
    {"HWInfo.pvs",                           {1,          2,          3,          4}},
    {"HWInfo.technology",                    {0x10,       0x11,       0x13,       0x14}},
    {"HWInfo.cpo_indication",                {0,          0,          0,          1}},
    {"HWInfo.ga_valid",                      {1,          1,          1,          1}},
    {"HWInfo.chip_type",                     {0x21,       0x22,       0x23,       0x24}},
    {"HWInfo.UpTime",                        {7862400,    5184000,    1209600,    86400}},  // seconds
    {"FWInfo.secure_fw",                     {0,          1,          1,          1}},
    {"FWInfo.signed_fw",                     {1,          1,          1,          1}},
    {"FWInfo.BuildID",                       {1184,       2251,       3307,       4019}},
    {"FWInfo.Year",                          {0x2023,     0x2024,     0x2025,     0x2026}},
    {"FWInfo.Month",                         {0x11,       0x06,       0x09,       0x02}},
    {"FWInfo.Day",                           {0x08,       0x27,       0x14,       0x19}},
    {"FWInfo.Hour",                          {0x0935,     0x1142,     0x1618,     0x1805}},
    {"FWInfo.INI_File_Version",              {5,          6,          9,          11}},
    {"FWInfo.isfu_major",                    {2,          3,          4,          7}},
    {"FWInfo.life_cycle",                    {2,          2,          2,          2}},
    {"FWInfo.sec_boot",                      {0,          0,          1,          1}},
    {"SWInfo.Major",                         {3,          4,          5,          6}},
    {"SWInfo.Minor",                         {10,         9,          11,         12}},
    {"SWInfo.SubMinor",                      {2,          7,          13,         1}},
};

// clang-format on

}  // namespace

SMP_NodeInfo MakeNodeInfo(const DeviceModel& model, const IBNode& node) {
  SMP_NodeInfo info{};
  info.BaseVersion = 1;
  info.ClassVersion = 2;
  info.NodeType = node.type;
  info.NumPorts = node.numPorts;
  info.SystemImageGUID = node.guid + 3;
  info.NodeGUID = node.guid;
  info.PortGUID = PortGuid(node, 1);
  info.PartitionCap = model.partition_cap;
  info.DeviceID = model.device_id;
  info.revision = model.revision;
  info.VendorID = kVendor;
  info.LocalPortNum = 1;
  return info;
}

VendorSpec_GeneralInfo MakeGeneralInfo(const DeviceModel& model, const IBNode& node,
                                       const capability_mask_t& capabilities) {
  auto info = MakeRecord<VendorSpec_GeneralInfo>(kGeneralInfo, model.generation);
  info.HWInfo.DeviceID = model.device_id;
  info.HWInfo.hw_dev_id = model.hardware_id;
  info.HWInfo.num_ports = node.numPorts;
  // The base MAC address begins with the vendor's id and ends as the GUID does.
  info.HWInfo.manufacturing_base_mac_32_47 = kVendor >> 8U;
  info.HWInfo.manufacturing_base_mac_0_31 =
      (kVendor << 24U) | static_cast<u_int32_t>(node.guid & 0xFFFFFF);

  const auto [major, minor, sub_minor] = model.firmware;
  info.FWInfo.Extended_Major = major;
  info.FWInfo.Extended_Minor = minor;
  info.FWInfo.Extended_SubMinor = sub_minor;
  // The older numbers are one byte wide each.
  info.FWInfo.Major = static_cast<u_int8_t>(major);
  info.FWInfo.Minor = static_cast<u_int8_t>(minor);
  info.FWInfo.SubMinor = static_cast<u_int8_t>(sub_minor);
  std::memcpy(info.FWInfo.PSID.PSID, model.psid, std::strlen(model.psid));

  info.CapabilityMask = {capabilities.mask[0], capabilities.mask[1], capabilities.mask[2],
                         capabilities.mask[3]};
  return info;
}

}  // namespace fabscan
