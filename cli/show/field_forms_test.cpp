#include "cli/show/field_forms.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "records/record_kinds.h"

namespace fabscan {
namespace {

TEST(FieldFormsTest, EveryRowNamesAField) {
  std::map<std::string_view, const RecordTable*> tables;
  const std::function<void(const RecordTable&)> add = [&](const RecordTable& table) {
    tables[table.name] = &table;
    for (const FieldRow& row : table) {
      if (row.nested != nullptr) add(*row.nested);
    }
  };
  for (const auto& kind : kNodeRecords) add(*kind.table);
  for (const auto& kind : kPortRecords) add(*kind.table);
  add(kCountersTable);
  add(kMonitorsTable);
  std::set<std::pair<std::string_view, std::string_view>> seen;
  for (const FieldForm& form : AllFieldForms()) {
    ASSERT_EQ(tables.count(form.record), 1U) << form.record;
    EXPECT_NE(FindField(*tables[form.record], form.field), nullptr) << form.record << form.field;
    EXPECT_TRUE(seen.emplace(form.record, form.field).second) << form.record << form.field;
  }
}

std::string MeaningOf(std::string_view field, u_int64_t value) {
  return FormOf("SMP_PortInfo", field).meaning(value);
}

TEST(FieldFormsTest, ExplainsValues) {
  EXPECT_EQ(MeaningOf("NeighborMTU", 5), "4096");
  EXPECT_EQ(MeaningOf("NeighborMTU", 6), "");
  EXPECT_EQ(MeaningOf("LinkWidthActive", 2), "4x");
  EXPECT_EQ(MeaningOf("LinkWidthSup", 3), "1x, 4x");
  EXPECT_EQ(MeaningOf("LinkWidthEnabled", 255), "all supported");
  EXPECT_EQ(MeaningOf("LinkSpeedActive", 4), "10 Gb/s, QDR");
  EXPECT_EQ(MeaningOf("LinkSpeedSup", 7), "SDR, DDR, QDR");
  EXPECT_EQ(MeaningOf("LinkSpeedExtActive", 8), "106.25 Gb/s, NDR");
  EXPECT_EQ(MeaningOf("LinkSpeedExtActive2", 1), "212.5 Gb/s, XDR");
  EXPECT_EQ(MeaningOf("PortState", 4), "ACTIVE");
  EXPECT_EQ(MeaningOf("OperationalVLs", 3), "VL0-3");
}

TEST(FieldFormsTest, OtherFieldsArePlainNumbers) {
  const FieldForm form = FormOf("SMP_PortInfo", "LID");
  EXPECT_FALSE(form.hexadecimal);
  EXPECT_EQ(form.meaning, nullptr);
  EXPECT_EQ(form.bit_names, nullptr);
}

}  // namespace
}  // namespace fabscan
