#ifndef FABSCAN_GENERATED_FUNCTIONS_H
#define FABSCAN_GENERATED_FUNCTIONS_H

#include <iterator>
#include <string_view>

#include "fabscan_sim_info_dump.h"

namespace fabscan::generator {

/// Text in a block that does not compile, and the edit that makes it compile.
struct CompileProblem {
  const char* problem;
  const char* edit;
};

inline constexpr CompileProblem kAddressAsGID = {"the redirect GID is written as a memory address",
                                                 "redirect GID assigned as its two words"};
inline constexpr CompileProblem kRepeatedNames = {"the branches declare the same names",
                                                  "braces put around each branch"};
inline constexpr CompileProblem kUndeclaredRecord = {
    "the last line packs a record that is not declared",
    "pack of an undeclared record turned into a comment"};

using Emitter = void (SimInfoDumpCPP::*)(std::ostream&, const IBNode&) const;

/// A function of the generated file.
struct GeneratedFunction {
  std::string_view name;
  Emitter emitter;  // writes the body
  /// What does not compile, in each block that the emitter writes; null where nothing more.
  const CompileProblem* problems[2] = {};
};

/// The functions of a node, in the order of the generated file.
// clang-format off
inline constexpr GeneratedFunction kGeneratedFunctions[] = {
    {"setNodeInfo",                        &SimInfoDumpCPP::GenerateNodeInfo},
    {"setPortInfo",                        &SimInfoDumpCPP::GeneratePortInfo},
    {"setGMPCapability",                   &SimInfoDumpCPP::GenerateGMPCapabilityMask},
    {"setSMPCapability",                   &SimInfoDumpCPP::GenerateSMPCapabilityMask},
    {"setFWInfo",                          &SimInfoDumpCPP::GenerateFWInfo},
    {"setHWInfo",                          &SimInfoDumpCPP::GenerateHWInfo},
    {"setSWInfo",                          &SimInfoDumpCPP::GenerateSWInfo},
    {"setPortInfoExtended",                &SimInfoDumpCPP::GeneratePortInfoExtended},
    {"setExtendedNodeInfo",                &SimInfoDumpCPP::GenerateExtendedNodeInfo},
    {"setExtendedPortInfo",                &SimInfoDumpCPP::GenerateExtendedPortInfo},
    {"setArInfo",                          &SimInfoDumpCPP::GenerateARInfo},
    {"setRouterInfo",                      &SimInfoDumpCPP::GenerateRouterInfo},
    {"setExtendedSwitchInfo",              &SimInfoDumpCPP::GenerateExtendedSwitchInfo},
    {"setSwitchInfo",                      &SimInfoDumpCPP::GenerateSwitchInfo},
    {"setPrivateLftInfo",                  &SimInfoDumpCPP::GeneratePrivateLFTInfo},
    {"setEnhancedCongestionInfo",          &SimInfoDumpCPP::GenerateEnhancedCongestionInfo},
    {"setCongestionSwitchGeneralSettings", &SimInfoDumpCPP::GenerateCongestionSwitchGeneralSettings},
    {"setVSReductionManagerClassPortInfo", &SimInfoDumpCPP::GenerateVSReductionManagerClassPortInfo,
                                           {&kAddressAsGID}},
    {"setWrenReductionPortInfo",           &SimInfoDumpCPP::GenerateWrenReductionPortInfo},
    {"setWrenReductionInfo",               &SimInfoDumpCPP::GenerateWrenReductionInfo},
    {"setWrenReductionCounters",           &SimInfoDumpCPP::GenerateWrenReductionCounters},
    {"setWrenPushReductionCounters",       &SimInfoDumpCPP::GenerateWrenPushReductionCounters,
                                           {&kRepeatedNames, &kUndeclaredRecord}},
};
// clang-format on

static_assert(std::size(kGeneratedFunctions) == 22);

/// The function of this name, or null.
constexpr const GeneratedFunction* FindGeneratedFunction(std::string_view name) {
  for (const GeneratedFunction& function : kGeneratedFunctions) {
    if (function.name == name) return &function;
  }
  return nullptr;
}

constexpr bool HasProblem(const GeneratedFunction& function, const CompileProblem& problem) {
  for (const CompileProblem* each : function.problems) {
    if (each == &problem) return true;
  }
  return false;
}

}  // namespace fabscan::generator

#endif
