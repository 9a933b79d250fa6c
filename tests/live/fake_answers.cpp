// A preloaded library for tests: answers selected subnet management queries instead of the devices,
// or withholds the answers, and simulates the ports of this host. It sits between the InfiniBand
// libraries and libibumad.
//
// FABSCAN_FAKE_RULES     rules ATTRIBUTE:MODIFIER:WHAT separated by commas; ATTRIBUTE in hex,
//                        MODIFIER a number or *, WHAT one of answer, refuse, silence, wait (a
//                        long silence), once (one silence, then as without a rule),
//                        unsent (the query cannot be sent); the first matching rule applies
// FABSCAN_FAKE_HOPS      the rules apply to devices at least this many hops away
// FABSCAN_FAKE_OFFER     set: every PortInfo reports support for PortInfoExtended
// FABSCAN_FAKE_PORTS     the ports of this host, ADAPTER:PORT:STATE:LAYER separated by commas,
//                        grouped by adapter; port 0 is an adapter that has disappeared
// FABSCAN_FAKE_NO_UMAD   set: libibumad cannot be initialised
// FABSCAN_FAKE_FORBID    no port can be opened: the error number, 0 for none
// FABSCAN_FAKE_OPENS     number of times a port can be opened before that
// FABSCAN_FAKE_CONSOLE   "FIFO COMMAND": before the first NodeInfo query over two hops or more,
//                        sends this console command to the simulator, and waits for its effect

#include <dlfcn.h>
#include <fcntl.h>
#include <infiniband/umad.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kMadBytes = 256;
constexpr std::size_t kPayload = 64;  // offset and length
constexpr unsigned kNodeInfo = 0x11;
constexpr unsigned kPortInfo = 0x15;
constexpr unsigned char kGetResponse = 0x81;
constexpr unsigned char kOnTheWayBack = 0x80;
constexpr unsigned char kRefusal = 0x0c;  // method or attribute not supported
constexpr unsigned kWaitSeconds = 20;
constexpr useconds_t kConsoleMicroseconds = 300000;

struct Reply {
  int agent = 0;
  unsigned status = 0;  // status of the user MAD: 0 or ETIMEDOUT
  unsigned wait = 0;    // in seconds
  unsigned char mad[kMadBytes] = {};
};

struct FakePort {
  std::string adapter;
  int number = 0;
  unsigned state = 0;
  std::string layer;
};

std::deque<Reply> waiting;

template <class Function>
Function* Next(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

unsigned AttributeOf(const unsigned char* mad) { return mad[16] * 256U + mad[17]; }
unsigned ModifierOf(const unsigned char* mad) { return mad[22] * 256U + mad[23]; }
unsigned HopsOf(const unsigned char* mad) { return mad[7]; }

/// The action for this query; empty if no rule matches.
std::string FindRule(const unsigned char* mad) {
  const char* hops = std::getenv("FABSCAN_FAKE_HOPS");
  if (hops != nullptr && HopsOf(mad) < static_cast<unsigned>(std::atoi(hops))) return {};
  const char* rules = std::getenv("FABSCAN_FAKE_RULES");
  while (rules != nullptr && *rules != '\0') {
    unsigned attribute = 0;
    char modifier[16];
    char what[16];
    if (std::sscanf(rules, "%x:%15[^:]:%15[^,]", &attribute, modifier, what) == 3 &&
        attribute == AttributeOf(mad) &&
        (modifier[0] == '*' || std::to_string(ModifierOf(mad)) == modifier)) {
      return what;
    }
    rules = std::strchr(rules, ',');
    if (rules != nullptr) ++rules;
  }
  return {};
}

/// The data of a simulated answer: each 16-bit word has its index from 1 on, then the port number.
void FillPayload(unsigned char* mad) {
  for (std::size_t word = 0; word < kPayload / 2; ++word) {
    mad[kPayload + 2 * word] = static_cast<unsigned char>(word + 1);
    mad[kPayload + 2 * word + 1] = static_cast<unsigned char>(ModifierOf(mad));
  }
}

void QueueReply(const unsigned char* query, int agent, const std::string& what) {
  Reply reply;
  reply.agent = agent;
  std::memcpy(reply.mad, query, kMadBytes);
  if (what == "silence" || what == "wait" || what == "once") {
    reply.status = ETIMEDOUT;
    reply.wait = what == "wait" ? kWaitSeconds : 0;
  } else {
    reply.mad[3] = kGetResponse;
    reply.mad[4] = kOnTheWayBack;
    if (what == "refuse") {
      reply.mad[5] = kRefusal;
    } else {
      FillPayload(reply.mad);
    }
  }
  waiting.push_back(reply);
}

/// Whether a rule for one query has been used.
bool HeldBefore() {
  static bool held = false;
  const bool before = held;
  held = true;
  return before;
}

std::vector<FakePort> FakePorts() {
  std::vector<FakePort> ports;
  const char* text = std::getenv("FABSCAN_FAKE_PORTS");
  while (text != nullptr && *text != '\0') {
    char adapter[UMAD_CA_NAME_LEN];
    char layer[16];
    FakePort port;
    if (std::sscanf(text, "%19[^:]:%d:%u:%15[^,]", adapter, &port.number, &port.state, layer) ==
        4) {
      port.adapter = adapter;
      port.layer = layer;
      ports.push_back(port);
    }
    text = std::strchr(text, ',');
    if (text != nullptr) ++text;
  }
  return ports;
}

void UseConsoleOnce(const unsigned char* mad) {
  static bool used = false;
  const char* console = std::getenv("FABSCAN_FAKE_CONSOLE");
  if (used || console == nullptr || AttributeOf(mad) != kNodeInfo || HopsOf(mad) < 2) return;
  used = true;
  const std::string text = console;
  const std::size_t blank = text.find(' ');
  const int file = open(text.substr(0, blank).c_str(), O_WRONLY);
  if (file < 0) return;
  dprintf(file, "%s\n", text.c_str() + blank + 1);
  close(file);
  usleep(kConsoleMicroseconds);
}

}  // namespace

extern "C" int umad_init() {
  if (std::getenv("FABSCAN_FAKE_NO_UMAD") != nullptr) return -1;
  return Next(&umad_init, "umad_init")();
}

extern "C" int umad_get_cas_names(char names[][UMAD_CA_NAME_LEN], int most) {
  const std::vector<FakePort> ports = FakePorts();
  if (ports.empty()) return Next(&umad_get_cas_names, "umad_get_cas_names")(names, most);
  int count = 0;
  for (const FakePort& port : ports) {
    if (count > 0 && port.adapter == names[count - 1]) continue;
    if (count < most) std::strcpy(names[count++], port.adapter.c_str());
  }
  return count;
}

extern "C" int umad_get_ca(const char* name, umad_ca_t* adapter) {
  const std::vector<FakePort> ports = FakePorts();
  if (ports.empty()) return Next(&umad_get_ca, "umad_get_ca")(name, adapter);
  *adapter = {};
  for (const FakePort& port : ports) {
    if (port.adapter != name) continue;
    if (port.number == 0) return -ENODEV;
    auto* made = new umad_port_t{};
    made->portnum = port.number;
    made->state = port.state;
    std::strcpy(made->link_layer, port.layer.c_str());
    adapter->ports[port.number] = made;
  }
  return 0;
}

extern "C" int umad_release_ca(umad_ca_t* adapter) {
  if (FakePorts().empty()) return Next(&umad_release_ca, "umad_release_ca")(adapter);
  for (const umad_port_t* port : adapter->ports) delete port;
  return 0;
}

extern "C" int umad_open_port(const char* ca_name, int portnum) {
  static int opened = 0;
  const char* error = std::getenv("FABSCAN_FAKE_FORBID");
  const char* opens = std::getenv("FABSCAN_FAKE_OPENS");
  if (error == nullptr || (opens != nullptr && opened++ < std::atoi(opens))) {
    return Next(&umad_open_port, "umad_open_port")(ca_name, portnum);
  }
  errno = std::atoi(error);
  return -EIO;
}

extern "C" int umad_send(int portid, int agentid, void* umad, int length, int timeout_ms,
                         int retries) {
  const auto* mad = static_cast<const unsigned char*>(umad_get_mad(umad));
  UseConsoleOnce(mad);
  const std::string what = FindRule(mad);
  if (what == "unsent") {
    errno = ENOBUFS;
    return -EIO;
  }
  if (what.empty() || (what == "once" && HeldBefore())) {
    return Next(&umad_send, "umad_send")(portid, agentid, umad, length, timeout_ms, retries);
  }
  QueueReply(mad, agentid, what);
  return 0;
}

extern "C" int umad_recv(int portid, void* umad, int* length, int timeout_ms) {
  auto* mad = static_cast<unsigned char*>(umad_get_mad(umad));
  if (!waiting.empty()) {
    if (sleep(waiting.front().wait) != 0) return -EINTR;
    const Reply reply = waiting.front();
    waiting.pop_front();
    auto* header = static_cast<ib_user_mad_t*>(umad);
    header->agent_id = static_cast<unsigned>(reply.agent);
    header->status = reply.status;
    std::memcpy(mad, reply.mad, kMadBytes);
    *length = static_cast<int>(kMadBytes);
    return reply.agent;
  }
  const int agent = Next(&umad_recv, "umad_recv")(portid, umad, length, timeout_ms);
  if (agent >= 0 && std::getenv("FABSCAN_FAKE_OFFER") != nullptr && AttributeOf(mad) == kPortInfo) {
    mad[kPayload + 22] |= 0x80;  // CapMsk: CapMsk2 is supported
    mad[kPayload + 61] |= 0x02;  // CapMsk2: PortInfoExtended is supported
  }
  return agent;
}
