#include <gtest/gtest.h>

#include "testing/reduction_counters.h"

namespace fabscan {
namespace {

constexpr auto kGenerateCounters =
    static_cast<FabricBuilder::Emitter>(&SimInfoDumpCPP::GenerateWrenReductionCounters);

TEST(ReductionCounters, GiveSpecialPortsACaseAndTheRestTheFirstNormalPort) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 12);
  PutCounters(fabric, node, 0, 0, Counters(9));  // port 0 is not visited
  PutCounters(fabric, node, 3, 0, Counters(1));
  PutCounters(fabric, node, 3, 6, Counters(2));
  PutCounters(fabric, node, 5, 0, Counters(9));  // a later normal port
  PutCounters(fabric, node, 10, 7, Counters(3));
  node.Ports[10]->setFNMPort(true);
  PutCounters(fabric, node, 11, 0, {});
  node.Ports[11]->setFNM1Port(true);
  PutCounters(fabric, node, 12, 1, Counters(4));
  node.Ports[12]->setSpecialPort(true);
  EXPECT_EQ(fabric.Body(kGenerateCounters, node), R"(
    const u_int8_t lean_pipe = 0x0F;
    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        switch (i) {
            case 10:
            {
            WrenReductCounters mad_buffer = {0};
            const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(10, 7, lean_pipe);
            if (p_ctr) {
                ib_wren_reduction_counters_t ctr = *p_ctr;
                WrenReductionCounters_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                mad_buffer.incoming_good_mc_read_req_pkt = 0xfedcba9876540301;
                mad_buffer.incoming_good_mc_read_req_data = 0xfedcba9876541301;
                mad_buffer.incoming_good_mc_write_req_pkt = 0xfedcba9876542301;
                mad_buffer.incoming_good_mc_write_req_data = 0xfedcba9876543301;
                mad_buffer.incoming_good_mc_read_resp_pkt = 0xfedcba9876544301;
                mad_buffer.incoming_good_mc_read_resp_data = 0xfedcba9876545301;
                mad_buffer.incoming_good_mc_write_resp_pkt = 0xfedcba9876546301;
                mad_buffer.incoming_good_mc_write_resp_data = 0xfedcba9876547301;
                mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548301;
                mad_buffer.dropped_pkt = 0xfedcba9876549301;
                mad_buffer.trapped_pkt = 0xfedcba987654a301;
                mad_buffer.wren_reduction_errors = 0xfedcba987654b301;
                mad_buffer.wren_reduction_penalty_box_errors = 0xfedcba987654c301;
                mad_buffer.port_wrr_local_alm_id_allocations = 0xfedcba987654d301;
                mad_buffer.port_wrr_global_alm_id_allocations = 0xfedcba987654e301;
                mad_buffer.sent_good_mc_pull_write_req_packet = 0xfedcba987654f301;
                mad_buffer.sent_good_mc_pull_read_req_packet = 0xfedcba9876550301;
                mad_buffer.generated_mc_write_resp_pkt = 0xfedcba9876551301;
                mad_buffer.generated_mc_write_resp_data = 0xfedcba9876552301;
                mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548301;
                mad_buffer.generated_mc_read_resp_data = 0xfedcba9876553301;

                WrenReductionCounters_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                m_node->setWrenReductionCounters(10, 7, lean_pipe, &ctr);
            }
            }
            break;
            case 11:
            {
            WrenReductCounters mad_buffer = {0};
            const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(11, 0, lean_pipe);
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

                m_node->setWrenReductionCounters(11, 0, lean_pipe, &ctr);
            }
            }
            break;
            case 12:
            {
            WrenReductCounters mad_buffer = {0};
            const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(12, 1, lean_pipe);
            if (p_ctr) {
                ib_wren_reduction_counters_t ctr = *p_ctr;
                WrenReductionCounters_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                mad_buffer.incoming_good_mc_read_req_pkt = 0xfedcba9876540401;
                mad_buffer.incoming_good_mc_read_req_data = 0xfedcba9876541401;
                mad_buffer.incoming_good_mc_write_req_pkt = 0xfedcba9876542401;
                mad_buffer.incoming_good_mc_write_req_data = 0xfedcba9876543401;
                mad_buffer.incoming_good_mc_read_resp_pkt = 0xfedcba9876544401;
                mad_buffer.incoming_good_mc_read_resp_data = 0xfedcba9876545401;
                mad_buffer.incoming_good_mc_write_resp_pkt = 0xfedcba9876546401;
                mad_buffer.incoming_good_mc_write_resp_data = 0xfedcba9876547401;
                mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548401;
                mad_buffer.dropped_pkt = 0xfedcba9876549401;
                mad_buffer.trapped_pkt = 0xfedcba987654a401;
                mad_buffer.wren_reduction_errors = 0xfedcba987654b401;
                mad_buffer.wren_reduction_penalty_box_errors = 0xfedcba987654c401;
                mad_buffer.port_wrr_local_alm_id_allocations = 0xfedcba987654d401;
                mad_buffer.port_wrr_global_alm_id_allocations = 0xfedcba987654e401;
                mad_buffer.sent_good_mc_pull_write_req_packet = 0xfedcba987654f401;
                mad_buffer.sent_good_mc_pull_read_req_packet = 0xfedcba9876550401;
                mad_buffer.generated_mc_write_resp_pkt = 0xfedcba9876551401;
                mad_buffer.generated_mc_write_resp_data = 0xfedcba9876552401;
                mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548401;
                mad_buffer.generated_mc_read_resp_data = 0xfedcba9876553401;

                WrenReductionCounters_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                m_node->setWrenReductionCounters(12, 1, lean_pipe, &ctr);
            }
            }
            break;
        default:
            {
            WrenReductCounters mad_buffer = {0};
            const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(3, 0, lean_pipe);
            if (p_ctr) {
                ib_wren_reduction_counters_t ctr = *p_ctr;
                WrenReductionCounters_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                mad_buffer.incoming_good_mc_read_req_pkt = 0xfedcba9876540101;
                mad_buffer.incoming_good_mc_read_req_data = 0xfedcba9876541101;
                mad_buffer.incoming_good_mc_write_req_pkt = 0xfedcba9876542101;
                mad_buffer.incoming_good_mc_write_req_data = 0xfedcba9876543101;
                mad_buffer.incoming_good_mc_read_resp_pkt = 0xfedcba9876544101;
                mad_buffer.incoming_good_mc_read_resp_data = 0xfedcba9876545101;
                mad_buffer.incoming_good_mc_write_resp_pkt = 0xfedcba9876546101;
                mad_buffer.incoming_good_mc_write_resp_data = 0xfedcba9876547101;
                mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548101;
                mad_buffer.dropped_pkt = 0xfedcba9876549101;
                mad_buffer.trapped_pkt = 0xfedcba987654a101;
                mad_buffer.wren_reduction_errors = 0xfedcba987654b101;
                mad_buffer.wren_reduction_penalty_box_errors = 0xfedcba987654c101;
                mad_buffer.port_wrr_local_alm_id_allocations = 0xfedcba987654d101;
                mad_buffer.port_wrr_global_alm_id_allocations = 0xfedcba987654e101;
                mad_buffer.sent_good_mc_pull_write_req_packet = 0xfedcba987654f101;
                mad_buffer.sent_good_mc_pull_read_req_packet = 0xfedcba9876550101;
                mad_buffer.generated_mc_write_resp_pkt = 0xfedcba9876551101;
                mad_buffer.generated_mc_write_resp_data = 0xfedcba9876552101;
                mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548101;
                mad_buffer.generated_mc_read_resp_data = 0xfedcba9876553101;

                WrenReductionCounters_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                m_node->setWrenReductionCounters(3, 0, lean_pipe, &ctr);
            }
            }
            {
            WrenReductCounters mad_buffer = {0};
            const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(3, 6, lean_pipe);
            if (p_ctr) {
                ib_wren_reduction_counters_t ctr = *p_ctr;
                WrenReductionCounters_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                mad_buffer.incoming_good_mc_read_req_pkt = 0xfedcba9876540201;
                mad_buffer.incoming_good_mc_read_req_data = 0xfedcba9876541201;
                mad_buffer.incoming_good_mc_write_req_pkt = 0xfedcba9876542201;
                mad_buffer.incoming_good_mc_write_req_data = 0xfedcba9876543201;
                mad_buffer.incoming_good_mc_read_resp_pkt = 0xfedcba9876544201;
                mad_buffer.incoming_good_mc_read_resp_data = 0xfedcba9876545201;
                mad_buffer.incoming_good_mc_write_resp_pkt = 0xfedcba9876546201;
                mad_buffer.incoming_good_mc_write_resp_data = 0xfedcba9876547201;
                mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548201;
                mad_buffer.dropped_pkt = 0xfedcba9876549201;
                mad_buffer.trapped_pkt = 0xfedcba987654a201;
                mad_buffer.wren_reduction_errors = 0xfedcba987654b201;
                mad_buffer.wren_reduction_penalty_box_errors = 0xfedcba987654c201;
                mad_buffer.port_wrr_local_alm_id_allocations = 0xfedcba987654d201;
                mad_buffer.port_wrr_global_alm_id_allocations = 0xfedcba987654e201;
                mad_buffer.sent_good_mc_pull_write_req_packet = 0xfedcba987654f201;
                mad_buffer.sent_good_mc_pull_read_req_packet = 0xfedcba9876550201;
                mad_buffer.generated_mc_write_resp_pkt = 0xfedcba9876551201;
                mad_buffer.generated_mc_write_resp_data = 0xfedcba9876552201;
                mad_buffer.generated_mc_read_resp_pkt = 0xfedcba9876548201;
                mad_buffer.generated_mc_read_resp_data = 0xfedcba9876553201;

                WrenReductionCounters_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&ctr));

                m_node->setWrenReductionCounters(3, 6, lean_pipe, &ctr);
            }
            }
        }
    })");
}

TEST(ReductionCounters, NeedTheirMonitorConfiguration) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 3);
  auto& store = fabric.fabscan.fabric_extended_info;
  for (std::size_t port = 1; port <= 3; ++port) store.putCounters(*node.Ports[port], 0);
  store.putMonitors(*node.Ports[1], 1);  // of the push counters
  store.putMonitors(*node.Ports[2], 0);
  store.putMonitors(*node.Ports[3], 0);
  node.Ports[3]->setSpecialPort(true);
  EXPECT_EQ(fabric.Body(kGenerateCounters, node), R"(
    const u_int8_t lean_pipe = 0x0F;
    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        switch (i) {
            case 3:
            {
            WrenReductCounters mad_buffer = {0};
            const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(3, 0, lean_pipe);
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

                m_node->setWrenReductionCounters(3, 0, lean_pipe, &ctr);
            }
            }
            break;
        default:
            {
            WrenReductCounters mad_buffer = {0};
            const ib_wren_reduction_counters_t *p_ctr = m_node->getWrenReductionCounters(2, 0, lean_pipe);
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

                m_node->setWrenReductionCounters(2, 0, lean_pipe, &ctr);
            }
            }
        }
    })");
}

TEST(ReductionCounters, StopTheBuildWithoutANormalOrASpecialPort) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 2);
  EXPECT_EQ(fabric.Body(kGenerateCounters, node), kNoNormalPort);
  PutCounters(fabric, node, 1, 0, {});
  EXPECT_EQ(fabric.Body(kGenerateCounters, node), kNoSpecialPort);
  node.Ports[1]->setFNM1Port(true);
  EXPECT_EQ(fabric.Body(kGenerateCounters, node), kNoNormalPort);
  node.Ports.assign(256, nullptr);
  node.numPorts = 255;
  EXPECT_EQ(fabric.Body(kGenerateCounters, node), kNoNormalPort);
}

TEST(ReductionCounters, SwitchWithoutReductionManagementIsNothingUnusual) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  fabric.Support(node, {54, 56});
  fabric.Put<IB_ClassPortInfo>(node);
  fabric.Put<WrenReductionInfo>(node);
  EXPECT_EQ(fabric.Body(kGenerateCounters, node),
            "// The node=S1 does not support Wren Reduction Management");
}

TEST(ReductionCounters, NeedsTheReductionManagersClassPortInfo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  fabric.Support(node, {55});
  EXPECT_EQ(fabric.Body(kGenerateCounters, node),
            "#error \"Failed to get WrenClassPortInfo mad for the node=S1");
}

}  // namespace
}  // namespace fabscan
