#include "record_writer.h"

#include <array>
#include <charconv>
#include <cstring>
#include <utility>

#include "record_fields.h"

// Nearly all of a snapshot is records, so their text is put together by hand: there is room for a
// whole record in the buffer, and the compiler makes a function of each table, in which each
// field's key and place are constants.

namespace fabscan {

namespace {

/// The digits of a number below 256, and how many there are.
struct SmallNumber {
  char digits[3];
  u_int8_t count;
};

constexpr std::array<SmallNumber, 256> MakeSmallNumbers() {
  std::array<SmallNumber, 256> all = {};
  for (std::size_t value = 0; value < all.size(); ++value) {
    SmallNumber& number = all[value];
    for (unsigned unit = value < 10 ? 1 : value < 100 ? 10 : 100; unit > 0; unit /= 10) {
      number.digits[number.count++] = static_cast<char>('0' + value / unit % 10);
    }
  }
  return all;
}

constexpr std::array<SmallNumber, 256> kSmallNumbers = MakeSmallNumbers();

struct DigitPair {
  char digits[2];
};

/// All pairs of digits: those of 0 to base * base - 1.
template <std::size_t kBase>
constexpr std::array<DigitPair, kBase * kBase> MakePairs() {
  constexpr char kDigits[] = "0123456789abcdef";
  std::array<DigitPair, kBase* kBase> all = {};
  for (unsigned value = 0; value < all.size(); ++value) {
    all[value] = {{kDigits[value / kBase], kDigits[value % kBase]}};
  }
  return all;
}

constexpr auto kDecimalPairs = MakePairs<10>();
constexpr auto kHexPairs = MakePairs<16>();

char* PutPair(char* at, const DigitPair& pair) {
  std::memcpy(at, &pair, sizeof pair);
  return at + sizeof pair;
}

char* PutSmall(char* at, u_int32_t value) {
  const SmallNumber& number = kSmallNumbers[value];
  std::memcpy(at, &number, sizeof number);  // all four bytes, in one move
  return at + number.count;
}

char* PutDecimal(char* at, u_int32_t value) {
  if (value < kSmallNumbers.size()) return PutSmall(at, value);
  if (value < 10'000) return PutPair(PutSmall(at, value / 100), kDecimalPairs[value % 100]);
  if (value >= 1'000'000) return std::to_chars(at, at + kNumberBytes, value).ptr;
  at = PutPair(PutSmall(at, value / 10'000), kDecimalPairs[value / 100 % 100]);
  return PutPair(at, kDecimalPairs[value % 100]);
}

char* PutHex(char* at, u_int64_t value) {
  *at++ = '"';
  *at++ = '0';
  *at++ = 'x';
  const auto count = static_cast<unsigned>(67 - __builtin_clzll(value | 1U)) / 4;
  value <<= 64 - 4 * count;
  for (unsigned i = 0; i < count; i += 2) {
    PutPair(at + i, kHexPairs[value >> 56U]);
    value <<= 8U;
  }
  at[count] = '"';
  return at + count + 1;
}

template <std::size_t kSize>
char* PutNumber(char* at, u_int64_t value) {
  if constexpr (kSize == sizeof(u_int64_t)) return PutHex(at, value);
  return PutDecimal(at, static_cast<u_int32_t>(value));
}

bool AllZero(const RecordTable& table, const void* record);

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

bool AllZero(const RecordTable& table, const void* record) {
  for (const FieldRow& row : table) {
    if (!AllZero(row, record)) return false;
  }
  return true;
}

template <const RecordTable* kTable>
char* PutRecord(char* at, const void* record);

template <const RecordTable* kTable, std::size_t kRow>
char* PutKey(char* at) {
  constexpr const KeyText& kKey = kTable->keys[kRow];
  std::memcpy(at, kKey.text, kKey.size);
  return at + kKey.size;
}

template <const RecordTable* kNested, std::size_t kSize>
char* PutElement(char* at, const void* element) {
  if constexpr (kNested != nullptr) {
    return PutRecord<kNested>(at, element);
  } else {
    return PutNumber<kSize>(at, LoadNumber(element, kSize));
  }
}

/// The field with its key, behind a comma; nothing, where it is left out.
template <const RecordTable* kTable, std::size_t kRow>
char* PutField(char* at, const void* record) {
  constexpr const FieldRow& kField = kTable->rows[kRow];
  if constexpr (!kField.is_array && kField.nested == nullptr) {
    const u_int64_t value = LoadNumber(kField.element(record, 0), kField.size);
    if (!kField.dumped && value == 0) return at;
    return PutNumber<kField.size>(PutKey<kTable, kRow>(at), value);
  }
  if (!kField.dumped && AllZero(kField, record)) return at;
  at = PutKey<kTable, kRow>(at);
  if constexpr (kField.is_array) *at++ = '[';
  for (std::size_t i = 0; i < kField.count; ++i) {
    if (i != 0) *at++ = ',';
    at = PutElement<kField.nested, kField.size>(at, kField.element(record, i));
  }
  if constexpr (kField.is_array) *at++ = ']';
  return at;
}

template <const RecordTable* kTable, std::size_t... kRows>
char* PutFields(char* at, const void* record, std::index_sequence<kRows...>) {
  ((at = PutField<kTable, kRows>(at, record)), ...);
  return at;
}

template <const RecordTable* kTable>
char* PutRecord(char* at, const void* record) {
  char* const begin = at;
  at = PutFields<kTable>(at, record, std::make_index_sequence<kTable->row_count>());
  if (at == begin) ++at;
  *begin = '{';  // where the first key has its comma
  *at++ = '}';
  return at;
}

}  // namespace

template <class Record>
char* PutRecordText(char* at, const void* record) {
  return PutRecord<&TableOf<Record>::value>(at, record);
}

#define PUTS_TEXT(record) template char* PutRecordText<record>(char*, const void*);
FABSCAN_EACH_RECORD(PUTS_TEXT)
#undef PUTS_TEXT

void WriteRecord(JsonWriter& json, const RecordTable& table, const void* record) {
  json.EndValue(table.put_text(json.BeginValue(table.text_bytes), record));
}

}  // namespace fabscan
