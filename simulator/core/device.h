#ifndef SIMULATOR_CORE_DEVICE_H
#define SIMULATOR_CORE_DEVICE_H

#include "node.h"

/// What a device's header is made of: the functions that a generated file defines, and the classes
/// that declare them.

/// The functions of a generated file, in the order in which it defines them.
#define SIMULATOR_SETTERS(setter)                                                           \
  setter(setNodeInfo) setter(setPortInfo) setter(setGMPCapability) setter(setSMPCapability) \
      setter(setFWInfo) setter(setHWInfo) setter(setSWInfo) setter(setPortInfoExtended)     \
          setter(setExtendedNodeInfo) setter(setExtendedPortInfo) setter(setArInfo)         \
              setter(setRouterInfo) setter(setExtendedSwitchInfo) setter(setSwitchInfo)     \
                  setter(setPrivateLftInfo) setter(setEnhancedCongestionInfo)               \
                      setter(setCongestionSwitchGeneralSettings)                            \
                          setter(setVSReductionManagerClassPortInfo)                        \
                              setter(setWrenReductionPortInfo) setter(setWrenReductionInfo) \
                                  setter(setWrenReductionCounters)                          \
                                      setter(setWrenPushReductionCounters)

#define SIMULATOR_DECLARE_SETTER(name) void name();
#define SIMULATOR_CALL_SETTER(name) name();

/// Declares a class for one kind of node. A generated file defines its functions when the kind was
/// dumped; a program links as long as it uses no kind that was not.
#define SIMULATOR_DEVICE(Kind)                                    \
  class Kind : public fabscan::simulator::Device {                \
   public:                                                        \
    using Device::Device;                                         \
    SIMULATOR_SETTERS(SIMULATOR_DECLARE_SETTER)                   \
    /** Gives the node every value that the real one reported. */ \
    void setAll() { SIMULATOR_SETTERS(SIMULATOR_CALL_SETTER) }    \
  }

namespace fabscan {
namespace simulator {

/// A kind of device at work on a node. The node must outlive it.
class Device {
 public:
  explicit Device(Node& node) : m_node(&node) {}

 protected:
  Node* m_node;
};

}  // namespace simulator
}  // namespace fabscan

#endif
