#include <gtest/gtest.h>

#include <map>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

constexpr auto kGeneratePushCounters =
    static_cast<FabricBuilder::Emitter>(&SimInfoDumpCPP::GenerateWrenPushReductionCounters);

constexpr char kNoDefault[] =
    "#error \"Failed to dump WrenPushReductionCountersInfo MAD. Null pointer is provided.\"";
constexpr char kNoSpecialPort[] =
    "#error \"Failed to dump WrenPushReductionCountersInfo MAD. "
    "Special port data is not provided.\"";

/// Counters that differ from the others in every number.
WrenPushReductionCounters Counters(u_int16_t port_select, u_int16_t mlid, unsigned k) {
  const u_int64_t step = k * u_int64_t{0x100};
  WrenPushReductionCounters counters = {};
  counters.port_select = port_select;
  counters.mlid = mlid;
  counters.counter_select = 0xffffffff;
  counters.incoming_good_push_gpu_ack_packets = 0xfedcba9876540001 + step;
  counters.incoming_good_push_gpu_ack_data = 0xfedcba9876541001 + step;
  counters.incoming_good_push_gpu_wr_req_packets = 0xfedcba9876542001 + step;
  counters.incoming_good_push_gpu_wr_req_data = 0xfedcba9876543001 + step;
  counters.generated_push_switch_ack_packets = 0xfedcba9876544001 + step;
  counters.generated_push_switch_ack_data = 0xfedcba9876545001 + step;
  counters.generated_push_switch_wr_req_packets = 0xfedcba9876546001 + step;
  counters.dropped_push_packets = 0xfedcba9876547001 + step;
  counters.trapped_push_packets = 0xfedcba9876548001 + step;
  counters.jfto_event = 0xfedcba9876549001 + step;
  counters.sent_push_switch_wr_req_packets = 0xfedcba987654a001 + step;
  counters.reduction_errors = 0xfedcba987654b001 + step;
  counters.dup_error = 0xfedcba987654c001 + step;
  counters.mlid_error = 0xfedcba987654d001 + step;
  counters.ingress_amap_errors = 0xfedcba987654e001 + step;
  counters.alm_error_type0 = 0xfedcba987654f001 + step;
  counters.alm_error_type1 = 0xfedcba9876550001 + step;
  return counters;
}

IBNode& ReductionSwitch(FabricBuilder& fabric, phys_port_t ports) {
  IBNode& node = fabric.Switch("S1", ports);
  fabric.Support(node, {55});
  fabric.Put<IB_ClassPortInfo>(node);
  return node;
}

void PutCounters(FabricBuilder& fabric, const IBNode& node, std::size_t port,
                 const WrenPushReductionCounters& counters) {
  fabric.fabscan.fabric_extended_info.putMonitors(*node.Ports[port], 1);
  fabric.PutAt<WrenPushReductionCounters>(node, port) = counters;
}

TEST(PushReductionCounters, NameThePortAndMLIDOfTheRecord) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 12);
  PutCounters(fabric, node, 0, Counters(9, 9, 9));  // port 0 is not visited
  PutCounters(fabric, node, 2, Counters(5, 0xC001, 1));
  PutCounters(fabric, node, 3, Counters(9, 9, 9));  // a later normal port
  PutCounters(fabric, node, 10, Counters(65, 0xffff, 2));
  node.Ports[10]->setFNMPort(true);
  PutCounters(fabric, node, 11, Counters(65535, 0, 3));
  node.Ports[11]->setFNM1Port(true);
  PutCounters(fabric, node, 12, {});
  node.Ports[12]->setSpecialPort(true);
  EXPECT_EQ(fabric.Body(kGeneratePushCounters, node),
            R"(    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        switch (i) {
        case 10:
            WrenPushReductionCounters mad_buffer = {0};
            const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(65, 65535);
            if (p_ctr) {
                WrenPushReductionCounters_view_t wrapper = *p_ctr;
                wrapper.set_incoming_good_push_gpu_ack_packets(0xfedcba9876540201);
                wrapper.set_incoming_good_push_gpu_ack_data(0xfedcba9876541201);
                wrapper.set_incoming_good_push_gpu_wr_req_packets(0xfedcba9876542201);
                wrapper.set_incoming_good_push_gpu_wr_req_data(0xfedcba9876543201);
                wrapper.set_generated_push_switch_ack_packets(0xfedcba9876544201);
                wrapper.set_generated_push_switch_ack_data(0xfedcba9876545201);
                wrapper.set_generated_push_switch_wr_req_packets(0xfedcba9876546201);
                wrapper.set_dropped_push_packets(0xfedcba9876547201);
                wrapper.set_trapped_push_packets(0xfedcba9876548201);
                wrapper.set_jfto_event(0xfedcba9876549201);
                wrapper.set_sent_push_switch_wr_req_packets(0xfedcba987654a201);
                wrapper.set_reduction_errors(0xfedcba987654b201);
                wrapper.set_dup_error(0xfedcba987654c201);
                wrapper.set_mlid_error(0xfedcba987654d201);
                wrapper.set_ingress_amap_errors(0xfedcba987654e201);
                wrapper.set_alm_error_type0(0xfedcba987654f201);
                wrapper.set_alm_error_type1(0xfedcba9876550201);

                m_node->setWrenReductionCounters(65, 65535, &wrapper);
            }
            break;
        case 11:
            WrenPushReductionCounters mad_buffer = {0};
            const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(65535, 0);
            if (p_ctr) {
                WrenPushReductionCounters_view_t wrapper = *p_ctr;
                wrapper.set_incoming_good_push_gpu_ack_packets(0xfedcba9876540301);
                wrapper.set_incoming_good_push_gpu_ack_data(0xfedcba9876541301);
                wrapper.set_incoming_good_push_gpu_wr_req_packets(0xfedcba9876542301);
                wrapper.set_incoming_good_push_gpu_wr_req_data(0xfedcba9876543301);
                wrapper.set_generated_push_switch_ack_packets(0xfedcba9876544301);
                wrapper.set_generated_push_switch_ack_data(0xfedcba9876545301);
                wrapper.set_generated_push_switch_wr_req_packets(0xfedcba9876546301);
                wrapper.set_dropped_push_packets(0xfedcba9876547301);
                wrapper.set_trapped_push_packets(0xfedcba9876548301);
                wrapper.set_jfto_event(0xfedcba9876549301);
                wrapper.set_sent_push_switch_wr_req_packets(0xfedcba987654a301);
                wrapper.set_reduction_errors(0xfedcba987654b301);
                wrapper.set_dup_error(0xfedcba987654c301);
                wrapper.set_mlid_error(0xfedcba987654d301);
                wrapper.set_ingress_amap_errors(0xfedcba987654e301);
                wrapper.set_alm_error_type0(0xfedcba987654f301);
                wrapper.set_alm_error_type1(0xfedcba9876550301);

                m_node->setWrenReductionCounters(65535, 0, &wrapper);
            }
            break;
        case 12:
            WrenPushReductionCounters mad_buffer = {0};
            const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(0, 0);
            if (p_ctr) {
                WrenPushReductionCounters_view_t wrapper = *p_ctr;
                wrapper.set_incoming_good_push_gpu_ack_packets(0x0);
                wrapper.set_incoming_good_push_gpu_ack_data(0x0);
                wrapper.set_incoming_good_push_gpu_wr_req_packets(0x0);
                wrapper.set_incoming_good_push_gpu_wr_req_data(0x0);
                wrapper.set_generated_push_switch_ack_packets(0x0);
                wrapper.set_generated_push_switch_ack_data(0x0);
                wrapper.set_generated_push_switch_wr_req_packets(0x0);
                wrapper.set_dropped_push_packets(0x0);
                wrapper.set_trapped_push_packets(0x0);
                wrapper.set_jfto_event(0x0);
                wrapper.set_sent_push_switch_wr_req_packets(0x0);
                wrapper.set_reduction_errors(0x0);
                wrapper.set_dup_error(0x0);
                wrapper.set_mlid_error(0x0);
                wrapper.set_ingress_amap_errors(0x0);
                wrapper.set_alm_error_type0(0x0);
                wrapper.set_alm_error_type1(0x0);

                m_node->setWrenReductionCounters(0, 0, &wrapper);
            }
            break;
        default:
            WrenPushReductionCounters mad_buffer = {0};
            const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(5, 49153);
            if (p_ctr) {
                WrenPushReductionCounters_view_t wrapper = *p_ctr;
                wrapper.set_incoming_good_push_gpu_ack_packets(0xfedcba9876540101);
                wrapper.set_incoming_good_push_gpu_ack_data(0xfedcba9876541101);
                wrapper.set_incoming_good_push_gpu_wr_req_packets(0xfedcba9876542101);
                wrapper.set_incoming_good_push_gpu_wr_req_data(0xfedcba9876543101);
                wrapper.set_generated_push_switch_ack_packets(0xfedcba9876544101);
                wrapper.set_generated_push_switch_ack_data(0xfedcba9876545101);
                wrapper.set_generated_push_switch_wr_req_packets(0xfedcba9876546101);
                wrapper.set_dropped_push_packets(0xfedcba9876547101);
                wrapper.set_trapped_push_packets(0xfedcba9876548101);
                wrapper.set_jfto_event(0xfedcba9876549101);
                wrapper.set_sent_push_switch_wr_req_packets(0xfedcba987654a101);
                wrapper.set_reduction_errors(0xfedcba987654b101);
                wrapper.set_dup_error(0xfedcba987654c101);
                wrapper.set_mlid_error(0xfedcba987654d101);
                wrapper.set_ingress_amap_errors(0xfedcba987654e101);
                wrapper.set_alm_error_type0(0xfedcba987654f101);
                wrapper.set_alm_error_type1(0xfedcba9876550101);

                m_node->setWrenReductionCounters(5, 49153, &wrapper);
            }
        }

        SMP_TarnExtPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));
    })");
}

TEST(PushReductionCounters, NeedTheirMonitorConfiguration) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 3);
  for (std::size_t port = 1; port <= 3; ++port) fabric.PutAt<WrenPushReductionCounters>(node, port);
  auto& store = fabric.fabscan.fabric_extended_info;
  store.putMonitors(*node.Ports[1], 0);  // of the other counters
  store.putMonitors(*node.Ports[2], 1);
  store.putMonitors(*node.Ports[3], 1);
  node.Ports[3]->setSpecialPort(true);
  EXPECT_EQ(fabric.Body(kGeneratePushCounters, node),
            R"(    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        switch (i) {
        case 3:
            WrenPushReductionCounters mad_buffer = {0};
            const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(0, 0);
            if (p_ctr) {
                WrenPushReductionCounters_view_t wrapper = *p_ctr;
                wrapper.set_incoming_good_push_gpu_ack_packets(0x0);
                wrapper.set_incoming_good_push_gpu_ack_data(0x0);
                wrapper.set_incoming_good_push_gpu_wr_req_packets(0x0);
                wrapper.set_incoming_good_push_gpu_wr_req_data(0x0);
                wrapper.set_generated_push_switch_ack_packets(0x0);
                wrapper.set_generated_push_switch_ack_data(0x0);
                wrapper.set_generated_push_switch_wr_req_packets(0x0);
                wrapper.set_dropped_push_packets(0x0);
                wrapper.set_trapped_push_packets(0x0);
                wrapper.set_jfto_event(0x0);
                wrapper.set_sent_push_switch_wr_req_packets(0x0);
                wrapper.set_reduction_errors(0x0);
                wrapper.set_dup_error(0x0);
                wrapper.set_mlid_error(0x0);
                wrapper.set_ingress_amap_errors(0x0);
                wrapper.set_alm_error_type0(0x0);
                wrapper.set_alm_error_type1(0x0);

                m_node->setWrenReductionCounters(0, 0, &wrapper);
            }
            break;
        default:
            WrenPushReductionCounters mad_buffer = {0};
            const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(0, 0);
            if (p_ctr) {
                WrenPushReductionCounters_view_t wrapper = *p_ctr;
                wrapper.set_incoming_good_push_gpu_ack_packets(0x0);
                wrapper.set_incoming_good_push_gpu_ack_data(0x0);
                wrapper.set_incoming_good_push_gpu_wr_req_packets(0x0);
                wrapper.set_incoming_good_push_gpu_wr_req_data(0x0);
                wrapper.set_generated_push_switch_ack_packets(0x0);
                wrapper.set_generated_push_switch_ack_data(0x0);
                wrapper.set_generated_push_switch_wr_req_packets(0x0);
                wrapper.set_dropped_push_packets(0x0);
                wrapper.set_trapped_push_packets(0x0);
                wrapper.set_jfto_event(0x0);
                wrapper.set_sent_push_switch_wr_req_packets(0x0);
                wrapper.set_reduction_errors(0x0);
                wrapper.set_dup_error(0x0);
                wrapper.set_mlid_error(0x0);
                wrapper.set_ingress_amap_errors(0x0);
                wrapper.set_alm_error_type0(0x0);
                wrapper.set_alm_error_type1(0x0);

                m_node->setWrenReductionCounters(0, 0, &wrapper);
            }
        }

        SMP_TarnExtPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));
    })");
}

TEST(PushReductionCounters, StopTheBuildWithoutANormalOrASpecialPort) {
  FabricBuilder fabric;
  IBNode& node = ReductionSwitch(fabric, 3);
  EXPECT_EQ(fabric.Body(kGeneratePushCounters, node), kNoDefault);
  PutCounters(fabric, node, 1, {});
  EXPECT_EQ(fabric.Body(kGeneratePushCounters, node), kNoSpecialPort);
  node.Ports[1]->setFNMPort(true);
  EXPECT_EQ(fabric.Body(kGeneratePushCounters, node), kNoDefault);
  PutCounters(fabric, node, 2, {});
  node.Ports[2]->port_state = IB_PORT_STATE_DOWN;
  PutCounters(fabric, node, 3, {});
  node.Ports[3]->setInSubFabric(false);
  EXPECT_EQ(fabric.Body(kGeneratePushCounters, node), kNoDefault);
  node.Ports.clear();
  EXPECT_EQ(fabric.Body(kGeneratePushCounters, node), kNoDefault);
}

TEST(PushReductionCounters, SwitchWithoutReductionManagementIsNothingUnusual) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  fabric.Support(node, {54, 56});
  fabric.Put<IB_ClassPortInfo>(node);
  fabric.Put<WrenReductionInfo>(node);
  EXPECT_EQ(fabric.Body(kGeneratePushCounters, node),
            "// The node=S1 does not support Wren Reduction Management");
}

TEST(PushReductionCounters, NeedsTheReductionManagersClassPortInfo) {
  FabricBuilder fabric;
  IBNode& node = fabric.Switch("S1", 1);
  fabric.Support(node, {55});
  EXPECT_EQ(fabric.Body(kGeneratePushCounters, node),
            "#error \"Failed to get WrenClassPortInfo mad for the node=S1");
}

TEST(PushReductionCounterWriters, PassOverNullRecords) {
  FabricBuilder fabric;
  const WrenPushReductionCounters record = Counters(1, 2, 3);
  using Specials = std::map<uint8_t, const WrenPushReductionCounters*>;
  const auto text = [&](const WrenPushReductionCounters* default_record, const Specials& specials) {
    return fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
      dump.GenerateWrenPushReductionCounters(out, default_record, specials);
    });
  };
  EXPECT_EQ(text(nullptr, {}), kNoDefault);
  EXPECT_EQ(text(&record, {}), kNoSpecialPort);
  EXPECT_EQ(text(&record, {{65, nullptr}, {200, &record}}),
            R"(    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        switch (i) {
        case 200:
            WrenPushReductionCounters mad_buffer = {0};
            const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(1, 2);
            if (p_ctr) {
                WrenPushReductionCounters_view_t wrapper = *p_ctr;
                wrapper.set_incoming_good_push_gpu_ack_packets(0xfedcba9876540301);
                wrapper.set_incoming_good_push_gpu_ack_data(0xfedcba9876541301);
                wrapper.set_incoming_good_push_gpu_wr_req_packets(0xfedcba9876542301);
                wrapper.set_incoming_good_push_gpu_wr_req_data(0xfedcba9876543301);
                wrapper.set_generated_push_switch_ack_packets(0xfedcba9876544301);
                wrapper.set_generated_push_switch_ack_data(0xfedcba9876545301);
                wrapper.set_generated_push_switch_wr_req_packets(0xfedcba9876546301);
                wrapper.set_dropped_push_packets(0xfedcba9876547301);
                wrapper.set_trapped_push_packets(0xfedcba9876548301);
                wrapper.set_jfto_event(0xfedcba9876549301);
                wrapper.set_sent_push_switch_wr_req_packets(0xfedcba987654a301);
                wrapper.set_reduction_errors(0xfedcba987654b301);
                wrapper.set_dup_error(0xfedcba987654c301);
                wrapper.set_mlid_error(0xfedcba987654d301);
                wrapper.set_ingress_amap_errors(0xfedcba987654e301);
                wrapper.set_alm_error_type0(0xfedcba987654f301);
                wrapper.set_alm_error_type1(0xfedcba9876550301);

                m_node->setWrenReductionCounters(1, 2, &wrapper);
            }
            break;
        default:
            WrenPushReductionCounters mad_buffer = {0};
            const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(1, 2);
            if (p_ctr) {
                WrenPushReductionCounters_view_t wrapper = *p_ctr;
                wrapper.set_incoming_good_push_gpu_ack_packets(0xfedcba9876540301);
                wrapper.set_incoming_good_push_gpu_ack_data(0xfedcba9876541301);
                wrapper.set_incoming_good_push_gpu_wr_req_packets(0xfedcba9876542301);
                wrapper.set_incoming_good_push_gpu_wr_req_data(0xfedcba9876543301);
                wrapper.set_generated_push_switch_ack_packets(0xfedcba9876544301);
                wrapper.set_generated_push_switch_ack_data(0xfedcba9876545301);
                wrapper.set_generated_push_switch_wr_req_packets(0xfedcba9876546301);
                wrapper.set_dropped_push_packets(0xfedcba9876547301);
                wrapper.set_trapped_push_packets(0xfedcba9876548301);
                wrapper.set_jfto_event(0xfedcba9876549301);
                wrapper.set_sent_push_switch_wr_req_packets(0xfedcba987654a301);
                wrapper.set_reduction_errors(0xfedcba987654b301);
                wrapper.set_dup_error(0xfedcba987654c301);
                wrapper.set_mlid_error(0xfedcba987654d301);
                wrapper.set_ingress_amap_errors(0xfedcba987654e301);
                wrapper.set_alm_error_type0(0xfedcba987654f301);
                wrapper.set_alm_error_type1(0xfedcba9876550301);

                m_node->setWrenReductionCounters(1, 2, &wrapper);
            }
        }

        SMP_TarnExtPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeExtPortsInfo[i]));
    })");
}

TEST(PushReductionCounterWriters, WriteABlockAtAnyIndent) {
  FabricBuilder fabric;
  const WrenPushReductionCounters record = Counters(5, 0xC001, 0);
  EXPECT_EQ(fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GenerateWrenPushReductionCounters(out, 20, &record);
  }),
            R"(
                    WrenPushReductionCounters mad_buffer = {0};
                    const WrenPushReductionCounters_view_t *p_ctr = m_node->getWrenPushReductionCounters(5, 49153);
                    if (p_ctr) {
                        WrenPushReductionCounters_view_t wrapper = *p_ctr;
                        wrapper.set_incoming_good_push_gpu_ack_packets(0xfedcba9876540001);
                        wrapper.set_incoming_good_push_gpu_ack_data(0xfedcba9876541001);
                        wrapper.set_incoming_good_push_gpu_wr_req_packets(0xfedcba9876542001);
                        wrapper.set_incoming_good_push_gpu_wr_req_data(0xfedcba9876543001);
                        wrapper.set_generated_push_switch_ack_packets(0xfedcba9876544001);
                        wrapper.set_generated_push_switch_ack_data(0xfedcba9876545001);
                        wrapper.set_generated_push_switch_wr_req_packets(0xfedcba9876546001);
                        wrapper.set_dropped_push_packets(0xfedcba9876547001);
                        wrapper.set_trapped_push_packets(0xfedcba9876548001);
                        wrapper.set_jfto_event(0xfedcba9876549001);
                        wrapper.set_sent_push_switch_wr_req_packets(0xfedcba987654a001);
                        wrapper.set_reduction_errors(0xfedcba987654b001);
                        wrapper.set_dup_error(0xfedcba987654c001);
                        wrapper.set_mlid_error(0xfedcba987654d001);
                        wrapper.set_ingress_amap_errors(0xfedcba987654e001);
                        wrapper.set_alm_error_type0(0xfedcba987654f001);
                        wrapper.set_alm_error_type1(0xfedcba9876550001);

                        m_node->setWrenReductionCounters(5, 49153, &wrapper);
                    })");
}

}  // namespace
}  // namespace fabscan
