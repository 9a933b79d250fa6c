#ifndef FABSCAN_EXAMPLES_FIELD_VALUES_H
#define FABSCAN_EXAMPLES_FIELD_VALUES_H

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "records/record_kinds.h"

namespace fabscan {

/// The invented device generations, by their fastest link speed. Tables have one column for each.
enum Generation : std::uint8_t { kEdr, kHdr, kNdr, kXdr };
constexpr std::size_t kGenerations = 4;

/// One field of a record, such as `FWInfo.Year` or `Description_Mode[1].LFTableSize`, or one
/// capability bit by its name, with its value in each column.
struct FieldValues {
  std::string_view field;
  std::array<u_int64_t, kGenerations> columns;
};

using FieldTable = std::vector<FieldValues>;

/// Sets the fields that the table names. Throws std::invalid_argument for an unknown field and for
/// a value that is too large.
void SetFields(const RecordTable& record_table, void* record, const FieldTable& values,
               std::size_t column);

/// A record with the table's values; the other fields are 0.
template <class Record>
Record MakeRecord(const FieldTable& values, std::size_t column) {
  Record record{};
  SetFields(TableOf<Record>::value, &record, values, column);
  return record;
}

template <class Record>
void SetFields(Record& record, const FieldTable& values, std::size_t column) {
  SetFields(TableOf<Record>::value, &record, values, column);
}

/// The mask of the bits that are 1 in the column, found by name among `bit_names`.
capability_mask_t MakeMask(const std::vector<const char*>& bit_names, const FieldTable& values,
                           std::size_t column);

}  // namespace fabscan

#endif
