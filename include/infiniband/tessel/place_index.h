#ifndef INFINIBAND_TESSEL_PLACE_INDEX_H
#define INFINIBAND_TESSEL_PLACE_INDEX_H

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

namespace fabscan {

/// Spreads numbers that are close together, as GUIDs are, over all 64 bits.
inline u_int64_t HashOf(u_int64_t number) {
  number *= 0x9e3779b97f4a7c15U;
  return number ^ number >> 32U;
}

inline u_int64_t HashOf(std::string_view text) { return std::hash<std::string_view>()(text); }

/// Finds the index of an entry by its key, which has a `HashOf`. Keys are stored inline: one cache
/// line per lookup; the load factor is at most 1/2.
template <class Key>
class PlaceIndex {
 public:
  static constexpr u_int32_t kNone = 0xFFFFFFFF;

  /// Reserves space for `entries` entries.
  explicit PlaceIndex(std::size_t entries = 0) {
    std::size_t slots = 32;
    while (slots < 2 * entries) slots *= 2;
    slots_.resize(slots);
  }

  /// Returns false for a duplicate key.
  bool Insert(const Key& key, u_int32_t place) {
    if (2 * count_ >= slots_.size()) Grow();
    Slot& slot = slots_[SlotOf(key)];
    if (slot.place != kNone) return false;
    slot = {key, place};
    ++count_;
    return true;
  }
  /// The index of the entry with this key, or `kNone`.
  u_int32_t Find(const Key& key) const { return slots_[SlotOf(key)].place; }

  void Clear() {
    slots_.assign(slots_.size(), {});
    count_ = 0;
  }

 private:
  struct Slot {
    Key key = {};
    u_int32_t place = kNone;
  };

  /// The slot of the key, or the free slot for it.
  std::size_t SlotOf(const Key& key) const {
    std::size_t i = static_cast<std::size_t>(HashOf(key)) & (slots_.size() - 1);
    while (slots_[i].place != kNone && !(slots_[i].key == key)) i = (i + 1) & (slots_.size() - 1);
    return i;
  }

  void Grow() {
    std::vector<Slot> old(2 * slots_.size());
    old.swap(slots_);
    for (const Slot& slot : old) {
      if (slot.place != kNone) slots_[SlotOf(slot.key)] = slot;
    }
  }

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
};

}  // namespace fabscan

#endif
