#ifndef FABSCAN_CLI_CAUSE_H
#define FABSCAN_CLI_CAUSE_H

#include <infiniband/fabscan/fabscan.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/check/requirements.h"
#include "cli/dump/function_body.h"

namespace fabscan {

enum class CauseCode {
  kMaskNotCollected,    // whether the device supports it is unknown
  kRecordNotCollected,  // the snapshot lacks it
  kNotSupported,        // according to a mask or a record of the device
  kNoActivePort,
  kNoMarkedPort,
  kByHand,  // the data is complete, but the statements do not compile
  kSharedClass,
  kNodeType,  // nodes of this type do not have the attribute
  kOther,
};

/// Why a generated function is not a block that compiles.
struct Cause {
  CauseCode code = CauseCode::kOther;
  std::string key;             // a key of the snapshot, a record, or a class
  std::string_view mask;       // the key of the deciding capability mask, if any
  std::vector<unsigned> bits;  // clear bits of the mask
  std::string_view record;     // the name of the deciding record, if any
  std::string reason;          // recorded in the snapshot, if any
  std::string text;            // for people, without the node's name

  bool CanBeCollected() const {
    return code == CauseCode::kMaskNotCollected || code == CauseCode::kRecordNotCollected;
  }
};

/// Two causes are equal if their codes and texts are.
struct CauseOrder {
  bool operator()(const Cause& one, const Cause& other) const {
    return one.code != other.code ? one.code < other.code : one.text < other.text;
  }
};

/// The code as a word, such as `mask-not-collected`; these words never change.
std::string_view CodeWord(CauseCode code);

/// The first part of the requirement that the node does not meet.
std::optional<Cause> UnmetRequirement(const Fabscan& fabscan, const IBNode& node,
                                      const Requirement& requirement);

/// Why the function is not a block that compiles; none if it is one.
std::optional<Cause> CauseOf(const Fabscan& fabscan, const IBNode& node, const FunctionBody& body);

/// The cause for nodes that define the same class.
Cause SharedClassCause(const std::string& class_word);

/// The remedy, in one sentence.
std::string RemedyText(const Cause& cause);

}  // namespace fabscan

#endif
