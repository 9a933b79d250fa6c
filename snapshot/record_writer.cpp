#include <cstring>
#include <utility>

#include "snapshot/record_text.h"

// Nearly all of a snapshot is records, so their text is put together by hand: there is room for a
// whole record in the buffer, and the compiler makes a function of each table, in which each
// field's key and place are constants.

namespace fabscan {

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

/// The field with its key, behind a comma; nothing, where it is left out.
template <const RecordTable* kTable, std::size_t kRow>
char* PutField(char* at, const void* record) {
  constexpr const FieldRow& kField = kTable->rows[kRow];
  if constexpr (!kField.is_array && kField.nested == nullptr) {
    const u_int64_t value = LoadNumber(kField.element(record, 0), kField.size);
    if constexpr (!kField.dumped && kField.size == 1) {
      // Written in any case, and kept where it is not zero: no branch that nobody can foretell.
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
  *begin = '{';  // where the first key has its comma
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

}  // namespace fabscan
