#ifndef FABSCAN_BENCH_NUMBERS_H
#define FABSCAN_BENCH_NUMBERS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace fabscan {

/// A small generator of numbers that is the same on every machine (splitmix64).
class Numbers {
 public:
  explicit Numbers(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = (state_ += 0x9e3779b97f4a7c15U);
    z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
    return z ^ (z >> 31U);
  }

  /// A record whose every field holds some number. Records are plain structures of unsigned
  /// integers, so any bytes are a value; the host's byte order is little-endian wherever this runs.
  template <class Record>
  Record Fill() {
    static_assert(std::is_trivially_copyable_v<Record>);
    unsigned char bytes[sizeof(Record) + sizeof(std::uint64_t)];
    for (std::size_t at = 0; at < sizeof(Record); at += sizeof(std::uint64_t)) {
      const std::uint64_t number = Next();
      std::memcpy(bytes + at, &number, sizeof number);
    }
    Record record;
    std::memcpy(&record, bytes, sizeof record);
    return record;
  }

 private:
  std::uint64_t state_;
};

}  // namespace fabscan

#endif
