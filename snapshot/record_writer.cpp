#include "record_writer.h"

#include <array>
#include <charconv>
#include <cstring>

// Nearly all of a snapshot is records, so their text is put together by hand: there is room for a
// whole record in the buffer, and what stands between the numbers was made when this was compiled.

namespace fabscan {

namespace {

/// The digits of a number below 256, and how many there are.
struct SmallNumber {
  char digits[3];
  u_int8_t count;
};

constexpr std::array<SmallNumber, 256> MakeSmallNumbers() {
  std::array<SmallNumber, 256> all = {};
  for (unsigned value = 0; value < all.size(); ++value) {
    SmallNumber& number = all[value];
    for (unsigned unit = value < 10 ? 1 : value < 100 ? 10 : 100; unit > 0; unit /= 10) {
      number.digits[number.count++] = static_cast<char>('0' + value / unit % 10);
    }
  }
  return all;
}

constexpr std::array<SmallNumber, 256> kSmallNumbers = MakeSmallNumbers();
constexpr char kHexDigits[] = "0123456789abcdef";

char* PutDecimal(char* at, u_int64_t value) {
  if (value >= kSmallNumbers.size()) return std::to_chars(at, at + kNumberBytes, value).ptr;
  std::memcpy(at, kSmallNumbers[value].digits, sizeof kSmallNumbers[value].digits);
  return at + kSmallNumbers[value].count;
}

char* PutHex(char* at, u_int64_t value) {
  std::memcpy(at, "\"0x", 3);
  at += 3;
  unsigned bits = value == 0 ? 4 : 64 - static_cast<unsigned>(__builtin_clzll(value));
  for (bits = (bits + 3) / 4 * 4; bits > 0; bits -= 4) {
    *at++ = kHexDigits[value >> (bits - 4) & 0xFU];
  }
  *at++ = '"';
  return at;
}

char* PutNumber(char* at, std::size_t size, u_int64_t value) {
  return size == sizeof(u_int64_t) ? PutHex(at, value) : PutDecimal(at, value);
}

bool AllZero(const FieldRow& row, const void* record);

bool AllZero(const RecordTable& table, const void* record) {
  for (const FieldRow& row : table) {
    if (!AllZero(row, record)) return false;
  }
  return true;
}

bool AllZero(const FieldRow& row, const void* record) {
  for (std::size_t i = 0; i < row.count; ++i) {
    const void* element = row.element(record, i);
    if (row.nested != nullptr ? !AllZero(*row.nested, element)
                              : LoadNumber(element, row.size) != 0) {
      return false;
    }
  }
  return true;
}

char* PutKey(char* at, const KeyText& key) {
  std::memcpy(at, key.text,
              sizeof key.text);  // in whole, which is faster than the part that counts
  return at + key.size;
}

char* PutRecord(char* at, const RecordTable& table, const void* record);

char* PutElements(char* at, const FieldRow& row, const void* record) {
  if (row.is_array) *at++ = '[';
  for (std::size_t i = 0; i < row.count; ++i) {
    if (i != 0) *at++ = ',';
    const void* element = row.element(record, i);
    at = row.nested != nullptr ? PutRecord(at, *row.nested, element)
                               : PutNumber(at, row.size, LoadNumber(element, row.size));
  }
  if (row.is_array) *at++ = ']';
  return at;
}

char* PutRecord(char* at, const RecordTable& table, const void* record) {
  char* const begin = at;
  for (std::size_t i = 0; i < table.row_count; ++i) {
    const FieldRow& row = table.rows[i];
    if (row.is_array || row.nested != nullptr) {
      if (!row.dumped && AllZero(row, record)) continue;
      at = PutElements(PutKey(at, table.keys[i]), row, record);
      continue;
    }
    const u_int64_t value = LoadNumber(row.element(record, 0), row.size);
    if (!row.dumped && value == 0) continue;
    at = PutNumber(PutKey(at, table.keys[i]), row.size, value);
  }
  if (at == begin) ++at;
  *begin = '{';  // where the first key has its comma
  *at++ = '}';
  return at;
}

}  // namespace

void WriteRecord(JsonWriter& json, const RecordTable& table, const void* record) {
  json.EndValue(PutRecord(json.BeginValue(table.text_bytes), table, record));
}

}  // namespace fabscan
