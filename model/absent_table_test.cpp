#include <gmock/gmock.h>
#include <infiniband/fabscan/absent_table.h>

namespace fabscan {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

TEST(AbsentTable, OwnersShareEqualReasons) {
  AbsentTable table;
  table.Set(0, "SMP_PortInfo", "timed out");
  table.Set(7, "SMP_PortInfo", "timed out");
  EXPECT_EQ(&table.At(0), &table.At(7));
  EXPECT_THAT(table.At(7), ElementsAre(Pair("SMP_PortInfo", "timed out")));
  EXPECT_THAT(table.At(1), IsEmpty());
  EXPECT_THAT(table.At(8), IsEmpty());
}

TEST(AbsentTable, AnAddedReasonAffectsOneOwner) {
  AbsentTable table;
  table.Set(0, "SMP_PortInfo", "timed out");
  table.Set(1, "SMP_PortInfo", "timed out");
  const AbsentReasons& before = table.At(0);
  table.Set(0, "SMP_PortInfoExtended", "not asked");
  EXPECT_THAT(table.At(0), ElementsAre(Pair("SMP_PortInfo", "timed out"),
                                       Pair("SMP_PortInfoExtended", "not asked")));
  EXPECT_THAT(table.At(1), ElementsAre(Pair("SMP_PortInfo", "timed out")));
  EXPECT_EQ(&before, &table.At(1));
}

TEST(AbsentTable, EqualChangesOfDifferentSetsDiffer) {
  AbsentTable table;
  table.Set(0, "SMP_NodeInfo", "a");
  table.Set(0, "SMP_SwitchInfo", "b");
  table.Set(1, "SMP_SwitchInfo", "b");
  table.Set(2, "SMP_SwitchInfo", "c");
  table.Set(3, "SMP_RouterInfo", "c");
  EXPECT_THAT(table.At(0), ElementsAre(Pair("SMP_NodeInfo", "a"), Pair("SMP_SwitchInfo", "b")));
  EXPECT_THAT(table.At(1), ElementsAre(Pair("SMP_SwitchInfo", "b")));
  EXPECT_THAT(table.At(2), ElementsAre(Pair("SMP_SwitchInfo", "c")));
  EXPECT_THAT(table.At(3), ElementsAre(Pair("SMP_RouterInfo", "c")));
}

TEST(AbsentTable, ALaterReasonReplacesAnEarlierOne) {
  AbsentTable table;
  table.Set(0, "SMP_NodeInfo", "timed out");
  table.Set(0, "SMP_NodeInfo", "status 0x000c");
  EXPECT_THAT(table.At(0), ElementsAre(Pair("SMP_NodeInfo", "status 0x000c")));
}

TEST(AbsentTable, ForgetsClearedEntries) {
  AbsentTable table;
  table.Set(0, "SMP_NodeInfo", "timed out");
  table.Set(1, "SMP_NodeInfo", "timed out");
  table.Clear(0);
  table.Clear(9);
  EXPECT_THAT(table.At(0), IsEmpty());
  table.Set(0, "SMP_SwitchInfo", "timed out");
  EXPECT_THAT(table.At(0), ElementsAre(Pair("SMP_SwitchInfo", "timed out")));
  EXPECT_THAT(table.At(1), ElementsAre(Pair("SMP_NodeInfo", "timed out")));
}

TEST(AbsentTable, CopiesTheReasonsOfAnotherOwner) {
  AbsentTable table;
  table.Set(2, "SMP_PortInfo", "timed out");
  table.Share(9, 2);
  table.Share(0, 40);
  EXPECT_EQ(&table.At(9), &table.At(2));
  EXPECT_THAT(table.At(0), IsEmpty());
  table.Set(9, "SMP_PortInfo", "not asked");
  EXPECT_THAT(table.At(2), ElementsAre(Pair("SMP_PortInfo", "timed out")));
}

TEST(AbsentTable, ClearsEverything) {
  AbsentTable table;
  table.Set(0, "SMP_NodeInfo", "timed out");
  table.Clear();
  EXPECT_THAT(table.At(0), IsEmpty());
  table.Set(1, "SMP_NodeInfo", "timed out");
  EXPECT_THAT(table.At(0), IsEmpty());
  EXPECT_THAT(table.At(1), ElementsAre(Pair("SMP_NodeInfo", "timed out")));
}

}  // namespace
}  // namespace fabscan
