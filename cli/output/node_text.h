#ifndef FABSCAN_CLI_NODE_TEXT_H
#define FABSCAN_CLI_NODE_TEXT_H

#include <infiniband/tessel/Fabric.h>

#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// `CA`, or `CA (AN)` for a special node.
std::string KindText(IBNodeType type, IBSpecialPortType special);

/// A port at the end of a link: `leaf-02/U1[3]`.
std::string PortText(std::string_view node_name, unsigned port);
/// The other end of the port's link, by GUID if its node is outside the fabric; empty without one.
std::string RemotePortText(const IBFabric& fabric, const IBPort& port);

/// Hexadecimal with at least `digits` digits; a dash for 0, which means not collected.
std::string IdText(u_int64_t id, int digits);

/// The first few names, and how many more there are: `S1, S2, S3 and 7 more`.
std::string NamesOf(const std::vector<const IBNode*>& nodes);

/// The reason why an attribute is absent: free text of a snapshot, made safe for a terminal.
std::string ReasonText(std::string_view reason);

/// `text`, or a dash if it is empty.
std::string OrDash(const std::string& text);

}  // namespace fabscan

#endif
