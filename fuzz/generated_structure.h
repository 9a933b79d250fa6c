#ifndef FABSCAN_FUZZ_GENERATED_STRUCTURE_H
#define FABSCAN_FUZZ_GENERATED_STRUCTURE_H

#include <infiniband/tessel/Fabric.h>

#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// The structural error of a generated file. Empty if the file has exactly the sections of `nodes`,
/// in this order, each with its two header lines and the 22 functions of `prefix`, each opened and
/// closed, and nothing in between that could open or close another function.
std::string FaultOfStructure(std::string_view text, std::string_view prefix,
                             const std::vector<const IBNode*>& nodes);

}  // namespace fabscan

#endif
