#include "discovery/findings.h"

#include "discovery/payload_decoder.h"

namespace fabscan {

namespace {

bool SaysSo(const PortFindings& port) {
  return port.info.read() && HasPortInfoExtended(port.info.payload);
}

}  // namespace

std::string_view FabricFindings::Description(std::size_t place) const {
  return DescriptionText(BytesOf(nodes[place].description.payload));
}

PortInfoExtendedOffer::PortInfoExtendedOffer(const NodeFindings& node)
    : is_switch_(NodeTypeOf(Decode<SMP_NodeInfo>(node.node_info).NodeType) == IB_SW_NODE) {
  const bool has_port_0 = !node.ports.empty() && node.ports.front().number == 0;
  of_all_ports_ = is_switch_ && has_port_0 && SaysSo(node.ports.front());
}

bool PortInfoExtendedOffer::Has(const PortFindings& port) const {
  if (is_switch_ && port.number == 0) return false;
  return of_all_ports_ || SaysSo(port);
}

}  // namespace fabscan
