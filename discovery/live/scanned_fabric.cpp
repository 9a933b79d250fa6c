#include "discovery/live/scanned_fabric.h"

#include <infiniband/ibnetdisc.h>

#include <string_view>
#include <tuple>

#include "discovery/payload_decoder.h"

namespace fabscan {

namespace {

Payload PayloadOf(const void* bytes) {
  return fabscan::PayloadOf({static_cast<const char*>(bytes), std::tuple_size_v<Payload>});
}

/// An attribute that the scan did not read is all zeros here.
Answer AnswerOf(const void* bytes) {
  const Payload payload = PayloadOf(bytes);
  return payload == Payload{} ? Answer{} : Answer::Read(payload);
}

PortFindings FindingsOf(const ibnd_node_t& node, int number) {
  PortFindings findings;
  findings.number = static_cast<u_int8_t>(number);
  const ibnd_port_t* port = node.ports[number];
  if (port == nullptr) return findings;
  findings.info = Answer::Read(PayloadOf(port->info));
  findings.scanned = true;
  findings.guid = port->guid;
  if (const ibnd_port_t* peer = port->remoteport; peer != nullptr && peer->node != nullptr) {
    findings.peer = RemotePort{peer->node->guid, static_cast<u_int8_t>(peer->portnum)};
  }
  return findings;
}

NodeFindings FindingsOf(const ibnd_node_t& node) {
  NodeFindings findings;
  findings.guid = node.guid;
  findings.node_info = PayloadOf(node.info);
  findings.description = AnswerOf(node.nodedesc);
  const bool is_switch = NodeTypeOf(static_cast<unsigned>(node.type)) == IB_SW_NODE;
  if (is_switch) findings.switch_info = AnswerOf(node.switchinfo);
  for (int number = is_switch ? 0 : 1; number <= node.numports; ++number) {
    findings.ports.push_back(FindingsOf(node, number));
  }
  return findings;
}

}  // namespace

void ScannedFabric::Destroy::operator()(ibnd_fabric* fabric) const { ibnd_destroy_fabric(fabric); }

ScannedFabric::ScannedFabric(const LocalPort& port, const LiveOptions& options, unsigned max_hops) {
  ibnd_config config = {};
  config.max_smps = options.outstanding;
  config.max_hops = max_hops;
  config.timeout_ms = options.timeout_ms;
  config.retries = std::max(options.retries, 1U);  // 0 would be the library's default
  std::string adapter = port.channel_adapter;
  fabric_.reset(ibnd_discover_fabric(adapter.data(), port.number, nullptr, &config));
}

FabricFindings ScannedFabric::Findings() const {
  FabricFindings findings;
  for (const ibnd_node_t* node = fabric_->nodes; node != nullptr; node = node->next) {
    findings.nodes.push_back(FindingsOf(*node));
  }
  return findings;
}

std::vector<const portid*> ScannedFabric::Paths() const {
  std::vector<const portid*> paths;
  for (const ibnd_node_t* node = fabric_->nodes; node != nullptr; node = node->next) {
    paths.push_back(&node->path_portid);
  }
  return paths;
}

std::size_t ScannedFabric::NodeCount() const { return Paths().size(); }

}  // namespace fabscan
