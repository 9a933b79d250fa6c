// What Generate takes from the heap does not grow with the nodes: none for one more of a kind.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <new>
#include <set>
#include <string>

#include "testing/fabric_builder.h"

namespace {

std::size_t allocations = 0;

}  // namespace

// This program's own, which count. Those for arrays and without exceptions come here as well. Not
// inlined: g++ 14 would see `new` paired with `free`, or `malloc` with `delete`, and warn.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace fabscan {
namespace {

constexpr unsigned kOfEachKind = 12;
// Longer than what a string holds without the heap.
constexpr char kLongName[] = "a node whose name is longer than any short string of the library ";

class Allocations : public ::testing::Test {
 protected:
  Allocations() {
    std::string name = (std::filesystem::temp_directory_path() / "fabscan-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
    fabric_.fabscan.setOutputFolder(folder_);
    for (unsigned i = 0; i < kOfEachKind; ++i) {
      Add(IB_SW_NODE, IB_NOT_SPECIAL_PORT);
      Add(IB_SW_NODE, IB_SPECIAL_PORT_AN);
      Add(IB_RTR_NODE, IB_NOT_SPECIAL_PORT);
      Add(IB_CA_NODE, IB_NOT_SPECIAL_PORT);
      Add(IB_CA_NODE, IB_SPECIAL_PORT_AN);
      Add(IB_CA_NODE, IB_SPECIAL_PORT_ROUTER);
      Add(IB_UNKNOWN_NODE_TYPE, IB_NOT_SPECIAL_PORT);
      fabric_.Switch(kLongName + std::to_string(i), 4);  // nothing collected
    }
  }
  ~Allocations() override { std::filesystem::remove_all(folder_); }

  template <class... Records, class Owner>
  void Fill(const Owner& owner) {
    (std::memset(&fabric_.Put<Records>(owner), 0x77, sizeof(Records)), ...);
  }

  /// With every attribute, whether the node serves it or not.
  void Add(IBNodeType type, IBSpecialPortType special) {
    constexpr capability_mask_t kEverything = {{~0U, ~0U, ~0U, ~0U}};
    const std::size_t number = fabric_.fabscan.discovered_fabric.nodeCount();
    IBNode& node = fabric_.Node(kLongName + std::to_string(1000 + number), type, 12);
    node.setSpecialNodeType(special);
    node.setAlternativeName(kLongName + std::to_string(number));
    fabric_.fabscan.capability_module.put(node, false, kEverything);
    fabric_.fabscan.capability_module.put(node, true, kEverything);
    Fill<SMP_NodeInfo, SMP_SwitchInfo, SMP_RouterInfo, SMP_ExtendedSwitchInfo,
         ib_extended_node_info, ib_private_lft_info, adaptive_routing_info, VendorSpec_GeneralInfo,
         CC_EnhancedCongestionInfo, CC_CongestionSwitchGeneralSettings, IB_ClassPortInfo,
         WrenReductionInfo>(node);
    auto& store = fabric_.fabscan.fabric_extended_info;
    for (IBPort* port : node.Ports) {
      if (port == nullptr) continue;
      Fill<SMP_PortInfo, SMP_PortInfoExtended, SMP_TarnExtPortInfo, WrenReductionPortInfo,
           WrenPushReductionCounters>(*port);
      store.putMonitors(*port, 0);
      store.putMonitors(*port, 1);
      for (unsigned set = 0; set < TesselExtendedInfo::kCounterSets; ++set) {
        std::memset(&store.putCounters(*port, set), 0x77, sizeof(WrenReductionCounters));
      }
      port->setFNMPort(port->num == 9);
      port->setFNM1Port(port->num == 10);
      port->setSpecialPort(port->num >= 11);
    }
  }

  /// Of the generation of so many nodes of each kind.
  std::size_t AllocationsFor(unsigned of_each_kind, std::uintmax_t& bytes) {
    std::set<uint64_t> guids;
    const auto& nodes = fabric_.fabscan.discovered_fabric.nodes();
    const std::size_t kinds = nodes.size() / kOfEachKind;
    for (std::size_t i = 0; i < of_each_kind * kinds; ++i) guids.insert(nodes[i].guid);
    SimInfoDumpCPP dump(fabric_.fabscan);
    const std::string prefix = "APrefixThatIsLongerThanAShortString";
    const std::size_t before = allocations;
    EXPECT_EQ(dump.Generate(prefix, guids), 0);
    const std::size_t taken = allocations - before;
    bytes = std::filesystem::file_size(fabric_.fabscan.outputPath());
    return taken;
  }

  FabricBuilder fabric_;
  std::string folder_;
};

TEST_F(Allocations, DoNotGrowWithTheNodes) {
  std::uintmax_t bytes_of_one = 0;
  std::uintmax_t bytes_of_all = 0;
  AllocationsFor(1, bytes_of_one);  // what the process and the facade take once
  const std::size_t for_one = AllocationsFor(1, bytes_of_one);
  EXPECT_GT(for_one, 0U);  // they are counted
  EXPECT_EQ(AllocationsFor(kOfEachKind, bytes_of_all), for_one);
  EXPECT_GT(bytes_of_all, (kOfEachKind - 1) * bytes_of_one);  // and the nodes were written
}

}  // namespace
}  // namespace fabscan
