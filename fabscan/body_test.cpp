#include "body.h"

#include <gtest/gtest.h>

#include <string>

#include "testing/fabric_builder.h"

namespace fabscan::generator {
namespace {

constexpr Target kTarget = {"SMP_NodeInfo", "&m_node->nodeInfo"};
constexpr Field<SMP_NodeInfo> kFields[] = {FABSCAN_FIELD(SMP_NodeInfo, VendorID)};
constexpr Template kTail(R"(
    tail)");

bool Yes(Fabscan& /*fabscan*/, const IBNode& /*node*/) { return true; }
bool No(Fabscan& /*fabscan*/, const IBNode& /*node*/) { return false; }

class BodyTest : public ::testing::Test {
 protected:
  template <class Write>
  std::string Written(Write write) {
    std::ostringstream out;
    {
      Body body(out, fabric_.fabscan, node_);
      write(body);
    }
    return out.str();
  }

  FabricBuilder fabric_;
  IBNode& node_ = fabric_.Switch("S1");
};

TEST_F(BodyTest, IsTheLineOfTheFirstConditionThatDoesNotHold) {
  int asked = 0;
  const auto counted = [&asked](Fabscan&, const IBNode&) { return ++asked == 0; };
  EXPECT_EQ(Written([&](Body& body) {
              body.Unless(Yes, "one $").Unless(No, "// two $ three").Unless(counted, "four $");
              EXPECT_TRUE(body);
            }),
            "// two S1 three");
  EXPECT_EQ(asked, 0);
}

TEST_F(BodyTest, TakesTheNameInAnyPlaceOrNone) {
  for (const auto& [line, expected] : {std::pair{"$", "S1"},
                                       {"$ a", "S1 a"},
                                       {"#error \"a $", "#error \"a S1"},
                                       {"// no name", "// no name"}}) {
    EXPECT_EQ(Written([&, text = line](Body& body) { body.Unless(No, text); }), expected);
  }
}

TEST_F(BodyTest, IsEmptyIfEverythingHolds) {
  EXPECT_EQ(Written([](Body& body) { EXPECT_FALSE(body.Unless(Yes, "$")); }), "");
}

TEST_F(BodyTest, IsTheBlockOfTheRecord) {
  fabric_.Put<SMP_NodeInfo>(node_).VendorID = 0x2c9;
  EXPECT_EQ(Written([](Body& body) {
              body.Block<kTarget, kFields>(FABSCAN_STORED(getSMPNodeInfo), "no record of $");
              EXPECT_TRUE(body);
              body.Unless(No, "not asked $").Below<kTail>();
            }),
            "    SMP_NodeInfo mad_buffer = {0};\n"
            "    SMP_NodeInfo_unpack(&mad_buffer, "
            "reinterpret_cast<u_int8_t*>(&m_node->nodeInfo));\n"
            "\n"
            "    mad_buffer.VendorID = 0x2c9;\n"
            "\n"
            "    SMP_NodeInfo_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->nodeInfo));\n"
            "        tail");
}

TEST_F(BodyTest, WithoutARecordIsTheLine) {
  EXPECT_EQ(Written([](Body& body) {
              body.Block<kTarget, kFields>(FABSCAN_STORED(getSMPNodeInfo), "no record of $");
              body.Below<kTail>();
            }),
            "no record of S1");
  const SMP_NodeInfo* info = nullptr;
  EXPECT_EQ(Written([&](Body& body) {
              body.Need(info, FABSCAN_STORED(getSMPNodeInfo), "needs a record of $");
            }),
            "needs a record of S1");
  const SMP_NodeInfo& record = fabric_.Put<SMP_NodeInfo>(node_);
  EXPECT_EQ(Written([&](Body& body) { body.Need(info, FABSCAN_STORED(getSMPNodeInfo), "$"); }), "");
  EXPECT_EQ(info, &record);
}

TEST_F(BodyTest, PartsOfARecord) {
  const auto find = FABSCAN_STORED_PART(getVSGeneralInfo, SWInfo);
  auto& store = fabric_.fabscan.fabric_extended_info;
  EXPECT_EQ(find(store, node_.createIndex), nullptr);
  const VendorSpec_GeneralInfo& record = fabric_.Put<VendorSpec_GeneralInfo>(node_);
  EXPECT_EQ(find(store, node_.createIndex), &record.SWInfo);
}

TEST_F(BodyTest, SupportsMeansAllBits) {
  fabric_.Support(node_, {2, 9});
  EXPECT_TRUE((Supports<2>(fabric_.fabscan, node_)));
  EXPECT_TRUE((Supports<2, 9>(fabric_.fabscan, node_)));
  EXPECT_FALSE((Supports<2, 8>(fabric_.fabscan, node_)));
}

}  // namespace
}  // namespace fabscan::generator
