#ifndef FABSCAN_DISCOVERY_PLACE_INDEX_H
#define FABSCAN_DISCOVERY_PLACE_INDEX_H

#include <sys/types.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace fabscan {

/// Spreads numbers that are close together, as GUIDs are, over all 64 bits.
inline u_int64_t HashOf(u_int64_t number) {
  number *= 0x9e3779b97f4a7c15U;
  return number ^ number >> 32U;
}

/// Finds the place of an entry by its key. Entries stay where they are and are asked for their keys
/// by `key_at`, a function from place to key; the index takes eight to sixteen bytes for each. Keys
/// have a `HashOf`.
template <class Key, class KeyAt>
class PlaceIndex {
 public:
  static constexpr u_int32_t kNone = 0xFFFFFFFF;

  /// For no more than `entries`.
  PlaceIndex(std::size_t entries, KeyAt key_at) : key_at_(std::move(key_at)) {
    std::size_t slots = 2;
    while (slots < 2 * entries) slots *= 2;  // half of them stay free
    slots_.assign(slots, kNone);
  }

  /// False where an entry with the same key is in already.
  bool Insert(u_int32_t place) {
    u_int32_t& slot = slots_[SlotOf(key_at_(place))];
    if (slot != kNone) return false;
    slot = place;
    return true;
  }
  /// The place of the entry with this key, or `kNone`.
  u_int32_t Find(const Key& key) const { return slots_[SlotOf(key)]; }

 private:
  /// Where the key is, or the free slot where it would be.
  std::size_t SlotOf(const Key& key) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = HashOf(key) & mask;
    while (slots_[slot] != kNone && !(key_at_(slots_[slot]) == key)) slot = (slot + 1) & mask;
    return slot;
  }

  KeyAt key_at_;
  std::vector<u_int32_t> slots_;
};

}  // namespace fabscan

#endif
