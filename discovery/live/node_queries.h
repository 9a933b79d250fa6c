#ifndef FABSCAN_DISCOVERY_LIVE_NODE_QUERIES_H
#define FABSCAN_DISCOVERY_LIVE_NODE_QUERIES_H

#include <vector>

#include "discovery/findings.h"
#include "discovery/live/live_discovery.h"
#include "discovery/live/local_port.h"

struct portid;

namespace fabscan {

/// Completes what a scan found, asking the devices one by one: what the scan's queries did not get,
/// to have it after all or to know why not; PortInfo of those ports of adapters that the scan did
/// not come by; PortInfoExtended of the ports that have it. `paths` are the ways to the nodes of
/// `fabric`. When stopped, what is left is noted as interrupted.
void AskWhatTheScanDidNot(const LocalPort& port, const LiveOptions& options,
                          const std::vector<const portid*>& paths, FabricFindings& fabric);

}  // namespace fabscan

#endif
