#include "findings.h"

#include "payload_decoder.h"

namespace fabscan {

namespace {

bool SaysSo(const PortFindings& port) {
  return port.info.read() && HasPortInfoExtended(port.info.payload);
}

}  // namespace

bool OffersPortInfoExtended(const NodeFindings& node, const PortFindings& port) {
  if (NodeTypeOf(DecodeNodeInfo(node.node_info).NodeType) != IB_SW_NODE) return SaysSo(port);
  if (port.number == 0) return false;
  const bool has_port_0 = !node.ports.empty() && node.ports.front().number == 0;
  return SaysSo(port) || (has_port_0 && SaysSo(node.ports.front()));
}

}  // namespace fabscan
