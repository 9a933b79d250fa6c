#include "snapshot/record_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "snapshot/line_reader.h"

namespace fabscan {
namespace {

std::vector<const RecordTable*> AllTables() {
  std::vector<const RecordTable*> tables = {&kCountersTable, &kMonitorsTable};
  for (const auto& kind : kNodeRecords) tables.push_back(kind.table);
  for (const auto& kind : kPortRecords) tables.push_back(kind.table);
  return tables;
}

/// Fills every number, with few digits or many.
void Fill(const RecordTable& table, void* record, std::mt19937_64& numbers) {
  for (const FieldRow& row : table) {
    for (std::size_t i = 0; i < row.count; ++i) {
      if (row.nested != nullptr) {
        Fill(*row.nested, row.element(record, i), numbers);
      } else {
        StoreNumber(row.element(record, i), row.size, numbers() >> numbers() % 64);
      }
    }
  }
}

std::string TextOf(const RecordTable& table, const void* record) {
  std::string text(TextBytes(table), '\0');
  text.resize(static_cast<std::size_t>(PutRecordText(table, text.data(), record) - text.data()));
  return text;
}

/// The layout of a snapshot line in memory.
bool Takes(const RecordTable& table, const std::string& text, void* record) {
  const std::string line = text + '\n' + std::string(LineReader::kPadding, '}');
  return TakeCanonicalRecord(table, line.data(), record);
}

TEST(CanonicalRecord, TakesEveryRecordAsItIsWritten) {
  std::mt19937_64 numbers(1);
  for (const RecordTable* table : AllTables()) {
    for (int round = 0; round < 200; ++round) {
      std::vector<u_int64_t> record(table->size / 8 + 1);
      if (round != 0) Fill(*table, record.data(), numbers);
      std::vector<u_int64_t> taken(record.size());
      const std::string text = TextOf(*table, record.data());
      ASSERT_TRUE(Takes(*table, text, taken.data())) << table->name << text;
      ASSERT_EQ(TextOf(*table, taken.data()), text) << table->name;
    }
  }
}

TEST(CanonicalRecord, LeavesEveryTruncationToTheDecoder) {
  std::mt19937_64 numbers(2);
  for (const RecordTable* table : AllTables()) {
    std::vector<u_int64_t> record(table->size / 8 + 1);
    Fill(*table, record.data(), numbers);
    const std::string text = TextOf(*table, record.data());
    for (std::size_t length = 0; length < text.size(); ++length) {
      std::vector<u_int64_t> taken(record.size());
      ASSERT_FALSE(Takes(*table, text.substr(0, length), taken.data())) << table->name << length;
    }
  }
}

bool TakesPortInfoExtended(const std::string& text) {
  SMP_PortInfoExtended record = {};
  return Takes(TableOf<SMP_PortInfoExtended>::value, text, &record);
}

constexpr char kRest[] =
    ",\"FDRFECModeSupported\":0,\"FECModeActive\":0,\"EDRFECModeSupported\":0,"
    "\"HDRFECModeSupported\":0,\"NDRFECModeSupported\":0}";

TEST(CanonicalRecord, TakesTheLargestNumbersAndNoLarger) {
  const std::string rest = kRest;
  EXPECT_TRUE(TakesPortInfoExtended("{\"CapMsk\":0" + rest));
  EXPECT_TRUE(TakesPortInfoExtended("{\"CapMsk\":4294967295" + rest));
  EXPECT_FALSE(TakesPortInfoExtended("{\"CapMsk\":4294967296" + rest));
  EXPECT_FALSE(TakesPortInfoExtended("{\"CapMsk\":18446744073709551616" + rest));
  EXPECT_FALSE(TakesPortInfoExtended("{\"CapMsk\":42949672950" + rest));
}

TEST(CanonicalRecord, LeavesEveryOtherFormToTheDecoder) {
  const std::string rest = kRest;
  for (const char* number : {"", "-1", "+1", "01", "1.0", "1e0", "\"0x1\"", "\"1\"", " 1", "1 ",
                             "[1]", "{}", "null", "true"}) {
    EXPECT_FALSE(TakesPortInfoExtended("{\"CapMsk\":" + std::string(number) + rest)) << number;
  }
  EXPECT_FALSE(TakesPortInfoExtended("{ \"CapMsk\":1" + rest));
  EXPECT_FALSE(TakesPortInfoExtended("{\"CapMsk\" :1" + rest));
  EXPECT_FALSE(TakesPortInfoExtended("{\"CapMsk\":1,\"CapMsk\":1" + rest));
  EXPECT_FALSE(TakesPortInfoExtended("{\"CapMsk\":1,\"Unknown\":1" + rest));
  EXPECT_FALSE(TakesPortInfoExtended("{\"CapMsk\":1}" + rest.substr(1)));
  EXPECT_FALSE(TakesPortInfoExtended("{\"FDRFECModeSupported\":0,\"CapMsk\":1}"));
  EXPECT_FALSE(TakesPortInfoExtended("{}"));  // what is dumped must be there
  EXPECT_FALSE(TakesPortInfoExtended("[]"));
}

TEST(CanonicalRecord, TakesHexadecimalNumbersOfOneToSixteenDigits) {
  const auto port_guid = [](const std::string& guid) {
    SMP_NodeInfo info = {};
    const std::string text = "{\"ClassVersion\":1,\"BaseVersion\":1,\"PortGUID\":" + guid +
                             ",\"DeviceID\":1,\"PartitionCap\":1,\"revision\":1,\"VendorID\":1}";
    return Takes(TableOf<SMP_NodeInfo>::value, text, &info) ? info.PortGUID : 0xBAD;
  };
  EXPECT_EQ(port_guid("\"0x1\""), 1U);
  EXPECT_EQ(port_guid("\"0x1234567\""), 0x1234567U);
  EXPECT_EQ(port_guid("\"0x12345678\""), 0x12345678U);
  EXPECT_EQ(port_guid("\"0x123456789\""), 0x123456789U);
  EXPECT_EQ(port_guid("\"0x123456789abcdef\""), 0x123456789abcdefU);
  EXPECT_EQ(port_guid("\"0xfedcba9876543210\""), 0xfedcba9876543210U);
  for (const char* other : {"\"0x\"", "\"0xfedcba98765432100\"", "\"0xg\"", "\"0x1", "0x1", "1",
                            "\"0X1\"", "\"1\"", "\" 0x1\"", "\"0x1 \"", "\"0x\\u0031\""}) {
    EXPECT_EQ(port_guid(other), 0xBADU) << other;
  }
}

}  // namespace
}  // namespace fabscan
