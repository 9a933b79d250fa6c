#ifndef INFINIBAND_FABSCAN_SLOT_TABLE_H
#define INFINIBAND_FABSCAN_SLOT_TABLE_H

#include <sys/types.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <vector>

namespace fabscan {

/// The records of one attribute, by dense creation index. A lookup takes constant time; addresses
/// are stable until the table is cleared; an index without a record costs four bytes.
template <class Record>
class SlotTable {
 public:
  /// Null if no record was collected for this index.
  const Record* find(std::size_t index) const noexcept {
    if (index >= slots_.size() || slots_[index] == kEmpty) return nullptr;
    return &at(slots_[index] - 1);
  }

  /// The record for this index, created with zeros if missing.
  Record& slot(std::size_t index) {
    if (index >= slots_.size()) grow(index + 1);
    if (slots_[index] == kEmpty) {
      if (count_ == chunks_.size() * kChunkRecords)
        chunks_.push_back(std::unique_ptr<Chunk>(new Chunk));
      const_cast<Record&>(at(count_)) = {};
      slots_[index] = ++count_;
    }
    return const_cast<Record&>(at(slots_[index] - 1));
  }

  /// Clears all records, and keeps the memory.
  void clear() noexcept {
    slots_.clear();
    count_ = 0;
  }

  std::size_t size() const noexcept { return count_; }

 private:
  static constexpr u_int32_t kEmpty = 0;
  static constexpr std::size_t kChunkRecords = 64;
  using Chunk = std::array<Record, kChunkRecords>;

  const Record& at(std::size_t position) const noexcept {
    return (*chunks_[position / kChunkRecords])[position % kChunkRecords];
  }

  void grow(std::size_t size) {
    if (size > slots_.capacity()) slots_.reserve(std::max(size, slots_.size() + slots_.size() / 4));
    slots_.resize(slots_.capacity(), kEmpty);
  }

  std::vector<u_int32_t> slots_;  // position in the chunks plus one
  std::vector<std::unique_ptr<Chunk>> chunks_;
  u_int32_t count_ = 0;
};

}  // namespace fabscan

#endif
