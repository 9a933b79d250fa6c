#ifndef FABSCAN_FUZZ_GENERATED_STRUCTURE_H
#define FABSCAN_FUZZ_GENERATED_STRUCTURE_H

#include <infiniband/tessel/Fabric.h>

#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// What is wrong with the form of a generated file; empty when it holds exactly the sections of
/// `nodes`, in this order, each with its two header lines and the 22 functions of `prefix`, each
/// opened and closed, with nothing in between that could open or close another one.
std::string FaultOfStructure(std::string_view text, std::string_view prefix,
                             const std::vector<const IBNode*>& nodes);

}  // namespace fabscan

#endif
