#ifndef FABSCAN_RECORDS_FIELD_H
#define FABSCAN_RECORDS_FIELD_H

#include <sys/types.h>

#include <cstddef>
#include <string_view>

namespace fabscan {

/// The data of a subnet management packet, and of other management datagrams.
inline constexpr std::size_t kSmpDataBytes = 64;
inline constexpr std::size_t kGmpDataBytes = 192;

/// Bits of a packed attribute, counted from the most significant bit of its first byte. An array
/// has this many bits per element.
struct Place {
  unsigned first_bit = 0;
  unsigned bits = 0;  // 0: directly after the previous field, as wide as in the record

  constexpr unsigned end() const { return first_bit + bits; }
};

/// How a value identifies the device that reported it. If a value has several numbers, they are
/// consecutive in the record, the most significant first.
enum class Identity : u_int8_t { kNone, kGuid, kGidHalf, kMacAddress, kQueueKey };

/// The number of bits of such a value.
constexpr unsigned BitsOf(Identity identity) {
  switch (identity) {
    case Identity::kMacAddress:
      return 48;
    case Identity::kQueueKey:
      return 32;
    default:
      return 64;
  }
}

struct RecordTable;

/// One field of a record: a number, a record within the record, or an array of either.
struct FieldRow {
  std::string_view name;
  std::size_t offset;  // of the field in its record, in bytes
  std::size_t size;    // of one element, in bytes
  std::size_t count;   // elements; 1 if the field is not an array
  bool is_array;
  bool dumped;  // the generator writes it, or something within it
  Identity identity;
  Place place;
  const RecordTable* nested;  // the element's own fields; null for numbers

  constexpr unsigned bits() const { return static_cast<unsigned>(8 * size); }
  constexpr u_int64_t largest() const { return ~u_int64_t{0} >> (64 - bits()); }
  /// Whether the architecture defines the position of the field in the attribute.
  constexpr bool published() const { return place.bits != 0; }

  const void* element(const void* record, std::size_t index) const {
    return static_cast<const char*>(record) + offset + index * size;
  }
  void* element(void* record, std::size_t index) const {
    return static_cast<char*>(record) + offset + index * size;
  }
};

/// The fields of one record, in declared order.
struct RecordTable {
  std::string_view name;
  const FieldRow* rows;
  std::size_t row_count;
  std::size_t size;       // of the record, in bytes
  std::size_t numbers;    // in the whole record, nested ones included
  u_int64_t dumped_rows;  // bit r: row r is dumped
  bool identifies;        // a field, or one within it, identifies the device
  std::size_t index;      // in EveryRecord; its size for a record within others

  constexpr const FieldRow* begin() const { return rows; }
  constexpr const FieldRow* end() const { return rows + row_count; }
};

/// The row of the field with this name, or null.
constexpr const FieldRow* FindField(const RecordTable& table, std::string_view name) {
  for (const FieldRow& row : table) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

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

}  // namespace fabscan

#endif
