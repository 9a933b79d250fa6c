#ifndef SIMULATOR_CORE_FIELDS_H
#define SIMULATOR_CORE_FIELDS_H

#include <sys/types.h>

#include <cstddef>
#include <type_traits>

/// One walk over a record's fields serves packing, unpacking and comparing: `WalkFields(record,
/// visit)` calls `visit(place, name, index, value)` for each field, where `place` says where the
/// field stands in the packed attribute and `index` is its place in an array, or `kNotIndexed`.

namespace fabscan {
namespace simulator {

/// Bits of a packed attribute, counted from the most significant bit of its first byte.
struct Place {
  unsigned offset;
  unsigned width;
};

constexpr int kNotIndexed = -1;

/// Hands fields to a visitor: each at a place of its own, or one after the other, every field as
/// wide as in the record.
template <class Visit>
class Placer {
 public:
  explicit constexpr Placer(Visit& visit) : visit_(visit) {}

  template <class Value>
  constexpr void operator()(unsigned offset, unsigned width, const char* name, Value& value) {
    visit_(Place{offset, width}, name, kNotIndexed, value);
  }

  template <class Value>
  constexpr void operator()(const char* name, Value& value) {
    if constexpr (std::is_array<Value>::value) {
      for (std::size_t i = 0; i < std::extent<Value>::value; ++i) {
        next(name, static_cast<int>(i), value[i]);
      }
    } else {
      next(name, kNotIndexed, value);
    }
  }

 private:
  template <class Value>
  constexpr void next(const char* name, int index, Value& value) {
    constexpr unsigned kWidth = 8 * sizeof(Value);
    visit_(Place{offset_, kWidth}, name, index, value);
    offset_ += kWidth;
  }

  Visit& visit_;
  unsigned offset_ = 0;
};

/// The number that stands in `place`.
inline u_int64_t ReadBits(const u_int8_t* bytes, Place place) {
  u_int64_t value = 0;
  for (unsigned bit = place.offset; bit < place.offset + place.width; ++bit) {
    value = value << 1U | (bytes[bit / 8] >> (7 - bit % 8) & 1U);
  }
  return value;
}

/// Puts the low `place.width` bits of `value` into `place`; the bits around it stay as they are.
inline void WriteBits(u_int8_t* bytes, Place place, u_int64_t value) {
  for (unsigned bit = place.offset + place.width; bit-- > place.offset; value >>= 1U) {
    const unsigned mask = 0x80U >> bit % 8;
    const unsigned others = bytes[bit / 8] & ~mask;
    bytes[bit / 8] = static_cast<u_int8_t>((value & 1U) != 0 ? others | mask : others);
  }
}

}  // namespace simulator
}  // namespace fabscan

#endif
