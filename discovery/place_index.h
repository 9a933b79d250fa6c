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
/// by `key_at`, a function from place to key; the index takes 16 to 32 bytes for each. Keys have a
/// `HashOf`.
template <class Key, class KeyAt>
class PlaceIndex {
 public:
  static constexpr u_int32_t kNone = 0xFFFFFFFF;

  /// For no more than `entries`.
  PlaceIndex(std::size_t entries, KeyAt key_at) : key_at_(std::move(key_at)) {
    std::size_t slots = 2;
    while (slots < 2 * entries) slots *= 2;  // half of them stay free
    slots_.assign(slots, {kNone, 0});
  }

  /// False where an entry with the same key is in already.
  bool Insert(u_int32_t place) {
    const Key key = key_at_(place);
    const u_int64_t hash = HashOf(key);
    Slot& slot = slots_[SlotOf(key, hash)];
    if (slot.place != kNone) return false;
    slot = {place, TagOf(hash)};
    return true;
  }
  /// The place of the entry with this key, or `kNone`.
  u_int32_t Find(const Key& key) const { return slots_[SlotOf(key, HashOf(key))].place; }

 private:
  struct Slot {
    u_int32_t place;
    u_int32_t tag;  // tells most other keys without asking for them
  };

  static u_int32_t TagOf(u_int64_t hash) { return static_cast<u_int32_t>(hash >> 32U); }

  /// Where the key is, or the free slot where it would be.
  std::size_t SlotOf(const Key& key, u_int64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
      const Slot& slot = slots_[i];
      if (slot.place == kNone) return i;
      if (slot.tag == TagOf(hash) && key_at_(slot.place) == key) return i;
    }
  }

  KeyAt key_at_;
  std::vector<Slot> slots_;
};

}  // namespace fabscan

#endif
