#ifndef SIMULATOR_DEVICES_EXAMPLE_EXAMPLE_H
#define SIMULATOR_DEVICES_EXAMPLE_EXAMPLE_H

#include "../../core/device.h"

namespace Example {

SIMULATOR_DEVICE(SW);       // switch
SIMULATOR_DEVICE(RTR);      // router
SIMULATOR_DEVICE(HCA);      // channel adapter
SIMULATOR_DEVICE(AN);       // aggregation node
SIMULATOR_DEVICE(Unknown);  // any other special node

}  // namespace Example

#endif
