#include "cli/dump/function_body.h"

#include <gmock/gmock.h>

#include <sstream>
#include <stdexcept>

namespace fabscan {
namespace {

using generator::FindGeneratedFunction;
using generator::kGeneratedFunctions;

TEST(FirstLineTest, KeepsTheFirstLineHoweverItIsWritten) {
  FirstLine first;
  std::ostream out(&first);
  EXPECT_EQ(first.text(), "");
  out << "#err";
  out.put('o');
  out << "r\nmore\n" << std::flush;
  out.put('x');
  EXPECT_TRUE(out.good());
  EXPECT_EQ(first.text(), "#error");
  first.Clear();
  out << '\n' << "not this";
  EXPECT_EQ(first.text(), "");
  first.Clear();
  out << "no line end";
  EXPECT_EQ(first.text(), "no line end");
}

class BodyQueryTest : public testing::Test {
 protected:
  BodyQueryTest() {
    for (phys_port_t number = 0; number <= 2; ++number) {
      IBPort& port = fabscan_.discovered_fabric.makePort(switch_, number);
      port.port_state = IB_PORT_STATE_ACTIVE;
      fabscan_.fabric_extended_info.putMonitors(port, 0);
      fabscan_.fabric_extended_info.putMonitors(port, 1);
      Put<WrenPushReductionCounters>(port);
      fabscan_.fabric_extended_info.putCounters(port, 7);
    }
    switch_.Ports[2]->setSpecialPort(true);
  }
  template <class Record, class Owner>
  void Put(const Owner& owner) {
    fabscan_.fabric_extended_info.put<Record>(owner);
  }
  void SupportAll() { fabscan_.capability_module.put(switch_, false, {{~0U, ~0U, ~0U, ~0U}}); }
  FunctionBody Ask(const char* function) {
    return BodyQuery(fabscan_).Ask(*FindGeneratedFunction(function), switch_);
  }

  Fabscan fabscan_;
  IBNode& switch_ = fabscan_.discovered_fabric.makeNode("S", 1, IB_SW_NODE, 2);
};

TEST_F(BodyQueryTest, TellsTheBodiesApart) {
  Put<SMP_NodeInfo>(switch_);
  EXPECT_EQ(Ask("setNodeInfo").mark, Mark::kBlock);
  EXPECT_EQ(Ask("setNodeInfo").reason, "");
  EXPECT_EQ(Ask("setRouterInfo").mark, Mark::kComment);
  EXPECT_EQ(Ask("setRouterInfo").reason, "The node=S is not a router");
  EXPECT_EQ(Ask("setArInfo").mark, Mark::kError);
  EXPECT_EQ(Ask("setArInfo").reason, "The node=S does not support AR");
  EXPECT_EQ(Ask("setArInfo").function->name, "setArInfo");
}

TEST_F(BodyQueryTest, ABlockMayBeginWithACommentOrAnEmptyLine) {
  SupportAll();
  Put<IB_ClassPortInfo>(switch_);
  EXPECT_EQ(Ask("setSMPCapability").mark, Mark::kBlock);
  EXPECT_EQ(Ask("setWrenReductionCounters").mark, Mark::kBlock);
}

TEST_F(BodyQueryTest, ABlockThatDoesNotCompileNeedsAnEdit) {
  EXPECT_EQ(Ask("setVSReductionManagerClassPortInfo").mark, Mark::kComment);
  SupportAll();
  EXPECT_EQ(Ask("setVSReductionManagerClassPortInfo").mark, Mark::kError);
  Put<IB_ClassPortInfo>(switch_);
  EXPECT_EQ(Ask("setVSReductionManagerClassPortInfo").mark, Mark::kHand);
  EXPECT_EQ(Ask("setWrenPushReductionCounters").mark, Mark::kHand);
}

TEST_F(BodyQueryTest, GivesEveryFunctionOfANode) {
  const GeneratedNode generated = BodyQuery(fabscan_).Ask(switch_);
  EXPECT_EQ(generated.class_word, "SW");
  ASSERT_EQ(generated.functions.size(), std::size(kGeneratedFunctions));
  for (std::size_t i = 0; i < generated.functions.size(); ++i) {
    EXPECT_EQ(generated.functions[i].function, &kGeneratedFunctions[i]);
  }
}

TEST_F(BodyQueryTest, TheTextOfABodyEndsItsLastLine) {
  EXPECT_EQ(BodyText(SimInfoDumpCPP(fabscan_), *FindGeneratedFunction("setRouterInfo"), switch_),
            "// The node=S is not a router\n");
}

TEST(ReasonOfLineTest, LosesMarksAndQuotes) {
  EXPECT_EQ(ReasonOfLine("// The node=S is not a router"), "The node=S is not a router");
  EXPECT_EQ(ReasonOfLine("#error \"The node=S does not support AR\""),
            "The node=S does not support AR");
  EXPECT_EQ(ReasonOfLine("#error \"Failed to get VS ArInfo mad for the node=S"),
            "Failed to get VS ArInfo mad for the node=S");
  EXPECT_EQ(ReasonOfLine("#error \""), "");
  EXPECT_EQ(ReasonOfLine("//"), "");
}

TEST(WithoutNameTest, TakesTheNameOut) {
  EXPECT_EQ(WithoutName("The node=S is not a router", "S"), "The node is not a router");
  EXPECT_EQ(WithoutName("Null pointer is provided.", "S"), "Null pointer is provided.");
}

TEST(ProblemsTextTest, NamesWhatDoesNotCompile) {
  EXPECT_EQ(ProblemsText(*FindGeneratedFunction("setVSReductionManagerClassPortInfo")),
            "the redirect GID is written as a memory address");
  EXPECT_EQ(ProblemsText(*FindGeneratedFunction("setWrenPushReductionCounters")),
            "the branches declare the same names, and the last line packs a record that is not "
            "declared");
  EXPECT_EQ(ProblemsText(*FindGeneratedFunction("setArInfo")), "");
}

}  // namespace
}  // namespace fabscan
