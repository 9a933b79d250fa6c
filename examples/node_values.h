#ifndef FABSCAN_EXAMPLES_NODE_VALUES_H
#define FABSCAN_EXAMPLES_NODE_VALUES_H

#include "examples/field_values.h"

namespace fabscan {

/// The records of nodes, except NodeInfo and GeneralInfo.
extern const FieldTable kSwitchInfo;
extern const FieldTable kExtendedSwitchInfo;
extern const FieldTable kSwitchExtendedNodeInfo;
extern const FieldTable kEndNodeExtendedNodeInfo;
extern const FieldTable kPrivateLftInfo;
extern const FieldTable kAdaptiveRoutingInfo;
extern const FieldTable kRouterInfo;
extern const FieldTable kSwitchCongestionInfo;
extern const FieldTable kEndNodeCongestionInfo;
extern const FieldTable kSwitchCongestionSettings;

}  // namespace fabscan

#endif
