#ifndef FABSCAN_FUZZ_REQUIRE_H
#define FABSCAN_FUZZ_REQUIRE_H

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace fabscan {

/// Aborts, which the fuzzer reports as a finding, if a promise is broken.
inline void Require(bool holds, std::string_view promise) {
  if (holds) return;
  static_cast<void>(std::fprintf(stderr, "broken promise: %.*s\n", static_cast<int>(promise.size()),
                                 promise.data()));
  std::abort();
}

}  // namespace fabscan

#endif
