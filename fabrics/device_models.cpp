#include "fabrics/device_models.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <tuple>

#include "model/harmless_name.h"
#include "snapshot/record_fields.h"

namespace fabscan {

namespace {

auto Tied(const DeviceModelKey& key) {
  return std::tie(key.type, key.special, key.vendor_id, key.device_id, key.revision, key.psid,
                  key.firmware);
}

/// Devices give the version in 32 bits each; older ones in eight bits alone.
std::array<u_int32_t, 3> FirmwareOf(const FWInfo_Block_Element& info) {
  const std::array<u_int32_t, 3> extended = {info.Extended_Major, info.Extended_Minor,
                                             info.Extended_SubMinor};
  if (extended != std::array<u_int32_t, 3>{}) return extended;
  return {info.Major, info.Minor, info.SubMinor};
}

}  // namespace

bool DeviceModelKey::operator<(const DeviceModelKey& other) const {
  return Tied(*this) < Tied(other);
}

DeviceModelKey DeviceModelOf(const Fabscan& fabscan, const IBNode& node) {
  const TesselExtendedInfo& store = fabscan.fabric_extended_info;
  DeviceModelKey key;
  key.type = node.type;
  key.special = node.getSpecialNodeType();
  if (const SMP_NodeInfo* info = store.getSMPNodeInfo(node.createIndex)) {
    key.vendor_id = info->VendorID;
    key.device_id = info->DeviceID;
    key.revision = info->revision;
  }
  if (const VendorSpec_GeneralInfo* info = store.getVSGeneralInfo(node.createIndex)) {
    std::copy(std::begin(info->FWInfo.PSID.PSID), std::end(info->FWInfo.PSID.PSID),
              key.psid.begin());
    key.firmware = FirmwareOf(info->FWInfo);
  }
  return key;
}

std::string PsidText(const DeviceModelKey& key) {
  std::string text(key.psid.begin(), key.psid.end());
  text.erase(text.find_last_not_of('\0') + 1);
  return HarmlessName(text);
}

std::string FirmwareText(const DeviceModelKey& key) {
  if (key.firmware == std::array<u_int32_t, 3>{}) return {};
  return std::to_string(key.firmware[0]) + '.' + std::to_string(key.firmware[1]) + '.' +
         std::to_string(key.firmware[2]);
}

std::size_t RecordsOf(const Fabscan& fabscan, const IBNode& node) {
  std::size_t records = 0;
  const auto count = [&records](auto&&...) { ++records; };
  ForEachRecord(fabscan.fabric_extended_info, node, count);
  for (const bool is_gmp : {false, true}) {
    if (fabscan.capability_module.find(node, is_gmp) != nullptr) ++records;
  }
  for (const IBPort* port : node.Ports) {
    if (port != nullptr) ForEachRecord(fabscan.fabric_extended_info, *port, count);
  }
  return records;
}

std::vector<DeviceModel> DeviceModelsOf(const Fabscan& fabscan, const std::set<u_int64_t>& guids) {
  std::vector<DeviceModel> models;
  std::map<DeviceModelKey, std::size_t> place;
  for (const auto& entry : fabscan.discovered_fabric.NodeByName) {
    const IBNode* node = entry.second;
    if (node == nullptr || !node->in_sub_fabric) continue;
    if (!guids.empty() && guids.count(node->guid) == 0) continue;
    const DeviceModelKey key = DeviceModelOf(fabscan, *node);
    const auto [found, is_new] = place.emplace(key, models.size());
    const std::size_t records = RecordsOf(fabscan, *node);
    if (is_new) models.push_back({key, node, records, 0});
    DeviceModel& model = models[found->second];
    ++model.nodes;
    if (records <= model.records) continue;
    model.representative = node;
    model.records = records;
  }
  return models;
}

std::vector<const IBNode*> RepresentativeNodes(const Fabscan& fabscan,
                                               const std::set<u_int64_t>& guids) {
  std::vector<const IBNode*> nodes;
  for (const DeviceModel& model : DeviceModelsOf(fabscan, guids))
    nodes.push_back(model.representative);
  return nodes;
}

}  // namespace fabscan
