#ifndef FABSCAN_EXAMPLES_CAPABILITY_VALUES_H
#define FABSCAN_EXAMPLES_CAPABILITY_VALUES_H

#include <cstdint>

#include "examples/field_values.h"

namespace fabscan {

/// The capability masks of the invented devices.
capability_mask_t SwitchSmpMask(Generation generation);
/// The masks of a router or an adapter.
capability_mask_t RouterSmpMask();
capability_mask_t AdapterSmpMask(Generation generation);
/// The mask of a device that answers few attributes besides the standard ones.
capability_mask_t BasicSmpMask();
capability_mask_t GmpMask(Generation generation);

/// The capability masks of a port's PortInfo.
enum class PortRole : std::uint8_t { kSwitchPort0, kSwitchPort, kAdapterPort, kRouterPort };
u_int32_t PortCapMask(PortRole role);
u_int16_t PortCapMask2(PortRole role, Generation generation);

}  // namespace fabscan

#endif
