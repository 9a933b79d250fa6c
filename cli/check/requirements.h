#ifndef FABSCAN_CLI_REQUIREMENTS_H
#define FABSCAN_CLI_REQUIREMENTS_H

#include <sys/types.h>

#include <string_view>
#include <vector>

namespace fabscan {

/// The nodes that have an attribute.
enum class AttributeOf { kAllNodes, kSwitches, kRouters, kNotSpecial };

/// The capability mask that a function depends on.
enum class GatingMask { kNone, kSMP, kGMP };

/// The owner of a record. Ports are active ones, from 1 on; fnm, fnm1 and special ports are marked,
/// the others regular. Port 0 belongs to switches.
enum class RecordOwner { kNode, kPort0, kAnyPort, kRegularPort, kMarkedPort };

/// A record that must be there.
struct NeededRecord {
  static constexpr int kNoMonitor = -1;

  RecordOwner owner;
  std::string_view name;             // as snapshots name it
  int monitor = kNoMonitor;          // selector of a monitor that the same port must have
  std::string_view nonzero_field{};  // of the record; may be empty
};

/// What the generator must find in a fabric before it writes a block in a function.
struct Requirement {
  std::string_view function;
  AttributeOf nodes;
  GatingMask mask;
  std::vector<u_int8_t> bits;  // of the mask; all must be set. None: the mask itself is written
  std::vector<NeededRecord> records;
};

/// One for each generated function, in the order of the generated file.
const std::vector<Requirement>& Requirements();
/// The function's requirement, or null.
const Requirement* FindRequirement(std::string_view function);

/// The key of the mask in a snapshot: `smpCapabilityMask`; empty for none.
std::string_view MaskKey(GatingMask mask);
/// The name of a bit of the mask, or `unnamed`.
std::string_view BitName(GatingMask mask, u_int8_t bit);

}  // namespace fabscan

#endif
