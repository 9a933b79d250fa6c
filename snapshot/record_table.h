#ifndef FABSCAN_SNAPSHOT_RECORD_TABLE_H
#define FABSCAN_SNAPSHOT_RECORD_TABLE_H

#include <infiniband/fabscan/fabscan_types.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>

#include "snapshot/aggregate_size.h"
#include "snapshot/number_text.h"

namespace fabscan {

struct RecordTable;

/// One field of a record: a number, a record within the record, or an array of either.
struct FieldRow {
  std::string_view name;
  std::size_t offset;  // of the field in its record, in bytes
  std::size_t size;    // of one element, in bytes
  std::size_t count;   // elements; 1 where the field is no array
  bool is_array;
  bool dumped;                // the generator writes it, or something within it
  const RecordTable* nested;  // the element's own fields; null for numbers

  constexpr unsigned bits() const { return static_cast<unsigned>(8 * size); }
  constexpr u_int64_t largest() const { return ~u_int64_t{0} >> (64 - bits()); }

  const void* element(const void* record, std::size_t index) const {
    return static_cast<const char*>(record) + offset + index * size;
  }
  void* element(void* record, std::size_t index) const {
    return static_cast<char*>(record) + offset + index * size;
  }
};

/// What stands before a field's value in a snapshot: `,"name":`.
struct KeyText {
  char text[64];
  u_int8_t size;
};

/// The fields of one record, in declared order.
struct RecordTable {
  std::string_view name;
  const FieldRow* rows;
  std::size_t row_count;
  std::size_t size;        // of the record, in bytes
  std::size_t numbers;     // in the whole record, nested ones included
  u_int64_t dumped_rows;   // bit r: row r is dumped
  const KeyText* keys;     // of the rows
  std::size_t text_bytes;  // that the record takes in a snapshot, at most
  char* (*put_text)(char* at, const void* record);
  bool (*take_text)(const char* text, void* record);

  constexpr const FieldRow* begin() const { return rows; }
  constexpr const FieldRow* end() const { return rows + row_count; }
};

/// Reads the unsigned number of `size` bytes at `from`.
inline u_int64_t LoadNumber(const void* from, std::size_t size) {
  switch (size) {
    case 1:
      return *static_cast<const u_int8_t*>(from);
    case 2:
      return *static_cast<const u_int16_t*>(from);
    case 4:
      return *static_cast<const u_int32_t*>(from);
    default:
      return *static_cast<const u_int64_t*>(from);
  }
}

/// Writes `value`, which fits, as an unsigned number of `size` bytes.
inline void StoreNumber(void* to, std::size_t size, u_int64_t value) {
  switch (size) {
    case 1:
      *static_cast<u_int8_t*>(to) = static_cast<u_int8_t>(value);
      break;
    case 2:
      *static_cast<u_int16_t*>(to) = static_cast<u_int16_t>(value);
      break;
    case 4:
      *static_cast<u_int32_t*>(to) = static_cast<u_int32_t>(value);
      break;
    default:
      *static_cast<u_int64_t*>(to) = value;
  }
}

/// Puts the record's text in a snapshot at `at`, where there is room for `text_bytes`, and returns
/// its end. The record writer has one for each type of record.
template <class Record>
char* PutRecordText(char* at, const void* record);
/// Takes it back where it is exactly that text; see `TakeCanonicalRecord`.
template <class Record>
bool TakeRecordText(const char* text, void* record);

/// The table of one record type: `kName` and `kRows`.
template <class Record>
struct FieldsOf;

template <class Record>
struct TableOf;

/// A row; does not compile where the table's type is not the structure's.
template <class Type, class Declared>
constexpr FieldRow MakeRow(std::string_view name, std::size_t offset, bool dumped) {
  static_assert(std::is_same_v<Type, Declared>, "the table gives the field another type");
  using Element = std::remove_extent_t<Declared>;
  const RecordTable* nested = nullptr;
  if constexpr (std::is_class_v<Element>) {
    nested = &TableOf<Element>::value;
  } else {
    static_assert(std::is_unsigned_v<Element> && !std::is_same_v<Element, bool>);
  }
  constexpr bool kArray = std::is_array_v<Declared>;
  return {name,   offset, sizeof(Element), kArray ? std::extent_v<Declared> : 1,
          kArray, dumped, nested};
}

template <std::size_t N>
constexpr std::size_t CountNumbers(const FieldRow (&rows)[N]) {
  std::size_t numbers = 0;
  for (const FieldRow& row : rows) {
    numbers += row.count * (row.nested == nullptr ? 1 : row.nested->numbers);
  }
  return numbers;
}

template <std::size_t N>
constexpr u_int64_t DumpedRows(const FieldRow (&rows)[N]) {
  u_int64_t dumped = 0;
  for (std::size_t i = 0; i < N; ++i) dumped |= u_int64_t{rows[i].dumped} << i;
  return dumped;
}

template <std::size_t N>
constexpr std::array<KeyText, N> MakeKeys(const FieldRow (&rows)[N]) {
  std::array<KeyText, N> keys = {};
  for (std::size_t i = 0; i < N; ++i) {
    KeyText& key = keys[i];
    const auto put = [&key](std::string_view text) {
      for (const char c : text) key.text[key.size++] = c;
    };
    put(",\"");
    put(rows[i].name);
    put("\":");
  }
  return keys;
}

template <std::size_t N>
constexpr std::size_t TextBytes(const FieldRow (&rows)[N]) {
  std::size_t bytes = 2;
  for (const FieldRow& row : rows) {
    const std::size_t element = row.nested == nullptr ? kNumberBytes : row.nested->text_bytes;
    bytes += sizeof(KeyText::text) + 2 + row.count * (element + 1);
  }
  return bytes;
}

template <std::size_t N>
constexpr bool InDeclaredOrder(const FieldRow (&rows)[N]) {
  for (std::size_t i = 1; i < N; ++i) {
    if (rows[i].offset < rows[i - 1].offset + rows[i - 1].size * rows[i - 1].count) return false;
  }
  return true;
}

/// `TableOf<Record>::value`: the finished table. A field that the table forgets, names twice or
/// gives out of order does not compile.
template <class Record>
struct TableOf {
  static constexpr const auto& kRows = FieldsOf<Record>::kRows;
  static constexpr std::size_t kRowCount = std::extent_v<std::remove_reference_t<decltype(kRows)>>;

  static_assert(std::is_trivially_copyable_v<Record> && std::is_standard_layout_v<Record>);
  static_assert(kRowCount <= 64, "rows are marked in a 64-bit word");
  static_assert(TextBytes(kRows) < std::size_t{1} << 16U, "a record is written in one piece");
  static_assert(InDeclaredOrder(kRows), "the table is not in declared order");
  static_assert(CountNumbers(kRows) == kNumbersIn<Record>, "the table misses a field");

  static constexpr std::array<KeyText, kRowCount> kKeys = MakeKeys(kRows);
  static constexpr RecordTable value{FieldsOf<Record>::kName,
                                     kRows,
                                     kRowCount,
                                     sizeof(Record),
                                     CountNumbers(kRows),
                                     DumpedRows(kRows),
                                     kKeys.data(),
                                     TextBytes(kRows),
                                     &PutRecordText<Record>,
                                     &TakeRecordText<Record>};
};

}  // namespace fabscan

#endif
