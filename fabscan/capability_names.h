#ifndef FABSCAN_CAPABILITY_NAMES_H
#define FABSCAN_CAPABILITY_NAMES_H

#include <cstddef>
#include <string_view>

namespace fabscan::generator {

/// The names of `SimInfoData` as the emitters write them; empty for an unnamed bit.
struct BitNames {
  const std::string_view* names;
  std::size_t count;
};

extern const BitNames kSMPCapMaskNames;
extern const BitNames kGMPCapMaskNames;
extern const BitNames kPortInfoCapMaskNames;
extern const BitNames kPortInfoCapMask2Names;

/// The name of a bit, to fill a hole of a template.
struct BitName {
  static constexpr std::size_t kMostBytes = 56;
  static constexpr int kDepth = 0;
  static constexpr bool kBeginsLines = false;
  std::string_view name;

  template <class Writer>
  [[gnu::always_inline]] void Write(Writer& to, int /*indent*/) const {
    to.Text(name);
  }
};

}  // namespace fabscan::generator

#endif
