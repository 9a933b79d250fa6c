#include "discovery/live/node_queries.h"

#include <optional>

#include "discovery/live/captured_standard_error.h"
#include "discovery/live/subnet_query.h"
#include "discovery/payload_decoder.h"

namespace fabscan {

namespace {

/// The queries to one node. After two consecutive timeouts, a node is not queried again: each
/// further timeout would cost the full waiting time, for each of its ports.
class NodeQueries {
 public:
  /// `query` is null if the discovery was already stopped.
  NodeQueries(SubnetQuery* query, const LiveOptions& options, const portid& path,
              NodeFindings& node)
      : query_(query), options_(options), path_(path), node_(node) {}

  void AskAll() {
    const auto type = NodeTypeOf(Decode<SMP_NodeInfo>(node_.node_info).NodeType);
    if (!node_.description.read()) node_.description = AskDescription();
    if (type == IB_SW_NODE && !node_.switch_info.read()) {
      node_.switch_info = Ask(SubnetAttribute::kSwitchInfo, 0);
    }
    for (PortFindings& port : node_.ports) {
      if (!port.info.read()) AskPort(type, port);
    }
    const PortInfoExtendedOffer offer(node_);
    for (PortFindings& port : node_.ports) {
      if (offer.Has(port)) {
        port.extended = Ask(SubnetAttribute::kPortInfoExtended, port.number);
      }
      if (LacksPeer(type, port)) port.peer_failure = AskPeer(port.number);
    }
  }

 private:
  /// An empty description can be the device's answer, or a failed query of the scan.
  Answer AskDescription() { return Ask(SubnetAttribute::kNodeDescription, 0); }

  void AskPort(IBNodeType type, PortFindings& port) {
    port.info = Ask(SubnetAttribute::kPortInfo, port.number);
    port.scanned = type == IB_SW_NODE;
  }

  static bool LacksPeer(IBNodeType type, const PortFindings& port) {
    const bool external = port.number != 0 || type != IB_SW_NODE;
    return external && port.scanned && !port.peer && port.info.read() &&
           IsLinked(Decode<SMP_PortInfo>(port.info.payload));
  }

  Answer Ask(SubnetAttribute attribute, unsigned modifier) {
    if (query_ == nullptr || options_.stopped()) return Answer::Failed("interrupted");
    if (silences_ >= kSilencesEnough) {
      return Answer::Failed("not asked: two consecutive queries of this node timed out");
    }
    Answer answer = query_->Get(path_, attribute, modifier);
    silences_ = answer.reason == kTimedOut ? silences_ + 1 : 0;
    return answer;
  }

  std::string_view AskPeer(unsigned exit) {
    if (query_ == nullptr || options_.stopped()) return "interrupted";
    const Answer answer = query_->GetBehind(path_, exit, SubnetAttribute::kNodeInfo);
    return answer.read() ? "it answers now: discover again" : answer.reason;
  }

  static constexpr int kSilencesEnough = 2;

  SubnetQuery* query_;
  const LiveOptions& options_;
  const portid& path_;
  NodeFindings& node_;
  int silences_ = 0;
};

}  // namespace

void AskWhatTheScanDidNot(const LocalPort& port, const LiveOptions& options,
                          const std::vector<const portid*>& paths, FabricFindings& fabric) {
  // A detached scan still uses the port.
  std::optional<SubnetQuery> query;
  if (!options.stopped()) query.emplace(port, options);
  for (std::size_t i = 0; i < fabric.nodes.size(); ++i) {
    options.progress("nodes asked for the rest", i, fabric.nodes.size());
    const CapturedStandardError captured;
    NodeQueries(query ? &*query : nullptr, options, *paths[i], fabric.nodes[i]).AskAll();
  }
  options.progress("nodes asked for the rest", fabric.nodes.size(), fabric.nodes.size());
}

}  // namespace fabscan
