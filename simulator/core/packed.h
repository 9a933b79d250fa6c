#ifndef SIMULATOR_CORE_PACKED_H
#define SIMULATOR_CORE_PACKED_H

#include <cstddef>
#include <type_traits>

#include "architecture_records.h"
#include "fields.h"
#include "reduction_records.h"
#include "vendor_records.h"

namespace fabscan {
namespace simulator {

/// Reads each field of `record` from the packed attribute.
template <class Record>
void Unpack(Record& record, const u_int8_t* bytes) {
  auto read = [bytes](Place place, const char*, int, auto& value) {
    value = static_cast<std::decay_t<decltype(value)>>(ReadBits(bytes, place));
  };
  WalkFields(record, read);
}

/// Writes each field of `record` to its place in the packed attribute; a value that does not fit
/// its place is cut to the low bits. Bits that belong to no field stay as they are.
template <class Record>
void Pack(Record record, u_int8_t* bytes) {
  auto write = [bytes](Place place, const char*, int, auto& value) {
    WriteBits(bytes, place, value);
  };
  WalkFields(record, write);
}

/// The attribute area of a subnet management packet; longer attributes take what they need.
constexpr std::size_t kSmpDataBytes = 64;

template <class Record>
constexpr std::size_t PackedBytes() {
  Record record{};
  unsigned end = 0;
  auto reach = [&end](Place place, const char*, int, auto&) {
    if (place.offset + place.width > end) end = place.offset + place.width;
  };
  WalkFields(record, reach);
  const std::size_t bytes = (end + 7) / 8;
  return bytes > kSmpDataBytes ? bytes : kSmpDataBytes;
}

/// A node's storage for one attribute, as it goes on the wire.
template <class Record>
struct Packed {
  using RecordType = Record;
  u_int8_t bytes[PackedBytes<Record>()] = {};
};

}  // namespace simulator
}  // namespace fabscan

#endif
