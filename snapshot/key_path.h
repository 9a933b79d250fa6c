#ifndef FABSCAN_SNAPSHOT_KEY_PATH_H
#define FABSCAN_SNAPSHOT_KEY_PATH_H

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace fabscan {

/// What is wrong with a line of a snapshot, and what to do; the place is added by whoever knows it.
class Malformed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Where in a line the decoder is. An error leaves the path as it is, so that the place can be
/// told.
class KeyPath {
 public:
  /// `key` outlives the path.
  void Enter(std::string_view key) { steps_[depth_++] = {key, 0}; }
  void EnterElement(std::size_t index) { steps_[depth_++] = {{}, index}; }
  void Leave() { --depth_; }
  void Clear() { depth_ = 0; }

  /// `ports[3].attributes.SMP_PortInfo.LMC`; empty at the line's own object.
  std::string text() const {
    std::string text;
    for (std::size_t i = 0; i < depth_; ++i) {
      if (steps_[i].key.empty()) {
        text += '[' + std::to_string(steps_[i].index) + ']';
      } else {
        if (!text.empty()) text += '.';
        text += steps_[i].key;
      }
    }
    return text;
  }

 private:
  struct Step {
    std::string_view key;  // empty for an element of a list
    std::size_t index;
  };
  static constexpr std::size_t kDeepest = 16;  // more than the format has levels

  std::array<Step, kDeepest> steps_{};
  std::size_t depth_ = 0;
};

}  // namespace fabscan

#endif
