// Which node attributes the generated functions assign, and when.

#include "simulator/verification/rules.h"

namespace fabscan {

namespace {

/// SMP capability bits that decide whether an attribute is written.
enum SmpBit : u_int8_t {
  kPrivateLinearForwarding = 0,
  kAdaptiveRoutingRev1 = 2,
  kPortSlToPrivateLftMap = 12,
  kExtendedNodeInfo = 13,
  kDcqcn = 44,
  kWrenReductionManagement = 55,
};

ExpectedFunction NodeInfo(const RuleContext& context) {
  const SMP_NodeInfo* info = context.store().getSMPNodeInfo(context.node().createIndex);
  ExpectedFunction function =
      Copies(info, Outcome::kRefuses, "nodeInfo",
             "BaseVersion ClassVersion PartitionCap DeviceID revision VendorID");
  if (info != nullptr) function.values["portPkeyTable"]["entries"] = info->PartitionCap;
  return function;
}

ExpectedFunction CapabilityMask(const RuleContext& context, bool is_gmp, const char* storage) {
  const capability_mask_t* mask = context.capabilities().find(context.node(), is_gmp);
  if (mask == nullptr) return Refuses();
  ExpectedFunction function{Outcome::kAssigns, {}};
  for (unsigned word = 0; word < 4; ++word) {
    function.values[storage]["capability" + std::to_string(word)] = mask->mask[word];
  }
  return function;
}

ExpectedFunction SmpCapability(const RuleContext& context) {
  return CapabilityMask(context, false, "capMaskSMP");
}

ExpectedFunction GmpCapability(const RuleContext& context) {
  return context.node().isSpecialNode() ? Leaves() : CapabilityMask(context, true, "capMaskGMP");
}

const VendorSpec_GeneralInfo* GeneralInfoOf(const RuleContext& context) {
  if (context.node().isSpecialNode()) return nullptr;
  return context.store().getVSGeneralInfo(context.node().createIndex);
}

ExpectedFunction FwInfo(const RuleContext& context) {
  const VendorSpec_GeneralInfo* info = GeneralInfoOf(context);
  return Copies(info != nullptr ? &info->FWInfo : nullptr, Outcome::kLeaves, "fwInfo",
                "Major Minor SubMinor BuildID PSID.PSID INI_File_Version Extended_Major "
                "Extended_Minor Extended_SubMinor isfu_major sec_boot");
}

ExpectedFunction HwInfo(const RuleContext& context) {
  const VendorSpec_GeneralInfo* info = GeneralInfoOf(context);
  return Copies(info != nullptr ? &info->HWInfo : nullptr, Outcome::kLeaves, "hwInfo",
                "DeviceHWRevision DeviceID num_ports technology pvs hw_dev_id");
}

ExpectedFunction SwInfo(const RuleContext& context) {
  const VendorSpec_GeneralInfo* info = GeneralInfoOf(context);
  return Copies(info != nullptr ? &info->SWInfo : nullptr, Outcome::kLeaves, "swInfo",
                "Major Minor SubMinor");
}

ExpectedFunction ExtendedNodeInfo(const RuleContext& context) {
  if (!context.SupportsSmp(kExtendedNodeInfo)) return Leaves();
  return Copies(context.store().getSMPExtNodeInfo(context.node().createIndex), Outcome::kLeaves,
                "extNodeInfo",
                "sl2vl_cap node_type_extended num_pcie num_oob AnycastLidCap asic_max_planes "
                "link_auto_retrain_en multiplane_asymmetry_en");
}

ExpectedFunction ArInfo(const RuleContext& context) {
  if (!context.IsSwitch()) return Leaves();
  if (!context.SupportsSmp(kAdaptiveRoutingRev1)) return Refuses();
  return Copies(context.store().getARInfo(context.node().createIndex), Outcome::kRefuses,
                "AdaptiveRoutingInfo",
                "dyn_cap_calc_sup by_transp_cap by_sl_cap glb_groups is4_mode direction_num_sup "
                "group_table_copy_sup group_cap is_ar_trials_supported is_fr_sup is_frn_sup "
                "is_arn_sup string_width_cap group_table_cap sub_grps_supported rn_version_cap "
                "ar_version_cap is_hbf_supported is_whbf_supported is_symmetric_hash_supported "
                "is_dceth_hash_supported is_bth_dqp_hash_supported is_pfrn_supported");
}

ExpectedFunction RouterInfo(const RuleContext& context) {
  if (context.node().type != IB_RTR_NODE) return Leaves();
  return Copies(context.store().getSMPRouterInfo(context.node().createIndex), Outcome::kLeaves,
                "routerInfo",
                "CapabilityMask NextHopTableCap AdjacentSiteLocalSubnetsTableCap "
                "ar_group_to_router_lid_table_cap cap_supported_subnets cap_router_lid");
}

ExpectedFunction ExtendedSwitchInfo(const RuleContext& context) {
  if (!context.IsSwitch()) return Leaves();
  return Copies(context.store().getSMP_ExtendedSwitchInfo(context.node().createIndex),
                Outcome::kLeaves, "getExtendedSwitchInfo()", "turbo_path_cap");
}

ExpectedFunction SwitchInfo(const RuleContext& context) {
  if (!context.IsSwitch()) return Leaves();
  return Copies(context.store().getSMPSwitchInfo(context.node().createIndex), Outcome::kLeaves,
                "switchInfo",
                "LinearFDBCap RandomFDBCap MCastFDBCap OptimizedSLVLMapping LidsPerPort PartEnfCap "
                "InbEnfCap OutbEnfCap FilterRawInbCap FilterRawOutbCap ENP0");
}

ExpectedFunction PrivateLftInfo(const RuleContext& context) {
  if (!context.IsSwitch()) return Leaves();
  if (!context.SupportsSmp(kPrivateLinearForwarding) ||
      !context.SupportsSmp(kPortSlToPrivateLftMap)) {
    return Refuses();
  }
  return Copies(context.store().getPLFTInfo(context.node().createIndex), Outcome::kRefuses,
                "plftInfo",
                "Active_Mode ModeCap NumPLFTs NoFallback "
                "Description_Mode[0].LFTableSize Description_Mode[0].NumOfLFTables "
                "Description_Mode[1].LFTableSize Description_Mode[1].NumOfLFTables "
                "Description_Mode[2].LFTableSize Description_Mode[2].NumOfLFTables "
                "Description_Mode[3].LFTableSize Description_Mode[3].NumOfLFTables");
}

ExpectedFunction EnhancedCongestionInfo(const RuleContext& context) {
  if (context.node().isSpecialNode()) return Leaves();
  if (!context.SupportsSmp(kDcqcn)) return Refuses();
  return Copies(context.store().getCCEnhancedCongestionInfo(context.node().createIndex),
                Outcome::kRefuses, "enhancedCongestionInfo", "ver1 ver0 CC_Capability_Mask");
}

ExpectedFunction CongestionSwitchGeneralSettings(const RuleContext& context) {
  if (!context.IsSwitch()) return Leaves();
  const CC_EnhancedCongestionInfo* versions =
      context.store().getCCEnhancedCongestionInfo(context.node().createIndex);
  if (versions == nullptr || versions->ver0 == 0) return Refuses();
  return Copies(context.store().getCCSwitchGeneralSettings(context.node().createIndex),
                Outcome::kRefuses, "congSWGeneralInfo",
                "cap_total_buffer_size cap_cc_profile_step_size");
}

/// The edited file assigns RedirectGID as its two words.
ExpectedFunction ReductionManagerClassPortInfo(const RuleContext& context) {
  if (!context.IsSwitch() || !context.SupportsSmp(kWrenReductionManagement)) return Leaves();
  ExpectedFunction function =
      Copies(context.store().getWrenClassPortInfo(context.node().createIndex), Outcome::kRefuses,
             "wren_rma_class_port_info",
             "CapMsk CapMsk2 ClassVersion BaseVersion RespTimeValue RedirectGID RedirectFL "
             "RedirectSL RedirectTC RedirectPKey RedirectLID RedirectQP RedirectQKey");
  if (function.outcome == Outcome::kAssigns) {
    function.edited_lines = {"mad_buffer.RedirectGID = 0x0x"};
  }
  return function;
}

ExpectedFunction ReductionInfo(const RuleContext& context) {
  if (!context.IsSwitch() || !context.SupportsSmp(kWrenReductionManagement)) return Leaves();
  return Copies(context.store().getWrenReductionInfo(context.node().createIndex), Outcome::kRefuses,
                "wren_red_info", "capability_mask hbf_group_cap reduction_fdb_cap");
}

}  // namespace

const std::initializer_list<Rule> kNodeRules = {
    {"setNodeInfo", NodeInfo},
    {"setGMPCapability", GmpCapability},
    {"setSMPCapability", SmpCapability},
    {"setFWInfo", FwInfo},
    {"setHWInfo", HwInfo},
    {"setSWInfo", SwInfo},
    {"setExtendedNodeInfo", ExtendedNodeInfo},
    {"setArInfo", ArInfo},
    {"setRouterInfo", RouterInfo},
    {"setExtendedSwitchInfo", ExtendedSwitchInfo},
    {"setSwitchInfo", SwitchInfo},
    {"setPrivateLftInfo", PrivateLftInfo},
    {"setEnhancedCongestionInfo", EnhancedCongestionInfo},
    {"setCongestionSwitchGeneralSettings", CongestionSwitchGeneralSettings},
    {"setVSReductionManagerClassPortInfo", ReductionManagerClassPortInfo},
    {"setWrenReductionInfo", ReductionInfo},
};

}  // namespace fabscan
