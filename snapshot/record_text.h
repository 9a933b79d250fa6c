#ifndef FABSCAN_SNAPSHOT_RECORD_TEXT_H
#define FABSCAN_SNAPSHOT_RECORD_TEXT_H

#include <array>
#include <string_view>

#include "records/record_kinds.h"
#include "snapshot/number_text.h"

// Records in the form of snapshots, for the tables of `EveryRecord`.

namespace fabscan {

/// The text before a field's value in a snapshot: `,"name":`.
struct KeyText {
  char text[64];
  u_int8_t size;
};

constexpr KeyText MakeKey(std::string_view name) {
  KeyText key = {};
  const auto append = [&key](std::string_view text) {
    for (const char c : text) key.text[key.size++] = c;
  };
  append(",\"");
  append(name);
  append("\":");
  return key;
}

/// The maximum size of a record in a snapshot, in bytes.
constexpr std::size_t TextBytes(const RecordTable& table) {
  std::size_t bytes = 2;
  for (const FieldRow& row : table) {
    const std::size_t element = row.nested == nullptr ? kNumberBytes : TextBytes(*row.nested);
    bytes += sizeof(KeyText::text) + 2 + row.count * (element + 1);
  }
  return bytes;
}

/// Writes the record's text to `at`, which has space for `TextBytes`, and returns its end.
char* PutRecordText(const RecordTable& table, char* at, const void* record);

/// Parses a record in canonical form: fields in declared order, no blanks, no number in another
/// form. Returns false for any other text, valid or not; some fields may then be set, and the whole
/// text must be decoded.
///
/// `text` begins with the record and is followed by a line end and `LineReader::kPadding` bytes.
bool TakeCanonicalRecord(const RecordTable& table, const char* text, void* record);

}  // namespace fabscan

#endif
