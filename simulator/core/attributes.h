#ifndef SIMULATOR_CORE_ATTRIBUTES_H
#define SIMULATOR_CORE_ATTRIBUTES_H

// clang-format off
/// The attributes of a simulated node: the record; the member of `Node` that stores it packed, with
/// the name that generated files use; the function of a generated file that sets it. In the order of the file.
///
///   NODE      one record, a member
///   AGAIN     the same, for a record type of another row
///   FROM_NODE one record, behind a member function
///   PORT      one record per port number
///   COUNTERS  any number of records, by the key that generated files use
#define SIMULATOR_ATTRIBUTES(NODE, AGAIN, FROM_NODE, PORT, COUNTERS)                                           \
  NODE(     SMP_NodeInfo,                       nodeInfo,                 setNodeInfo)                        \
  PORT(     SMP_PortInfo,                       nodePortsInfo,            setPortInfo)                        \
  NODE(     GeneralInfoCapabilityMask,          capMaskGMP,               setGMPCapability)                   \
  AGAIN(    GeneralInfoCapabilityMask,          capMaskSMP,               setSMPCapability)                   \
  NODE(     FWInfo_Block_Element,               fwInfo,                   setFWInfo)                          \
  NODE(     HWInfo_Block_Element,               hwInfo,                   setHWInfo)                          \
  NODE(     SWInfo_Block_Element,               swInfo,                   setSWInfo)                          \
  PORT(     SMP_PortInfoExtended,               nodePortsInfoExt,         setPortInfoExtended)                \
  NODE(     ib_extended_node_info,              extNodeInfo,              setExtendedNodeInfo)                \
  PORT(     SMP_TarnExtPortInfo,                nodeExtPortsInfo,         setExtendedPortInfo)                \
  NODE(     adaptive_routing_info,              AdaptiveRoutingInfo,      setArInfo)                          \
  NODE(     SMP_RouterInfo,                     routerInfo,               setRouterInfo)                      \
  FROM_NODE(SMP_ExtendedSwitchInfo,             getExtendedSwitchInfo,    setExtendedSwitchInfo)              \
  NODE(     SMP_SwitchInfo,                     switchInfo,               setSwitchInfo)                      \
  NODE(     ib_private_lft_info,                plftInfo,                 setPrivateLftInfo)                  \
  NODE(     CC_EnhancedCongestionInfo,          enhancedCongestionInfo,   setEnhancedCongestionInfo)          \
  NODE(     CC_CongestionSwitchGeneralSettings, congSWGeneralInfo,        setCongestionSwitchGeneralSettings) \
  NODE(     IB_ClassPortInfo,                   wren_rma_class_port_info, setVSReductionManagerClassPortInfo) \
  PORT(     WrenReductionPortInfo,              wrenReductionPortInfo,    setWrenReductionPortInfo)           \
  NODE(     WrenReductionInfo,                  wren_red_info,            setWrenReductionInfo)               \
  COUNTERS( WrenReductionCounters,              reductionCounters,        setWrenReductionCounters)           \
  COUNTERS( WrenPushReductionCounters,          pushCounters,             setWrenPushReductionCounters)
// clang-format on

/// For unused types of rows.
#define SIMULATOR_NOTHING(record, member, function)

#endif
