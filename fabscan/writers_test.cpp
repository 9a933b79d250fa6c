// The overloads that are handed records, at the edges of what they can be handed.

#include <gtest/gtest.h>

#include <map>
#include <regex>

#include "testing/every_emitter.h"

namespace fabscan {
namespace {

class Writers : public ::testing::Test {
 protected:
  FabricBuilder fabric;
};

TEST_F(Writers, WriteNothingForARecordThatIsNotThere) {
  const IBNode& node = fabric.Switch("S1");
  const auto text = [&](auto write) { return fabric.Text(write); };
  EXPECT_EQ(text([](const SimInfoDumpCPP& dump, std::ostream& out) {
              dump.GeneratePortInfoSW(out, nullptr, 12, true, true);
              dump.GenerateExtendedPortInfo(out, 12, nullptr);
              dump.GenerateWrenReductionPortInfo(out, 12, nullptr);
              dump.GenerateWrenReductionCounters(out, 12, nullptr);
              dump.GenerateWrenReductionCounters(out, 12, 1, {});
              dump.GenerateWrenReductionCounters(out, 12, 1, {{0, nullptr}, {7, nullptr}});
              dump.GenerateWrenPushReductionCounters(out, 12, nullptr);
            }),
            "");
  EXPECT_EQ(text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
              dump.GeneratePortInfoSW(node, out, nullptr, nullptr, {});
            }),
            "#error \"Failed to dump PortInfo MAD. Zero and a regular ports must be provided.\"");
}

TEST_F(Writers, SwitchPortInfoWithoutRecordsInTheMapHasTwoBranches) {
  const IBNode& node = fabric.Switch("S1");
  const SMP_PortInfo info = {};
  const std::map<u_int8_t, const SMP_PortInfo*> nulls = {{0, nullptr}, {255, nullptr}};
  const std::string text = fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GeneratePortInfoSW(node, out, &info, &info, nulls);
  });
  EXPECT_EQ(text, R"(    for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {
        SMP_PortInfo mad_buffer = {0};
        SMP_PortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));

        if (!i) {
            // ---------- CapMask
            mad_buffer.CapMsk = 0x0;

            // ---------- CapMask2
            mad_buffer.CapMsk2 = 0x0;

            mad_buffer.LinkWidthSup = 0x0;

            mad_buffer.LinkSpeedExtSup2 = 0x0;
            mad_buffer.LinkSpeedExtSup = 0x0;
            mad_buffer.LinkSpeedSup = 0x0;
            mad_buffer.MTUCap = 0x0;
        } else {
            mad_buffer.CapMsk = 0x0;
            mad_buffer.CapMsk2 = 0x0;

            mad_buffer.LinkWidthSup = 0x0;

            mad_buffer.LinkSpeedExtSup2 = 0x0;
            mad_buffer.LinkSpeedExtSup = 0x0;
            mad_buffer.LinkSpeedSup = 0x0;
            mad_buffer.MTUCap = 0x0;
        }

        SMP_PortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));
    })");
}

TEST_F(Writers, AdapterPortInfoIsWrittenOfTheRecordAlone) {
  SMP_PortInfo info = {};
  info.CapMsk = 0x80000002;
  info.CapMsk2 = 0x1000;
  info.LinkWidthSup = 65;
  info.LinkSpeedExtSup2 = 66;
  info.LinkSpeedExtSup = 67;
  info.LinkSpeedSup = 68;
  info.MTUCap = 69;
  EXPECT_EQ(fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GeneratePortInfoCA(out, &info);
  }),
            R"(    for (size_t i = 0; i < m_node->nodePortsInfo.size(); i++) {
        SMP_PortInfo mad_buffer = {0};
        SMP_PortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));

        // ---------- CapMask
        // IsHierarchyInfoSupported                       = 1
        mad_buffer.CapMsk = 0x80000000;

        // ---------- CapMask2
        // IsLinkSpeedXDRSupported                        = 1
        mad_buffer.CapMsk2 = 0x1000;

        mad_buffer.LinkWidthSup = 0x41;

        mad_buffer.LinkSpeedExtSup2 = 0x42;
        mad_buffer.LinkSpeedExtSup = 0x43;
        mad_buffer.LinkSpeedSup = 0x44;
        mad_buffer.MTUCap = 0x45;

        SMP_PortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodePortsInfo[i]));
    })");
}

// In place of the digit 7 the same number of digits f: in PortInfo without the bit of IsSM.
TEST_F(Writers, TheLargestValueOfEachFieldIsWhole) {
  const std::regex assignment(R"((?:mad_buffer\.|wrapper\.set_)(\S+?)(?: = |\()0x([0-9a-f]+)\)?;)");
  const auto values = [&](u_int8_t byte, const generator::GeneratedFunction& function) {
    const std::string body = FullFabric(byte).BodyOf(function);
    std::vector<std::pair<std::string, std::string>> all;
    for (std::sregex_iterator found(body.begin(), body.end(), assignment), end; found != end;
         ++found) {
      all.emplace_back((*found)[1], (*found)[2]);
    }
    return all;
  };
  for (const generator::GeneratedFunction& function : generator::kGeneratedFunctions) {
    // The masks come from the capability module.
    if (function.name == "setSMPCapability" || function.name == "setGMPCapability") continue;
    auto expected = values(0x77, function);
    EXPECT_FALSE(expected.empty()) << function.name;
    for (auto& [field, digits] : expected) {
      EXPECT_EQ(digits.find_first_not_of("75"), std::string::npos) << field;
      for (char& digit : digits) digit = digit == '7' ? 'f' : 'd';
    }
    EXPECT_EQ(values(0xFF, function), expected) << function.name;
  }
}

TEST_F(Writers, SecondMaskHasSixteenBits) {
  EXPECT_EQ(fabric.Text([](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.PrintCapabilityMask(2, out, 0xffff0001, true);
  }),
            "\n  // ---------- CapMask2"
            "\n  // IsSetNodeDescriptionSupported                  = 1");
}

// A map that holds something, if only null records, counts as special port data.
TEST_F(Writers, PushCountersWithNullRecordsAloneHaveTheDefaultAlone) {
  const WrenPushReductionCounters record = {};
  const std::map<uint8_t, const WrenPushReductionCounters*> nulls = {{4, nullptr}};
  EXPECT_EQ(fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GenerateWrenPushReductionCounters(out, &record, nulls);
  }),
            R"(    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        switch (i) {
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

TEST_F(Writers, CountersOfAPortWithoutSetsAreADefaultWithoutABlock) {
  EXPECT_EQ(fabric.Text([](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GenerateWrenReductionCounters(out, {{1, {}}}, {{2, {}}});
  }),
            R"(
    const u_int8_t lean_pipe = 0x0F;
    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        switch (i) {
            case 2:
            break;
        default:
        }
    })");
}

TEST_F(Writers, ReductionPortInfoWithNullRecordsAloneHasTheDefaultAlone) {
  const WrenReductionPortInfo record = {};
  const std::map<uint8_t, const WrenReductionPortInfo*> nulls = {{1, nullptr}, {2, nullptr}};
  EXPECT_EQ(fabric.Text([&](const SimInfoDumpCPP& dump, std::ostream& out) {
    dump.GenerateWrenReductionPortInfo(out, &record, nulls);
  }),
            R"(    for (phys_port_t i = 1; i < m_node->numPorts; i++) {
        WrenReductionPortInfo mad_buffer = {0};
        WrenReductionPortInfo_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));

        switch (i) {
        default:
            mad_buffer.capability_mask = 0x0;
        }

        WrenReductionPortInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->wrenReductionPortInfo[i]));
    })");
}

}  // namespace
}  // namespace fabscan
