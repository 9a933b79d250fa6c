#ifndef FABSCAN_REDUCTION_BODY_H
#define FABSCAN_REDUCTION_BODY_H

#include "body.h"

namespace fabscan::generator {

/// The body of a reduction attribute, with the conditions that all of them share.
class ReductionBody : public Body {
 public:
  ReductionBody(std::ostream& out, Fabscan& fabscan, const IBNode& node)
      : Body(out, fabscan, node) {
    Unless(IsSwitch, "// The node=$ is not a switch");
    Unless(Supports<kIsWrenReductionManagementSupported>,
           "// The node=$ does not support Wren Reduction Management");
  }
};

/// The same of ports: the node must also answer the reduction management class.
class ReductionPortBody : public ReductionBody {
 public:
  ReductionPortBody(std::ostream& out, Fabscan& fabscan, const IBNode& node)
      : ReductionBody(out, fabscan, node) {
    // The quote stays open.
    Unless(
        [](Fabscan& of, const IBNode& each) {
          return of.fabric_extended_info.getWrenClassPortInfo(each.createIndex) != nullptr;
        },
        "#error \"Failed to get WrenClassPortInfo mad for the node=$");
  }
};

}  // namespace fabscan::generator

#endif
