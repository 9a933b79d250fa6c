#ifndef FABSCAN_RECORDS_RECORD_TABLE_H
#define FABSCAN_RECORDS_RECORD_TABLE_H

#include <infiniband/fabscan/fabscan_types.h>

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "records/aggregate_size.h"
#include "records/field.h"

namespace fabscan {

/// The rows of one record type: `kName`, `kRows` and `kDataBytes`, which FABSCAN_RECORD_ROWS
/// begins.
template <class Record>
struct FieldsOf;

/// `TableOf<Record>::value`: the finished table.
template <class Record>
struct TableOf;

/// For FABSCAN_RECORD_ROWS: the attribute is as large as its fields need.
inline constexpr std::size_t kAnyLength = 0;

template <class Declared>
constexpr FieldRow MakeRow(std::string_view name, std::size_t offset, bool dumped,
                           unsigned first_bit, unsigned bits, Identity identity = Identity::kNone) {
  using Element = std::remove_extent_t<Declared>;
  const RecordTable* nested = nullptr;
  if constexpr (std::is_class_v<Element>) {
    nested = &TableOf<Element>::value;
  } else {
    static_assert(std::is_unsigned_v<Element> && !std::is_same_v<Element, bool>);
  }
  constexpr bool kArray = std::is_array_v<Declared>;
  return {name,   offset, sizeof(Element), kArray ? std::extent_v<Declared> : 1,
          kArray, dumped, identity,        {first_bit, bits},
          nested};
}

// ---------- Requirements for every table, checked at compile time ----------

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
constexpr bool IdentifyDevice(const FieldRow (&rows)[N]) {
  for (const FieldRow& row : rows) {
    if (row.identity != Identity::kNone) return true;
    if (row.nested != nullptr && row.nested->identifies) return true;
  }
  return false;
}

template <std::size_t N>
constexpr bool InDeclaredOrder(const FieldRow (&rows)[N]) {
  for (std::size_t i = 1; i < N; ++i) {
    if (rows[i].offset < rows[i - 1].offset + rows[i - 1].size * rows[i - 1].count) return false;
  }
  return true;
}

template <std::size_t N>
constexpr bool AllHaveAPlaceOrNone(const FieldRow (&rows)[N]) {
  for (const FieldRow& row : rows) {
    if ((row.place.bits == 0) != (rows[0].place.bits == 0)) return false;
    if (row.place.bits != 0 && row.nested != nullptr) return false;
  }
  return true;
}

/// The end of the last element of the field, in bits.
constexpr unsigned EndOf(const FieldRow& row) {
  return row.place.first_bit + static_cast<unsigned>(row.count) * row.place.bits;
}

/// Eight bytes are read for a number, so one of more than 57 bits must consist of whole bytes.
template <std::size_t N>
constexpr bool FitTheirTypes(const FieldRow (&rows)[N]) {
  for (const FieldRow& row : rows) {
    if (row.place.bits > row.bits()) return false;
    if (row.place.bits > 57 && (row.place.first_bit % 8 != 0 || row.place.bits % 8 != 0))
      return false;
  }
  return true;
}

template <std::size_t N>
constexpr bool ShareNoBit(const FieldRow (&rows)[N]) {
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      if (rows[i].place.first_bit < EndOf(rows[k]) && rows[k].place.first_bit < EndOf(rows[i])) {
        return false;
      }
    }
  }
  return true;
}

template <std::size_t N>
constexpr bool LieWithin(const FieldRow (&rows)[N], std::size_t data_bytes) {
  for (const FieldRow& row : rows) {
    if (data_bytes != kAnyLength && EndOf(row) > 8 * data_bytes) return false;
  }
  return true;
}

/// An identity that several numbers hold is whole.
template <std::size_t N>
constexpr bool HaveWholeIdentities(const FieldRow (&rows)[N]) {
  for (const FieldRow& one : rows) {
    if (one.identity == Identity::kNone) continue;
    std::size_t bits = 0;
    for (const FieldRow& row : rows) {
      if (row.identity == one.identity) bits += row.bits() * row.count;
    }
    if (bits % BitsOf(one.identity) != 0) return false;
  }
  return true;
}

template <class... First, class... Second, class... Third>
RecordList<First..., Second..., Third...> Joined(RecordList<First...>, RecordList<Second...>,
                                                 RecordList<Third...>);

/// Every record that a node or a port can have.
using EveryRecord = decltype(Joined(NodeRecords{}, PortRecords{}, IndexedPortRecords{}));

/// The record's position in the list; the size of the list if it is not in it.
template <class Record, class... Listed>
constexpr std::size_t IndexIn(RecordList<Listed...>) {
  std::size_t index = 0;
  static_cast<void>(((std::is_same_v<Record, Listed> || (++index, false)) || ...));
  return index;
}

template <class Record>
struct TableOf {
  static constexpr const auto& kRows = FieldsOf<Record>::kRows;
  static constexpr std::size_t kRowCount = std::extent_v<std::remove_reference_t<decltype(kRows)>>;

  static_assert(std::is_trivially_copyable_v<Record> && std::is_standard_layout_v<Record>);
  static_assert(kRowCount <= 64, "rows are marked in a 64-bit word");
  static_assert(InDeclaredOrder(kRows), "the table is not in declared order");
  static_assert(kHasNumbers<Record, CountNumbers(kRows)>, "the table misses a field");
  static_assert(AllHaveAPlaceOrNone(kRows), "some fields have a place and others do not");
  static_assert(FitTheirTypes(kRows), "a field has more bits than its type, or is not whole bytes");
  static_assert(ShareNoBit(kRows), "two fields share a bit");
  static_assert(LieWithin(kRows, FieldsOf<Record>::kDataBytes), "a field is outside the data");
  static_assert(HaveWholeIdentities(kRows), "a part of an identity is missing");

  static constexpr RecordTable value{FieldsOf<Record>::kName,
                                     kRows,
                                     kRowCount,
                                     sizeof(Record),
                                     CountNumbers(kRows),
                                     DumpedRows(kRows),
                                     IdentifyDevice(kRows),
                                     IndexIn<Record>(EveryRecord{})};
};

}  // namespace fabscan

// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are a type and a member.
/// Begins the rows of a record: `FABSCAN_RECORD_ROWS(type, data_bytes) = { rows... };};`
/// `data_bytes`: the size of the attribute, or `kAnyLength`.
#define FABSCAN_RECORD_ROWS(type, data_bytes)             \
  template <>                                             \
  struct FieldsOf<type> {                                 \
    using Record = type;                                  \
    static constexpr std::string_view kName = #type;      \
    static constexpr std::size_t kDataBytes = data_bytes; \
    static constexpr FieldRow kRows[]

/// One row: `FABSCAN_ROW(member, dumped, first_bit, bits)`, then an Identity if needed.
#define FABSCAN_ROW(member, dumped, ...) \
  MakeRow<decltype(Record::member)>(#member, offsetof(Record, member), dumped, __VA_ARGS__)
// NOLINTEND(bugprone-macro-parentheses)

#endif
