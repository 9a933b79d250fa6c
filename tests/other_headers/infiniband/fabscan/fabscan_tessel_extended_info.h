#ifndef OTHER_HEADERS_FABSCAN_TESSEL_EXTENDED_INFO_H
#define OTHER_HEADERS_FABSCAN_TESSEL_EXTENDED_INFO_H

#include <infiniband/fabscan/fabscan_types.h>
#include <recording.h>

#include <string>

/// The getters are not const, and return what could be written to: code that only reads must not
/// mind.
class TesselExtendedInfo {
 public:
  SMP_NodeInfo* getSMPNodeInfo(u_int32_t index) {
    return Found<SMP_NodeInfo>("getSMPNodeInfo", index);
  }
  SMP_SwitchInfo* getSMPSwitchInfo(u_int32_t index) {
    return Found<SMP_SwitchInfo>("getSMPSwitchInfo", index);
  }
  SMP_RouterInfo* getSMPRouterInfo(u_int32_t index) {
    return Found<SMP_RouterInfo>("getSMPRouterInfo", index);
  }
  SMP_ExtendedSwitchInfo* getSMP_ExtendedSwitchInfo(u_int32_t index) {
    return Found<SMP_ExtendedSwitchInfo>("getSMP_ExtendedSwitchInfo", index);
  }
  ib_extended_node_info* getSMPExtNodeInfo(u_int32_t index) {
    return Found<ib_extended_node_info>("getSMPExtNodeInfo", index);
  }
  ib_private_lft_info* getPLFTInfo(u_int32_t index) {
    return Found<ib_private_lft_info>("getPLFTInfo", index);
  }
  adaptive_routing_info* getARInfo(u_int32_t index) {
    return Found<adaptive_routing_info>("getARInfo", index);
  }
  VendorSpec_GeneralInfo* getVSGeneralInfo(u_int32_t index) {
    return Found<VendorSpec_GeneralInfo>("getVSGeneralInfo", index);
  }
  SMP_PortInfo* getSMPPortInfo(u_int32_t index) {
    return Found<SMP_PortInfo>("getSMPPortInfo", index);
  }
  SMP_PortInfoExtended* getSMPPortInfoExtended(u_int32_t index) {
    return Found<SMP_PortInfoExtended>("getSMPPortInfoExtended", index);
  }
  SMP_TarnExtPortInfo* getSMPTarnExtPortInfo(u_int32_t index) {
    return Found<SMP_TarnExtPortInfo>("getSMPTarnExtPortInfo", index);
  }
  CC_EnhancedCongestionInfo* getCCEnhancedCongestionInfo(u_int32_t index) {
    return Found<CC_EnhancedCongestionInfo>("getCCEnhancedCongestionInfo", index);
  }
  CC_CongestionSwitchGeneralSettings* getCCSwitchGeneralSettings(u_int32_t index) {
    return Found<CC_CongestionSwitchGeneralSettings>("getCCSwitchGeneralSettings", index);
  }
  IB_ClassPortInfo* getWrenClassPortInfo(u_int32_t index) {
    return Found<IB_ClassPortInfo>("getWrenClassPortInfo", index);
  }
  WrenReductionInfo* getWrenReductionInfo(u_int32_t index) {
    return Found<WrenReductionInfo>("getWrenReductionInfo", index);
  }
  WrenReductionPortInfo* getWrenReductionPortInfo(u_int32_t index) {
    return Found<WrenReductionPortInfo>("getWrenReductionPortInfo", index);
  }
  WrenPushReductionCounters* getWrenPushReductionCounters(u_int32_t index) {
    return Found<WrenPushReductionCounters>("getWrenPushReductionCounters", index);
  }
  WrenReductionCounters* getWrenReductionCounters(u_int32_t index, u_int32_t set) {
    return Found<WrenReductionCounters>("getWrenReductionCounters", index, set);
  }
  WrenReductionConfigureMLIDMonitors* getWrenReductionConfigureMLIDMonitors(u_int32_t index,
                                                                            u_int8_t selector) {
    return Found<WrenReductionConfigureMLIDMonitors>("getWrenReductionConfigureMLIDMonitors", index,
                                                     selector);
  }

 private:
  template <class Record>
  static Record* Found(const std::string& getter, u_int32_t index) {
    recording::Ask(getter + "(" + std::to_string(index) + ")");
    return recording::Find<Record>(index);
  }
  template <class Record>
  static Record* Found(const std::string& getter, u_int32_t index, u_int32_t second) {
    recording::Ask(getter + "(" + std::to_string(index) + ", " + std::to_string(second) + ")");
    return recording::Find<Record>(index, second);
  }
};

#endif
