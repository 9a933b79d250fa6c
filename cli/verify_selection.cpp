#include "verify_selection.h"

#include <fmt/format.h>

#include <array>
#include <tuple>

#include "command.h"
#include "guid_options.h"

namespace fabscan {

namespace {

/// What tells device models apart. What was not collected counts as zero.
auto ModelOf(const Fabscan& fabscan, const IBNode& node) {
  const TesselExtendedInfo& store = fabscan.fabric_extended_info;
  const SMP_NodeInfo* stored_info = store.getSMPNodeInfo(node.createIndex);
  const VendorSpec_GeneralInfo* stored_general = store.getVSGeneralInfo(node.createIndex);
  const SMP_NodeInfo info = stored_info != nullptr ? *stored_info : SMP_NodeInfo{};
  const FWInfo_Block_Element firmware =
      stored_general != nullptr ? stored_general->FWInfo : FWInfo_Block_Element{};
  std::array<u_int8_t, sizeof firmware.PSID.PSID> psid{};
  std::copy(std::begin(firmware.PSID.PSID), std::end(firmware.PSID.PSID), psid.begin());
  return std::make_tuple(node.type, node.getSpecialNodeType(), info.VendorID, info.DeviceID,
                         info.revision, psid, firmware.Major, firmware.Minor, firmware.SubMinor,
                         firmware.Extended_Major, firmware.Extended_Minor,
                         firmware.Extended_SubMinor);
}

}  // namespace

std::vector<const IBNode*> ChosenNodes(const IBFabric& fabric, const std::set<u_int64_t>& guids) {
  for (const u_int64_t guid : guids) {
    const IBNode* node = fabric.getNodeByGuid(guid);
    if (node == nullptr) {
      throw CommandError(
          fmt::format("no node has the GUID {}; choose one of the snapshot's", GuidText(guid)));
    }
    if (!node->in_sub_fabric) {
      throw CommandError(
          fmt::format("the node {} ({}) is outside the sub-fabric, so it is never written; choose "
                      "another",
                      GuidText(guid), node->name));
    }
  }
  std::vector<const IBNode*> nodes;
  for (const auto& [name, node] : fabric.NodeByName) {
    if (node != nullptr && guids.count(node->guid) != 0) nodes.push_back(node);
  }
  return nodes;
}

std::vector<const IBNode*> RepresentativeNodes(const Fabscan& fabscan) {
  std::vector<const IBNode*> nodes;
  std::set<decltype(ModelOf(fabscan, std::declval<const IBNode&>()))> seen;
  for (const auto& [name, node] : fabscan.discovered_fabric.NodeByName) {
    if (node == nullptr || !node->in_sub_fabric) continue;
    if (seen.insert(ModelOf(fabscan, *node)).second) nodes.push_back(node);
  }
  return nodes;
}

}  // namespace fabscan
