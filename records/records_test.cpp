#include <gmock/gmock.h>

#include <cstring>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "records/number.h"
#include "records/record_kinds.h"

namespace fabscan {
namespace {

using testing::ElementsAre;
using testing::Pair;

std::vector<std::string> DumpedFields(const RecordTable& table) {
  std::vector<std::string> names;
  for (const FieldRow& row : table) {
    if (row.dumped) names.emplace_back(row.name);
  }
  return names;
}

TEST(RecordFields, KnowsWidthCountAndPlaceOfEveryKindOfField) {
  const FieldRow* number = FindField(TableOf<SMP_NodeInfo>::value, "revision");
  ASSERT_NE(number, nullptr);
  EXPECT_EQ(number->bits(), 32U);
  EXPECT_EQ(number->largest(), 0xFFFFFFFFU);
  EXPECT_EQ(number->offset, offsetof(SMP_NodeInfo, revision));
  EXPECT_FALSE(number->is_array);

  const FieldRow* words = FindField(TableOf<IB_ClassPortInfo>::value, "TrapGID");
  ASSERT_NE(words, nullptr);
  EXPECT_TRUE(words->is_array);
  EXPECT_EQ(words->count, 4U);
  EXPECT_EQ(words->bits(), 32U);

  const FieldRow* modes = FindField(TableOf<ib_private_lft_info>::value, "Description_Mode");
  ASSERT_NE(modes, nullptr);
  EXPECT_EQ(modes->nested, &TableOf<ib_description_mode>::value);
  EXPECT_EQ(FindField(TableOf<SMP_NodeInfo>::value, "Revision"), nullptr);
}

TEST(RecordFields, TellsWhichFieldsTheGeneratorWrites) {
  EXPECT_THAT(DumpedFields(TableOf<SMP_NodeInfo>::value),
              ElementsAre("ClassVersion", "BaseVersion", "DeviceID", "PartitionCap", "revision",
                          "VendorID"));
  EXPECT_THAT(DumpedFields(TableOf<SMP_PortInfo>::value),
              ElementsAre("CapMsk", "LinkWidthSup", "LinkSpeedSup", "MTUCap", "LinkSpeedExtSup2",
                          "LinkSpeedExtSup", "CapMsk2"));
  EXPECT_THAT(DumpedFields(TableOf<VendorSpec_GeneralInfo>::value),
              ElementsAre("HWInfo", "FWInfo", "SWInfo"));
  EXPECT_EQ(DumpedFields(TableOf<adaptive_routing_info>::value).size(), 23U);
  EXPECT_EQ(DumpedFields(TableOf<SMP_TarnExtPortInfo>::value).size(), 19U);
  EXPECT_EQ(DumpedFields(TableOf<WrenReductionCounters>::value).size(), 20U);
  // The two arguments of the accessor calls, and 17 counters.
  EXPECT_EQ(DumpedFields(TableOf<WrenPushReductionCounters>::value).size(), 19U);
}

TEST(RecordFields, WalksEveryNumberOfARecordWithItsPath) {
  ib_private_lft_info record{};
  record.NumPLFTs = 3;
  record.Description_Mode[2].LFTableSize = 9;
  std::vector<std::pair<std::string, u_int64_t>> nonzero;
  std::size_t numbers = 0;
  ForEachNumber(TableOf<ib_private_lft_info>::value, [&](const Number& number) {
    ++numbers;
    const u_int64_t value = number.Load(&record);
    if (value != 0) nonzero.emplace_back(number.path(), value);
    number.Store(&record, value + 1);
  });
  EXPECT_EQ(numbers, 12U);
  EXPECT_THAT(nonzero,
              ElementsAre(Pair("NumPLFTs", 3), Pair("Description_Mode[2].LFTableSize", 9)));
  EXPECT_EQ(record.NumPLFTs, 4);
  EXPECT_EQ(record.Description_Mode[3].NumOfLFTables, 1);
  EXPECT_EQ(record.Description_Mode[2].LFTableSize, 10);
}

TEST(RecordFields, WalksTheRecordsOfANodeAndAPort) {
  IBFabric fabric;
  TesselExtendedInfo store;
  IBNode& node = fabric.makeNode("S1", 1, IB_SW_NODE, 2);
  const IBPort& port = fabric.makePort(node, 1);
  store.put<WrenReductionInfo>(node);
  store.put<SMP_NodeInfo>(node);
  store.putMonitors(port, 1);
  store.putCounters(port, 6).dropped_pkt = 5;
  store.put<SMP_PortInfo>(port);

  std::vector<std::string> seen;
  ForEachRecord(store, node,
                [&](const RecordTable& table, const void*) { seen.emplace_back(table.name); });
  ForEachRecord(store, port, [&](const RecordTable& table, int index, const void*) {
    seen.push_back(std::string(table.name) + ' ' + std::to_string(index));
  });
  EXPECT_THAT(seen, ElementsAre("SMP_NodeInfo", "WrenReductionInfo", "SMP_PortInfo -1",
                                "WrenReductionCounters 6", "WrenReductionConfigureMLIDMonitors 1"));
}

// The tables that the compiler computes, computed again at run time.
TEST(RecordFields, ATableIsMadeOfItsRows) {
  const auto row = [](const char* name, std::size_t offset, bool dumped, unsigned first_bit) {
    return MakeRow<u_int16_t>(name, offset, dumped, first_bit, 16);
  };
  const FieldRow modes = MakeRow<ib_description_mode[4]>("Modes", 4, true, 0, 0);
  EXPECT_EQ(modes.count, 4U);
  EXPECT_EQ(modes.nested, &TableOf<ib_description_mode>::value);

  const FieldRow rows[] = {row("LID", 0, false, 0), row("PartitionCap", 2, true, 16), modes};
  EXPECT_EQ(CountNumbers(rows), 1U + 1U + 4U * TableOf<ib_description_mode>::value.numbers);
  EXPECT_EQ(DumpedRows(rows), 0b110U);
  EXPECT_FALSE(AllHaveAPlaceOrNone(rows));
  EXPECT_TRUE(InDeclaredOrder(rows));
  const FieldRow two[] = {rows[0], rows[1]};
  EXPECT_TRUE(AllHaveAPlaceOrNone(two));
  EXPECT_TRUE(ShareNoBit(two));
  EXPECT_TRUE(LieWithin(two, 4));
  EXPECT_FALSE(LieWithin(two, 3));
  EXPECT_TRUE(LieWithin(two, kAnyLength));
  const FieldRow turned[] = {rows[1], rows[0]};
  EXPECT_FALSE(InDeclaredOrder(turned));
  const FieldRow twice[] = {rows[1], rows[1]};
  EXPECT_FALSE(InDeclaredOrder(twice));
  EXPECT_FALSE(ShareNoBit(twice));
}

TEST(RecordFields, TheListsOfRecordsNumberTheTables) {
  EXPECT_EQ(TableOf<SMP_NodeInfo>::value.index, 0U);
  EXPECT_EQ(TableOf<SMP_PortInfo>::value.index, kNodeRecords.size());
  EXPECT_EQ(kMonitorsTable.index, kNodeRecords.size() + kPortRecords.size() + 1);
  EXPECT_EQ(TableOf<PSID_Block_Element>::value.index, kMonitorsTable.index + 1);
}

TEST(RecordFields, FindsRecordsByName) {
  IBFabric fabric;
  TesselExtendedInfo store;
  IBNode& node = fabric.makeNode("S1", 1, IB_SW_NODE, 2);
  const IBPort& port = fabric.makePort(node, 1);
  store.put<WrenReductionInfo>(node);
  const void* counters = &store.putCounters(port, 6);
  EXPECT_EQ(FindNodeRecord("WrenReductionInfo")(store, node), store.find<WrenReductionInfo>(node));
  EXPECT_EQ(FindNodeRecord("SMP_NodeInfo")(store, node), nullptr);
  EXPECT_EQ(FindNodeRecord("SMP_PortInfo"), nullptr);
  EXPECT_EQ(FindPortRecord("WrenReductionCounters")(store, port), counters);
  EXPECT_EQ(FindPortRecord("WrenReductionConfigureMLIDMonitors")(store, port), nullptr);
  EXPECT_EQ(FindPortRecord("SMP_PortInfo")(store, port), nullptr);
}

// A field that no one thought of would stay in a snapshot that is given away.
TEST(RecordFields, EveryFieldThatNamesADeviceIsMarked) {
  std::set<std::string> unmarked;
  const auto note = [&unmarked](const RecordTable& table) {
    ForEachNumber(table, [&](const Number& number) {
      const std::string name(number.row.name);
      const bool names_a_device = std::regex_search(name, std::regex("GUID|GID|QKey|(^|_)mac_"));
      if (names_a_device != (number.row.identity != Identity::kNone)) unmarked.insert(name);
    });
  };
  for (const auto& kind : kNodeRecords) note(*kind.table);
  for (const auto& kind : kPortRecords) note(*kind.table);
  note(kCountersTable);
  note(kMonitorsTable);
  // Counts of entries and of violations.
  EXPECT_THAT(unmarked, ElementsAre("GUIDCap", "QKeyViolations"));
}

TEST(RecordFields, LoadsAndStoresEveryWidth) {
  for (const std::size_t size : {1U, 2U, 4U, 8U}) {
    u_int64_t room = 0;
    const u_int64_t largest = ~u_int64_t{0} >> (64 - 8 * size);
    StoreNumber(&room, size, largest);
    EXPECT_EQ(LoadNumber(&room, size), largest);
    u_int8_t bytes[sizeof room];
    std::memcpy(bytes, &room, sizeof room);
    for (std::size_t i = 0; i < sizeof bytes; ++i) EXPECT_EQ(bytes[i], i < size ? 0xFF : 0) << size;
  }
}

}  // namespace
}  // namespace fabscan
