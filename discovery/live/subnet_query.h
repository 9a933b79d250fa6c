#ifndef FABSCAN_DISCOVERY_LIVE_SUBNET_QUERY_H
#define FABSCAN_DISCOVERY_LIVE_SUBNET_QUERY_H

#include "discovery/findings.h"
#include "discovery/live/live_discovery.h"
#include "discovery/live/local_port.h"

// Of the InfiniBand libraries, whose headers define macros that stay in source files.
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

/// Asks single devices for single attributes, one at a time.
class SubnetQuery {
 public:
  /// Throws DiscoveryError when the port cannot be opened.
  SubnetQuery(const LocalPort& port, const LiveOptions& options);
  ~SubnetQuery();
  SubnetQuery(const SubnetQuery&) = delete;
  SubnetQuery& operator=(const SubnetQuery&) = delete;

  /// The attribute of the device at the end of `path`; `modifier` is the port for those attributes
  /// that ports have. A failure's reason is "timed out", or the status that the device answered.
  Answer Get(const portid& path, SubnetAttribute attribute, unsigned modifier);
  /// The same of the device behind port `exit` of the one at the end of `path`.
  Answer GetBehind(const portid& path, unsigned exit, SubnetAttribute attribute);

 private:
  ibmad_port* port_;
};

/// The reason of an answer that did not come in time.
inline constexpr char kTimedOut[] = "timed out";

}  // namespace fabscan

#endif
