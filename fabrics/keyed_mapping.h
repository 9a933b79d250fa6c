#ifndef FABSCAN_FABRICS_KEYED_MAPPING_H
#define FABSCAN_FABRICS_KEYED_MAPPING_H

#include <sys/types.h>

#include <array>
#include <string>
#include <string_view>

namespace fabscan {

/// Replaces identifying values: the same value with the same key gives the same replacement,
/// and without the key neither can be derived from the other.
class KeyedMapping {
 public:
  /// Uses a random key that is not stored.
  KeyedMapping();
  /// Derives the key from `secret`, which must not be empty. Needs some time and 64 MB, so that
  /// secrets cannot be guessed quickly. Throws std::runtime_error without this memory.
  explicit KeyedMapping(std::string_view secret);
  ~KeyedMapping();
  KeyedMapping(const KeyedMapping&) = delete;
  KeyedMapping& operator=(const KeyedMapping&) = delete;

  /// 0 means none, and stays 0.
  u_int64_t Guid(u_int64_t guid) const;
  /// Either half of a GID: a GUID or a prefix. 0 and the default prefix stay.
  u_int64_t GidHalf(u_int64_t half) const;
  /// 48 bits; 0 stays.
  u_int64_t MacAddress(u_int64_t address) const;
  /// 0 and the well-known key of management, 0x80010000, stay.
  u_int32_t QueueKey(u_int32_t queue_key) const;
  /// `node-` and 16 hexadecimal digits; an empty name stays.
  std::string Name(std::string_view name) const;

 private:
  u_int64_t hash(char kind, std::string_view bytes) const;
  u_int64_t hash(char kind, u_int64_t number) const;

  std::array<unsigned char, 32> key_;
};

}  // namespace fabscan

#endif
