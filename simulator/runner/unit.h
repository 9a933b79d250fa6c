#ifndef SIMULATOR_RUNNER_UNIT_H
#define SIMULATOR_RUNNER_UNIT_H

#include <array>
#include <cstddef>
#include <vector>

#include "../core/device.h"

// A value that its member cannot hold would be truncated before anyone sees it.
#pragma GCC diagnostic error "-Woverflow"
#ifdef __clang__
#pragma clang diagnostic error "-Wconstant-conversion"
#endif

namespace fabscan::simulator {

// NOLINTNEXTLINE(bugprone-macro-parentheses): one more term of the sum
#define RUNNER_COUNT_SETTER(record, member, function) +1
constexpr std::size_t kSetters = 0 SIMULATOR_EACH(RUNNER_COUNT_SETTER);

/// A function of a generated file.
struct Setter {
  const char* name;
  void (*call)(Node&);
};

/// The functions of one generated node, in the order of the file.
struct Unit {
  const char* name;
  std::array<Setter, kSetters> setters;
};

/// Every unit that was linked into the program.
inline std::vector<const Unit*>& Units() {
  static std::vector<const Unit*> units;
  return units;
}

struct AddUnit {
  explicit AddUnit(const Unit& unit) { Units().push_back(&unit); }
};

}  // namespace fabscan::simulator

#define RUNNER_SETTER(record, member, function) \
  fabscan::simulator::Setter{                   \
      #function, [](fabscan::simulator::Node& node) { RunnerDevice(node).function(); }},

/// Adds the device class `Kind` under the prefix `Prefix` as the unit named by the prefix. Must be
/// after the generated file in one source file.
#define RUNNER_UNIT(Prefix, Kind)                                                       \
  namespace runner_##Prefix {                                                           \
    using RunnerDevice = ::Prefix::Kind;                                                \
    constexpr fabscan::simulator::Unit kUnit{#Prefix, {SIMULATOR_EACH(RUNNER_SETTER)}}; \
    const fabscan::simulator::AddUnit kAddUnit(kUnit);                                  \
  }

#endif
