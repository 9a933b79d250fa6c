#include <gtest/gtest.h>

#include <map>

#include "testing/reduction_counters.h"

namespace fabscan {
namespace {

using Sets = std::map<uint32_t, const WrenReductionCounters*>;
using PortSets = std::map<uint8_t, Sets>;

TEST(ReductionCounterWriters, KeepTheCaseOfAPortWithoutABlock) {
  FabricBuilder fabric;
  const WrenReductionCounters zero = {};
  const auto text = [&](const PortSets& normal, const PortSets& special) {
    return fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
      dump.GenerateWrenReductionCounters(out, normal, special);
    });
  };
  EXPECT_EQ(text({}, {}), kNoNormalPort);
  EXPECT_EQ(text({}, {{2, {{0, &zero}}}}), kNoNormalPort);
  EXPECT_EQ(text({{1, {{0, &zero}}}}, {}), kNoSpecialPort);
  EXPECT_EQ(text({{65, {{1, &zero}, {2, nullptr}}}}, {{2, {}}, {200, {{0, nullptr}}}}), R"(
    const u_int8_t lean_pipe = 0x0F;
    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        switch (i) {
            case 2:
            break;
            case 200:
            break;
        default:
            {
            WrenReductCounters mad_buffer = {0};
            const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(65, 1, lean_pipe);
            if (p_ctr) {
                ib_wren_reduction_counters_t ctr = *p_ctr;
                WrenReductionCounters_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                mad_buffer.incoming_good_mc_read_req_pkt = 0x0;
                mad_buffer.incoming_good_mc_read_req_data = 0x0;
                mad_buffer.incoming_good_mc_write_req_pkt = 0x0;
                mad_buffer.incoming_good_mc_write_req_data = 0x0;
                mad_buffer.incoming_good_mc_read_resp_pkt = 0x0;
                mad_buffer.incoming_good_mc_read_resp_data = 0x0;
                mad_buffer.incoming_good_mc_write_resp_pkt = 0x0;
                mad_buffer.incoming_good_mc_write_resp_data = 0x0;
                mad_buffer.generated_mc_read_resp_pkt = 0x0;
                mad_buffer.dropped_pkt = 0x0;
                mad_buffer.trapped_pkt = 0x0;
                mad_buffer.wren_reduction_errors = 0x0;
                mad_buffer.wren_reduction_penalty_box_errors = 0x0;
                mad_buffer.port_wrr_local_alm_id_allocations = 0x0;
                mad_buffer.port_wrr_global_alm_id_allocations = 0x0;
                mad_buffer.sent_good_mc_pull_write_req_packet = 0x0;
                mad_buffer.sent_good_mc_pull_read_req_packet = 0x0;
                mad_buffer.generated_mc_write_resp_pkt = 0x0;
                mad_buffer.generated_mc_write_resp_data = 0x0;
                mad_buffer.generated_mc_read_resp_pkt = 0x0;
                mad_buffer.generated_mc_read_resp_data = 0x0;

                WrenReductionCounters_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                m_node->setWrenReductionCounters(65, 1, lean_pipe, &ctr);
            }
            }
        }
    })");
}

/// The arguments of all calls that fetch a counter set.
std::string Fetched(const std::string& text) {
  const std::string call = "m_node->getWrenReductionCounters(";
  std::string all;
  for (std::size_t at = 0; (at = text.find(call, at)) != std::string::npos;) {
    at += call.size();
    all += text.substr(at, text.find(", lean_pipe", at) - at) + "; ";
  }
  return all;
}

TEST(ReductionCounterWriters, TakeTheFirstOfSeveralNormalPorts) {
  FabricBuilder fabric;
  const WrenReductionCounters zero = {};
  EXPECT_EQ(Fetched(fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
              dump.GenerateWrenReductionCounters(
                  out, {{200, {{0, &zero}, {1, &zero}}}, {201, {{2, &zero}}}, {254, {{3, &zero}}}},
                  {{128, {{255, &zero}}}, {255, {{5, &zero}, {6, &zero}}}});
            })),
            "128, 255; 255, 5; 255, 6; 200, 0; 200, 1; ");
}

TEST(ReductionCounterWriters, NamePortsOfAnyNumber) {
  const std::pair<unsigned, unsigned> numbers[] = {
      {1, 2}, {127, 128}, {128, 127}, {254, 255}, {255, 254}};
  for (const auto& [normal_port, marked_port] : numbers) {
    FabricBuilder fabric;
    IBNode& node = fabric.Switch("S1", 255);
    fabric.Support(node, {55});
    fabric.Put<IB_ClassPortInfo>(node);
    for (const unsigned port : {normal_port, marked_port}) {
      auto& store = fabric.fabscan.fabric_extended_info;
      store.putMonitors(*node.Ports[port], 0);
      for (const u_int32_t index : {0U, 7U}) store.putCounters(*node.Ports[port], index);
    }
    node.Ports[marked_port]->setFNMPort(true);
    const std::string normal = std::to_string(normal_port);
    const std::string marked = std::to_string(marked_port);
    EXPECT_EQ(Fetched(fabric.Body(&SimInfoDumpCPP::GenerateWrenReductionCounters, node)),
              marked + ", 0; " + marked + ", 7; " + normal + ", 0; " + normal + ", 7; ");
  }
}

TEST(ReductionCounterWriters, WriteTheSetsOfAPortAtAnyIndent) {
  FabricBuilder fabric;
  const WrenReductionCounters counters = Counters(5);
  EXPECT_EQ(fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GenerateWrenReductionCounters(out, 3, 255, Sets{{0, nullptr}, {4000000000, &counters}});
  }),
            R"(
   {
   WrenReductCounters mad_buffer = {0};
   const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(255, 4000000000, lean_pipe);
   if (p_ctr) {
       ib_wren_reduction_counters_t ctr = *p_ctr;
       WrenReductionCounters_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

       mad_buffer.incoming_good_mc_read_req_pkt = 0xfedcba9876540501;
       mad_buffer.incoming_good_mc_read_req_data = 0xfedcba9876541501;
       mad_buffer.incoming_good_mc_write_req_pkt = 0xfedcba9876542501;
       mad_buffer.incoming_good_mc_write_req_data = 0xfedcba9876543501;
       mad_buffer.incoming_good_mc_read_resp_pkt = 0xfedcba9876544501;
       mad_buffer.incoming_good_mc_read_resp_data = 0xfedcba9876545501;
       mad_buffer.incoming_good_mc_write_resp_pkt = 0xfedcba9876546501;
       mad_buffer.incoming_good_mc_write_resp_data = 0xfedcba9876547501;
       mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548501;
       mad_buffer.dropped_pkt = 0xfedcba9876549501;
       mad_buffer.trapped_pkt = 0xfedcba987654a501;
       mad_buffer.wren_reduction_errors = 0xfedcba987654b501;
       mad_buffer.wren_reduction_penalty_box_errors = 0xfedcba987654c501;
       mad_buffer.port_wrr_local_alm_id_allocations = 0xfedcba987654d501;
       mad_buffer.port_wrr_global_alm_id_allocations = 0xfedcba987654e501;
       mad_buffer.sent_good_mc_pull_write_req_packet = 0xfedcba987654f501;
       mad_buffer.sent_good_mc_pull_read_req_packet = 0xfedcba9876550501;
       mad_buffer.generated_mc_write_resp_pkt = 0xfedcba9876551501;
       mad_buffer.generated_mc_write_resp_data = 0xfedcba9876552501;
       mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548501;
       mad_buffer.generated_mc_read_resp_data = 0xfedcba9876553501;

       WrenReductionCounters_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

       m_node->setWrenReductionCounters(255, 4000000000, lean_pipe, &ctr);
   }
   })");
}

TEST(ReductionCounterWriters, WriteTheReadResponsePacketsTwice) {
  FabricBuilder fabric;
  const WrenReductionCounters counters = Counters(5);
  EXPECT_EQ(fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GenerateWrenReductionCounters(out, 2, &counters);
  }),
            R"(
  mad_buffer.incoming_good_mc_read_req_pkt = 0xfedcba9876540501;
  mad_buffer.incoming_good_mc_read_req_data = 0xfedcba9876541501;
  mad_buffer.incoming_good_mc_write_req_pkt = 0xfedcba9876542501;
  mad_buffer.incoming_good_mc_write_req_data = 0xfedcba9876543501;
  mad_buffer.incoming_good_mc_read_resp_pkt = 0xfedcba9876544501;
  mad_buffer.incoming_good_mc_read_resp_data = 0xfedcba9876545501;
  mad_buffer.incoming_good_mc_write_resp_pkt = 0xfedcba9876546501;
  mad_buffer.incoming_good_mc_write_resp_data = 0xfedcba9876547501;
  mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548501;
  mad_buffer.dropped_pkt = 0xfedcba9876549501;
  mad_buffer.trapped_pkt = 0xfedcba987654a501;
  mad_buffer.wren_reduction_errors = 0xfedcba987654b501;
  mad_buffer.wren_reduction_penalty_box_errors = 0xfedcba987654c501;
  mad_buffer.port_wrr_local_alm_id_allocations = 0xfedcba987654d501;
  mad_buffer.port_wrr_global_alm_id_allocations = 0xfedcba987654e501;
  mad_buffer.sent_good_mc_pull_write_req_packet = 0xfedcba987654f501;
  mad_buffer.sent_good_mc_pull_read_req_packet = 0xfedcba9876550501;
  mad_buffer.generated_mc_write_resp_pkt = 0xfedcba9876551501;
  mad_buffer.generated_mc_write_resp_data = 0xfedcba9876552501;
  mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548501;
  mad_buffer.generated_mc_read_resp_data = 0xfedcba9876553501;)");
}

}  // namespace
}  // namespace fabscan
