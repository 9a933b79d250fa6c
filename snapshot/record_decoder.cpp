#include "snapshot/record_decoder.h"

#include "snapshot/known_keys.h"
#include "snapshot/record_text.h"

namespace fabscan {

namespace {

void DecodeElement(json::value value, const FieldRow& row, void* element, KeyPath& path) {
  if (row.nested == nullptr) {
    StoreNumber(element, row.size, TakeNumber(value, row.bits()));
  } else {
    DecodeRecord(value, *row.nested, element, path);
  }
}

void DecodeElements(json::array elements, const FieldRow& row, void* record, KeyPath& path) {
  std::size_t count = 0;
  for (auto element : elements) {
    if (count < row.count) {
      path.EnterElement(count);
      DecodeElement(Take(element), row, row.element(record, count), path);
      path.Leave();
    }
    ++count;
  }
  if (count != row.count) {
    throw Malformed("the list has " + std::to_string(count) + " elements; give " +
                    std::to_string(row.count));
  }
}

[[noreturn]] void RefuseMissing(const RecordTable& table, u_int64_t missing) {
  std::size_t first = 0;
  while (((missing >> first) & 1U) == 0) ++first;
  throw Malformed("the field " + Quoted(table.rows[first].name) +
                  " is missing, which the generated file needs; give it, or leave the record out "
                  "and say why under \"absent\"");
}

}  // namespace

void DecodeRecord(json::value value, const RecordTable& table, void* record, KeyPath& path) {
  // What is not taken out of a value here is passed over when its object goes on.
  if (TakeCanonicalRecord(table, value.raw_json_token().data(), record)) return;
  KnownKeys known(table, "field");
  for (auto item : TakeObject(value)) {
    json::field field = Take(std::move(item));
    const FieldRow& row = table.rows[known.Find(field)];
    path.Enter(row.name);
    if (row.is_array) {
      DecodeElements(TakeArray(field.value()), row, record, path);
    } else {
      DecodeElement(field.value(), row, row.element(record, 0), path);
    }
    path.Leave();
  }
  const u_int64_t missing = table.dumped_rows & ~known.seen();
  if (missing != 0) RefuseMissing(table, missing);
}

}  // namespace fabscan
