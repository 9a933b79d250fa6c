#ifndef FABSCAN_DISCOVERY_LIVE_SUBNET_QUERY_H
#define FABSCAN_DISCOVERY_LIVE_SUBNET_QUERY_H

#include "discovery/findings.h"
#include "discovery/live/live_discovery.h"
#include "discovery/live/local_port.h"

// Types of the InfiniBand libraries; their headers define macros, so only source files include
// them.
struct ibmad_port;
struct portid;

namespace fabscan {

enum class SubnetAttribute : unsigned {
  kNodeDescription = 0x10,
  kNodeInfo = 0x11,
  kSwitchInfo = 0x12,
  kPortInfo = 0x15,
  kPortInfoExtended = 0x33,
};

/// Queries single attributes of single devices, one by one.
class SubnetQuery {
 public:
  /// Throws DiscoveryError if the port cannot be opened.
  SubnetQuery(const LocalPort& port, const LiveOptions& options);
  ~SubnetQuery();
  SubnetQuery(const SubnetQuery&) = delete;
  SubnetQuery& operator=(const SubnetQuery&) = delete;

  /// Reads the attribute of the device at the end of `path`; for port attributes, `modifier` is the
  /// port. The reason of a failure is "timed out", or the status that the device returned.
  Answer Get(const portid& path, SubnetAttribute attribute, unsigned modifier);
  /// Does the same for the device behind port `exit` of the one at the end of `path`.
  Answer GetBehind(const portid& path, unsigned exit, SubnetAttribute attribute);

 private:
  ibmad_port* port_;
};

/// The reason of a query without an answer.
inline constexpr char kTimedOut[] = "timed out";

}  // namespace fabscan

#endif
