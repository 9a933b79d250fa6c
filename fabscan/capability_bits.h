#ifndef FABSCAN_CAPABILITY_BITS_H
#define FABSCAN_CAPABILITY_BITS_H

#include <sys/types.h>

namespace fabscan::generator {

/// The SMP capability bits that an attribute depends on, by their names in
/// `SimInfoData::SMPCapMaskBits`.

inline constexpr u_int8_t kIsPrivateLinearForwardingSupported = 0;
inline constexpr u_int8_t kIsAdaptiveRoutingRev1Supported = 2;
inline constexpr u_int8_t kIsExtendedPortInfoSupported = 9;
inline constexpr u_int8_t kIsPortSLToPrivateLFTMapSupported = 12;
inline constexpr u_int8_t kIsExtendedNodeInfoSupported = 13;
inline constexpr u_int8_t kIsDCQCNSupported = 44;
inline constexpr u_int8_t kIsWrenReductionManagementSupported = 55;

}  // namespace fabscan::generator

#endif
