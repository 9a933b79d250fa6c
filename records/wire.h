#ifndef FABSCAN_RECORDS_WIRE_H
#define FABSCAN_RECORDS_WIRE_H

#include <endian.h>

#include <cstddef>
#include <cstring>

#include "records/number.h"

namespace fabscan {

/// Eight bytes of a packed attribute that hold all of a place, as a number in the host's byte
/// order: those up to the last byte of the place, or the first eight.
struct WireWord {
  std::size_t byte;
  unsigned shift;  // from the last bit of the place to that of the number
  u_int64_t mask;  // of the place, before the shift

  explicit constexpr WireWord(Place place)
      : byte(place.end() > 64 ? (place.end() - 1) / 8 - 7 : 0),
        shift(static_cast<unsigned>(8 * byte + 64) - place.end()),
        mask(~u_int64_t{0} >> (64 - place.bits)) {}
};

/// The number in `place`. `bytes` holds at least eight bytes, and those of the place.
inline u_int64_t ReadBits(const u_int8_t* bytes, Place place) {
  const WireWord at(place);
  u_int64_t word = 0;
  std::memcpy(&word, bytes + at.byte, sizeof word);
  return be64toh(word) >> at.shift & at.mask;
}

/// Sets `place` to the low bits of `value`; other bits do not change.
inline void WriteBits(u_int8_t* bytes, Place place, u_int64_t value) {
  const WireWord at(place);
  u_int64_t word = 0;
  std::memcpy(&word, bytes + at.byte, sizeof word);
  word = htobe64((be64toh(word) & ~(at.mask << at.shift)) | (value & at.mask) << at.shift);
  std::memcpy(bytes + at.byte, &word, sizeof word);
}

/// How many bytes the packed attribute has: the data of a subnet management packet, or more if its
/// fields need more.
constexpr std::size_t PackedBytes(const RecordTable& table) {
  unsigned end = 0;
  ForEachNumber(table, [&end](const Number& number) {
    if (number.place.end() > end) end = number.place.end();
  });
  const std::size_t bytes = (end + 7) / 8;
  return bytes > kSmpDataBytes ? bytes : kSmpDataBytes;
}

/// Reads every field of `record` from the packed attribute.
inline void UnpackRecord(const RecordTable& table, const u_int8_t* bytes, void* record) {
  ForEachNumber(table,
                [&](const Number& number) { number.Store(record, ReadBits(bytes, number.place)); });
}

/// Writes every field of `record` to its place in the packed attribute. A value that does not fit
/// is truncated to its low bits. Bits that belong to no field do not change.
inline void PackRecord(const RecordTable& table, const void* record, u_int8_t* bytes) {
  ForEachNumber(table,
                [&](const Number& number) { WriteBits(bytes, number.place, number.Load(record)); });
}

}  // namespace fabscan

#endif
