#ifndef FABSCAN_FABRICS_DEVICE_MODELS_H
#define FABSCAN_FABRICS_DEVICE_MODELS_H

#include <infiniband/fabscan/fabscan.h>

#include <array>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace fabscan {

/// The properties that nodes of one device model share. Uncollected ones are zero.
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

/// The PSID's text without its padding, harmless; empty if there is none.
std::string PsidText(const DeviceModelKey& key);
/// `31.2012.1024`; empty if there is none.
std::string FirmwareText(const DeviceModelKey& key);

struct DeviceModel {
  DeviceModelKey key;
  const IBNode* representative;  // has the most records; if there are several, the first by name
  std::size_t records;           // of the representative, as counted by RecordsOf
  std::size_t nodes;
};

/// The number of collected records of the node and its ports; a capability mask counts as one.
std::size_t RecordsOf(const Fabscan& fabscan, const IBNode& node);

/// The device models of the selected nodes of the sub-fabric, or of all if `guids` is empty, in the
/// order of their first nodes by name.
std::vector<DeviceModel> DeviceModelsOf(const Fabscan& fabscan,
                                        const std::set<u_int64_t>& guids = {});

/// The representative of each of these device models.
std::vector<const IBNode*> RepresentativeNodes(const Fabscan& fabscan,
                                               const std::set<u_int64_t>& guids = {});

}  // namespace fabscan

#endif
