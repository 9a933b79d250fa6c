#ifndef FABSCAN_DISCOVERY_FILE_BYTES_H
#define FABSCAN_DISCOVERY_FILE_BYTES_H

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace fabscan {

/// A growing buffer for the bytes of a file. Unlike std::string, it does not zero new space.
class FileBytes {
 public:
  FileBytes() = default;
  explicit FileBytes(std::string_view bytes) {
    std::copy(bytes.begin(), bytes.end(), Room(bytes.size()));
    Take(bytes.size());
  }

  std::size_t size() const { return size_; }
  std::string_view view() const { return {bytes_.get(), size_}; }

  void Reserve(std::size_t capacity) {
    if (capacity <= capacity_) return;
    std::unique_ptr<char[]> larger(new char[capacity]);
    std::copy(bytes_.get(), bytes_.get() + size_, larger.get());
    bytes_ = std::move(larger);
    capacity_ = capacity;
  }
  /// Space for the next `count` bytes; `Take` sets how many were read into it.
  char* Room(std::size_t count) {
    if (capacity_ - size_ < count) Reserve(std::max(size_ + count, 2 * capacity_));
    return bytes_.get() + size_;
  }
  void Take(std::size_t count) { size_ += count; }

 private:
  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace fabscan

#endif
