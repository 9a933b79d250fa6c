#include "cli/output/node_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "model/guid_text.h"
#include "model/harmless_name.h"
#include "model/words.h"

namespace fabscan {

std::string KindText(IBNodeType type, IBSpecialPortType special) {
  std::string text(WordFor(kNodeTypeWords, type));
  if (special != IB_NOT_SPECIAL_PORT) {
    text += fmt::format(" ({})", WordFor(kSpecialNodeWords, special));
  }
  return text;
}

std::string PortText(std::string_view node_name, unsigned port) {
  return fmt::format("{}[{}]", node_name, port);
}

std::string RemotePortText(const IBFabric& fabric, const IBPort& port) {
  const std::optional<RemotePort> remote = port.getRemotePort();
  if (!remote) return {};
  const IBNode* node = fabric.getNodeByGuid(remote->node_guid);
  if (node != nullptr) return PortText(node->name, remote->number);
  return PortText(GuidText(remote->node_guid), remote->number) + " outside";
}

std::string IdText(u_int64_t id, int digits) {
  return id == 0 ? "-" : fmt::format("0x{:0{}x}", id, digits);
}

std::string OrDash(const std::string& text) { return text.empty() ? "-" : text; }

std::string ReasonText(std::string_view reason) {
  return reason.empty() ? "without a reason" : HarmlessName(reason);
}

std::string NamesOf(const std::vector<const IBNode*>& nodes) {
  constexpr std::size_t kMaxNamed = 3;
  std::string names;
  for (std::size_t i = 0; i < std::min(nodes.size(), kMaxNamed); ++i) {
    names += fmt::format("{}{}", i == 0 ? "" : ", ", nodes[i]->name);
  }
  if (nodes.size() > kMaxNamed) names += fmt::format(" and {} more", nodes.size() - kMaxNamed);
  return names;
}

}  // namespace fabscan
