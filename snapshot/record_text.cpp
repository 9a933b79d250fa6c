#include "snapshot/record_text.h"

#include <cstring>
#include <utility>

namespace fabscan {

// ---------- Writing ----------

// Most of a snapshot consists of records, so their text is composed directly in the buffer, which
// has space for a whole record. The compiler generates a function for each table, in which the key
// and offset of each field are constants.

namespace {

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
  static constexpr KeyText kKey = MakeKey(kTable->rows[kRow].name);
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

/// Writes a comma, the key and the value of the field; nothing if it is omitted.
template <const RecordTable* kTable, std::size_t kRow>
char* PutField(char* at, const void* record) {
  constexpr const FieldRow& kField = kTable->rows[kRow];
  if constexpr (!kField.is_array && kField.nested == nullptr) {
    const u_int64_t value = LoadNumber(kField.element(record, 0), kField.size);
    if constexpr (!kField.dumped && kField.size == 1) {
      // Written unconditionally, kept only if non-zero: avoids an unpredictable branch.
      const char* const end = PutSmall(PutKey<kTable, kRow>(at), static_cast<u_int32_t>(value));
      return at + ((end - at) & -static_cast<std::ptrdiff_t>(value != 0));
    }
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
  *begin = '{';  // replaces the comma of the first key
  *at++ = '}';
  return at;
}

using PutText = char* (*)(char* at, const void* record);

template <class... Records>
constexpr std::array<PutText, sizeof...(Records)> PutTexts(RecordList<Records...>) {
  return {&PutRecord<&TableOf<Records>::value>...};
}

constexpr auto kPutText = PutTexts(EveryRecord{});

}  // namespace

char* PutRecordText(const RecordTable& table, char* at, const void* record) {
  return kPutText[table.index](at, record);
}

// ---------- Reading ----------

// The counterpart of the record writer: a function for each table, which knows the expected text.
// No expected text contains a line end, so it never reads past the end of its line.

namespace {

/// Each parses one token at `at`; returns its end, or null if it does not match. Of so many calls
/// the compiler would inline none by itself.
template <std::size_t kSize>
[[gnu::always_inline]] inline const char* TakeDecimal(const char* at, u_int64_t& number) {
  constexpr u_int64_t kLargest = ~u_int64_t{0} >> (64 - 8 * kSize);
  constexpr std::size_t kMostDigits = 10;
  const auto digit = [&at](std::size_t i) { return static_cast<unsigned>(at[i]) - '0'; };
  if (digit(0) > 9) return nullptr;
  number = digit(0);
  if (number == 0) return at + 1;  // a digit after it does not match what comes next
  std::size_t count = 1;
  for (; count <= kMostDigits && digit(count) <= 9; ++count) number = 10 * number + digit(count);
  return number > kLargest ? nullptr : at + count;
}

/// The number of the eight bytes before the first quote; 8 if there is none.
std::size_t BeforeQuote(const char* at) {
  constexpr u_int64_t kEach = 0x0101010101010101;
  u_int64_t bytes = 0;
  std::memcpy(&bytes, at, sizeof bytes);
  bytes ^= '"' * kEach;  // quotes become 0
  const u_int64_t zeros = (bytes - kEach) & ~bytes & (0x80 * kEach);
  return zeros == 0 ? 8 : static_cast<std::size_t>(__builtin_ctzll(zeros)) / 8;
}

const char* TakeHex(const char* at, u_int64_t& number) {
  if (std::memcmp(at, "\"0x", 3) != 0) return nullptr;
  at += 3;
  std::size_t digits = BeforeQuote(at);
  if (digits == 8) digits += BeforeQuote(at + 8);
  if (at[digits] != '"' || !ReadHexDigits({at, digits}, number)) return nullptr;
  return at + digits + 1;
}

template <const RecordTable* kTable>
const char* TakeRecord(const char* at, void* record);

template <const RecordTable* kNested, std::size_t kSize>
const char* TakeElement(const char* at, void* element) {
  if constexpr (kNested != nullptr) {
    return TakeRecord<kNested>(at, element);
  } else {
    u_int64_t number = 0;
    at = kSize == sizeof number ? TakeHex(at, number) : TakeDecimal<kSize>(at, number);
    if (at != nullptr) StoreNumber(element, kSize, number);
    return at;
  }
}

template <const RecordTable* kTable, std::size_t kRow>
const char* TakeValue(const char* at, void* record) {
  constexpr const FieldRow& kField = kTable->rows[kRow];
  if constexpr (!kField.is_array) {
    return TakeElement<kField.nested, kField.size>(at, kField.element(record, 0));
  }
  for (std::size_t i = 0; i < kField.count; ++i) {
    if (*at++ != (i == 0 ? '[' : ',')) return nullptr;
    at = TakeElement<kField.nested, kField.size>(at, kField.element(record, i));
    if (at == nullptr) return nullptr;
  }
  return *at == ']' ? at + 1 : nullptr;
}

/// Parses the field if it is next, at `at`: after '{' for the first one, after ',' for others.
/// Returns false if a required field is missing, or its value does not match.
template <const RecordTable* kTable, std::size_t kRow>
bool TakeField(const char*& at, char& before, void* record) {
  static constexpr KeyText kKey = MakeKey(kTable->rows[kRow].name);
  const bool next = *at == before && std::memcmp(at + 1, kKey.text + 1, kKey.size - 1) == 0;
  if (!next) return !kTable->rows[kRow].dumped;
  before = ',';
  at = TakeValue<kTable, kRow>(at + kKey.size, record);
  return at != nullptr;
}

template <const RecordTable* kTable, std::size_t... kRows>
const char* TakeFields(const char* at, void* record, std::index_sequence<kRows...>) {
  char before = '{';
  if (!(TakeField<kTable, kRows>(at, before, record) && ...)) return nullptr;
  if (before == '{' && *at++ != '{') return nullptr;
  return *at == '}' ? at + 1 : nullptr;
}

template <const RecordTable* kTable>
const char* TakeRecord(const char* at, void* record) {
  return TakeFields<kTable>(at, record, std::make_index_sequence<kTable->row_count>());
}

using TakeText = const char* (*)(const char* at, void* record);

template <class... Records>
constexpr std::array<TakeText, sizeof...(Records)> TakeTexts(RecordList<Records...>) {
  return {&TakeRecord<&TableOf<Records>::value>...};
}

constexpr auto kTakeText = TakeTexts(EveryRecord{});

}  // namespace

bool TakeCanonicalRecord(const RecordTable& table, const char* text, void* record) {
  // A nested record is parsed or decoded with its outer record.
  return table.index < kTakeText.size() && kTakeText[table.index](text, record) != nullptr;
}

}  // namespace fabscan
