#ifndef FABSCAN_FABRICS_DEVICE_MODELS_H
#define FABSCAN_FABRICS_DEVICE_MODELS_H

#include <infiniband/fabscan/fabscan.h>

#include <array>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace fabscan {

/// What makes nodes one device model. What was not collected counts as zero.
struct DeviceModelKey {
  IBNodeType type = IB_UNKNOWN_NODE_TYPE;
  IBSpecialPortType special = IB_NOT_SPECIAL_PORT;
  // From NodeInfo.
  u_int32_t vendor_id = 0;
  u_int16_t device_id = 0;
  u_int32_t revision = 0;
  // From GeneralInfo.
  std::array<u_int8_t, sizeof(PSID_Block_Element)> psid{};
  std::array<u_int32_t, 3> firmware{};  // major, minor and sub-minor, the extended ones where given

  bool operator<(const DeviceModelKey& other) const;
};

DeviceModelKey DeviceModelOf(const Fabscan& fabscan, const IBNode& node);

/// The PSID's text without its padding, harmless; empty where there is none.
std::string PsidText(const DeviceModelKey& key);
/// `31.2012.1024`; empty where there is none.
std::string FirmwareText(const DeviceModelKey& key);

struct DeviceModel {
  DeviceModelKey key;
  const IBNode* representative;  // the one with the most records, of several the first by name
  std::size_t records;           // that the representative has, as RecordsOf counts them
  std::size_t nodes;
};

/// Records that were collected of the node and its ports; a capability mask counts as one.
std::size_t RecordsOf(const Fabscan& fabscan, const IBNode& node);

/// The device models of the selected nodes of the sub-fabric, all when `guids` is empty, in the
/// order of their first nodes by name.
std::vector<DeviceModel> DeviceModelsOf(const Fabscan& fabscan,
                                        const std::set<u_int64_t>& guids = {});

/// The representative of each of these device models.
std::vector<const IBNode*> RepresentativeNodes(const Fabscan& fabscan,
                                               const std::set<u_int64_t>& guids = {});

}  // namespace fabscan

#endif
