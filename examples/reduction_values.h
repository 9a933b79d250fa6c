#ifndef FABSCAN_EXAMPLES_REDUCTION_VALUES_H
#define FABSCAN_EXAMPLES_REDUCTION_VALUES_H

#include <infiniband/tessel/Fabric.h>

#include <vector>

#include "examples/port_values.h"

namespace fabscan {

/// The counters of a port of the reduction switch since they were last cleared.
struct PortTraffic {
  phys_port_t port;
  u_int32_t index;  // of the counter set
  u_int64_t reads;
  u_int64_t writes;
};

extern const std::vector<PortTraffic> kReductionTraffic;

/// `redirect_guid` is the port GUID of the aggregation node, `trap_guid` of the subnet manager.
IB_ClassPortInfo MakeReductionClassPortInfo(u_int64_t redirect_guid, u_int16_t redirect_lid,
                                            u_int64_t trap_guid, u_int16_t trap_lid);
WrenReductionInfo MakeReductionInfo();
WrenReductionPortInfo MakeReductionPortInfo(PortKind kind);
WrenReductionCounters MakeReductionCounters(const PortTraffic& traffic);
WrenPushReductionCounters MakePushCounters(phys_port_t port);

}  // namespace fabscan

#endif
