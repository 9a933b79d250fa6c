#include "discovery/live/local_port.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <infiniband/umad.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <vector>

#include "discovery/live/live_discovery.h"

namespace fabscan {

namespace {

constexpr unsigned kPortStateActive = 4;
constexpr unsigned kPortStateInit = 2;

struct Candidate {
  LocalPort port;
  unsigned state = 0;
  std::string link_layer;

  std::string text() const { return fmt::format("{} port {}", port.channel_adapter, port.number); }
  bool IsInfiniBand() const { return link_layer != "Ethernet"; }
  /// Smaller is better.
  int rank() const {
    if (!IsInfiniBand()) return 3;
    if (state == kPortStateActive) return 0;
    return state >= kPortStateInit ? 1 : 2;
  }
};

void AddPortsOf(const char* adapter_name, std::vector<Candidate>& candidates) {
  umad_ca_t adapter;
  if (umad_get_ca(adapter_name, &adapter) < 0) return;
  for (int number = 0; number < UMAD_CA_MAX_PORTS; ++number) {
    const umad_port_t* port = adapter.ports[number];
    if (port == nullptr) continue;
    candidates.push_back({{adapter_name, port->portnum}, port->state, port->link_layer});
  }
  umad_release_ca(&adapter);
}

std::vector<Candidate> AllPorts() {
  std::vector<Candidate> candidates;
  char names[UMAD_MAX_DEVICES][UMAD_CA_NAME_LEN];
  const int count = umad_init() < 0 ? 0 : umad_get_cas_names(names, UMAD_MAX_DEVICES);
  for (int i = 0; i < count; ++i) AddPortsOf(names[i], candidates);
  return candidates;
}

std::string List(const std::vector<Candidate>& candidates) {
  std::vector<std::string> texts;
  texts.reserve(candidates.size());
  for (const Candidate& candidate : candidates) texts.push_back(candidate.text());
  return fmt::format("{}", fmt::join(texts, ", "));
}

/// Opens the port as every query will, to report errors early.
void CheckAccess(const Candidate& candidate) {
  errno = 0;
  const int handle = umad_open_port(candidate.port.channel_adapter.c_str(), candidate.port.number);
  if (handle >= 0) {
    umad_close_port(handle);
    return;
  }
  const int cause = errno != 0 ? errno : -handle;
  const bool forbidden = cause == EACCES || cause == EPERM;
  throw DiscoveryError(fmt::format(
      "{}: cannot open: {}; {}", candidate.text(), std::generic_category().message(cause),
      forbidden ? "run as root, or as a user who may access the umad devices in /dev/infiniband"
                : "is the module ib_umad loaded?"));
}

}  // namespace

LocalPort ChooseLocalPort(const std::string& channel_adapter, unsigned number) {
  const std::vector<Candidate> all = AllPorts();
  if (all.empty()) {
    throw DiscoveryError(
        "no InfiniBand adapter on this host; are the adapter's driver and ib_umad loaded?");
  }
  std::vector<Candidate> wanted = all;
  const auto keep = [&wanted](auto condition) {
    wanted.erase(std::remove_if(wanted.begin(), wanted.end(),
                                [&](const Candidate& candidate) { return !condition(candidate); }),
                 wanted.end());
  };
  if (!channel_adapter.empty()) {
    keep([&](const Candidate& one) { return one.port.channel_adapter == channel_adapter; });
    if (wanted.empty()) {
      throw DiscoveryError(
          fmt::format("no adapter '{}' on this host; available: {}", channel_adapter, List(all)));
    }
  }
  if (number != 0) {
    const std::string of_adapter = List(wanted);
    keep([&](const Candidate& one) { return one.port.number == static_cast<int>(number); });
    if (wanted.empty()) {
      throw DiscoveryError(fmt::format("no port {} on {}; available: {}", number,
                                       channel_adapter.empty() ? "any adapter" : channel_adapter,
                                       of_adapter));
    }
  }
  const auto best =
      std::min_element(wanted.begin(), wanted.end(),
                       [](const Candidate& a, const Candidate& b) { return a.rank() < b.rank(); });
  if (!best->IsInfiniBand()) {
    throw DiscoveryError(fmt::format("{}: its link layer is {}, not InfiniBand; available: {}",
                                     best->text(), best->link_layer, List(all)));
  }
  CheckAccess(*best);
  return best->port;
}

}  // namespace fabscan
