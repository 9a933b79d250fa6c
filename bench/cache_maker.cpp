#include "bench/cache_maker.h"

#include <fmt/format.h>

#include "bench/numbers.h"
#include "discovery/testing/cache_builder.h"

namespace fabscan {

namespace {

constexpr std::uint64_t kFirstSwitchGuid = 0x5a1e0c0300a00000;
constexpr std::uint64_t kFirstAdapterGuid = 0x5a1e0c0300d00000;

/// Gives the port some answer, in which the device offers PortInfoExtended.
void FillPort(CacheBuilder::Port& port, Numbers& numbers) {
  port.info = numbers.Fill<Payload>();
  WriteBits(port.info, 160 + 31 - 15, 1, 1);  // CapMsk: there is a second mask
  WriteBits(port.info, 480 + 15 - 1, 1, 1);   // CapMsk2: PortInfoExtended
  WriteBits(port.info, 260, 4, IB_PORT_STATE_DOWN);
  WriteBits(port.info, 264, 4, 2);  // polling
}

}  // namespace

std::string MakeCache(const FabricShape& shape) {
  Numbers numbers(shape.seed);
  CacheBuilder builder;
  for (unsigned i = 0; i < shape.switches; ++i) {
    CacheBuilder::Node& node =
        builder.Add(kFirstSwitchGuid + i, IB_SW_NODE, static_cast<u_int8_t>(shape.ports),
                    fmt::format("switch-{:05}", i));
    node.switch_info = numbers.Fill<Payload>();
    for (unsigned number = 0; number <= shape.ports; ++number) {
      FillPort(CacheBuilder::AddPort(node, static_cast<u_int8_t>(number)), numbers);
    }
  }
  for (unsigned i = 0; i < shape.adapters; ++i) {
    // Two GUIDs apart: a port's GUID is its node's plus its number.
    CacheBuilder::Node& node = builder.Add(kFirstAdapterGuid + 2 * std::uint64_t{i}, IB_CA_NODE, 1,
                                           fmt::format("node{:06} HCA-1", i));
    FillPort(CacheBuilder::AddPort(node, 1), numbers);
  }

  // Adapters use the first ports of all switches; the other ports join neighbouring switches.
  const auto switch_port = [&](std::size_t number, std::size_t of) -> CacheBuilder::Port& {
    return builder.nodes()[of % shape.switches].ports[number];
  };
  for (unsigned i = 0; i < shape.adapters && i / shape.switches < shape.ports; ++i) {
    CacheBuilder::Link(builder.nodes()[shape.switches + i].ports[0],
                       switch_port(1 + i / shape.switches, i));
  }
  const unsigned taken = (shape.adapters + shape.switches - 1) / shape.switches;
  for (unsigned number = taken + 1; number < shape.ports; number += 2) {
    for (unsigned i = 0; i < shape.switches; ++i) {
      CacheBuilder::Link(switch_port(number, i), switch_port(number + 1, i + 1));
    }
  }
  return builder.Bytes();
}

}  // namespace fabscan
