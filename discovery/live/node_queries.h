#ifndef FABSCAN_DISCOVERY_LIVE_NODE_QUERIES_H
#define FABSCAN_DISCOVERY_LIVE_NODE_QUERIES_H

#include <vector>

#include "discovery/findings.h"
#include "discovery/live/live_discovery.h"
#include "discovery/live/local_port.h"

struct portid;

namespace fabscan {

/// Completes the findings of a scan by querying devices one by one: repeats failed queries of the
/// scan, to get the answer or the reason; reads PortInfo of adapter ports that the scan did not
/// traverse, and PortInfoExtended of the ports that support it. `paths` are the directed routes to
/// the nodes of `fabric`. When stopped, the remaining attributes are absent as interrupted.
void AskWhatTheScanDidNot(const LocalPort& port, const LiveOptions& options,
                          const std::vector<const portid*>& paths, FabricFindings& fabric);

}  // namespace fabscan

#endif
