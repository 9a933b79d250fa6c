#ifndef FABSCAN_RECORDS_NUMBER_H
#define FABSCAN_RECORDS_NUMBER_H

#include <cstddef>
#include <string>
#include <utility>

#include "records/field.h"

namespace fabscan {

/// One number of a record, in whichever nested record or array.
struct Number {
  const FieldRow& row;   // the field that holds it
  std::size_t index;     // in that field
  const Number* within;  // the element that holds the field; null in the record itself
  std::size_t offset;    // in the record, in bytes
  Place place;           // in the packed attribute

  u_int64_t Load(const void* record) const {
    return LoadNumber(static_cast<const char*>(record) + offset, row.size);
  }
  void Store(void* record, u_int64_t value) const {
    StoreNumber(static_cast<char*>(record) + offset, row.size, value);
  }

  /// As a C++ expression within the record: `FWInfo.PSID.PSID[3]`.
  std::string path() const {
    std::string path = within == nullptr ? std::string() : within->path() + '.';
    path += row.name;
    if (row.is_array) path += '[' + std::to_string(index) + ']';
    return path;
  }
};

/// Returns the bit behind the last number.
template <class Visit>
constexpr unsigned VisitNumbers(const RecordTable& table, const Number* within, std::size_t offset,
                                unsigned next_bit, Visit& visit) {
  for (const FieldRow& row : table) {
    for (std::size_t i = 0; i < row.count; ++i) {
      Place place{next_bit, row.bits()};
      if (row.place.bits != 0) {
        place = {row.place.first_bit + static_cast<unsigned>(i) * row.place.bits, row.place.bits};
      }
      const Number number{row, i, within, offset + row.offset + i * row.size, place};
      if (row.nested == nullptr) {
        visit(number);
        next_bit = place.end();
      } else {
        next_bit = VisitNumbers(*row.nested, &number, number.offset, next_bit, visit);
      }
    }
  }
  return next_bit;
}

/// Calls `visit(number)` for every number of such a record, in declared order.
template <class Visit>
constexpr void ForEachNumber(const RecordTable& table, Visit&& visit) {
  VisitNumbers(table, nullptr, 0, 0, visit);
}

}  // namespace fabscan

#endif
