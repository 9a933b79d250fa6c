#ifndef FABSCAN_MODEL_VERSION_H
#define FABSCAN_MODEL_VERSION_H

#include <string_view>

namespace fabscan {

inline constexpr std::string_view kVersion = FABSCAN_VERSION;

}  // namespace fabscan

#endif
