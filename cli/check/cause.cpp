#include "cli/check/cause.h"

#include <fmt/format.h>

#include "fabscan/port_walk.h"
#include "model/harmless_name.h"
#include "records/record_kinds.h"

namespace fabscan {

namespace {

using MaybeCause = std::optional<Cause>;

MaybeCause NodeTypeCause(const IBNode& node, AttributeOf nodes) {
  Cause cause;
  cause.code = CauseCode::kNodeType;
  cause.key = "type";
  if (nodes == AttributeOf::kSwitches && node.type != IB_SW_NODE) {
    cause.text = "the node is not a switch";
  } else if (nodes == AttributeOf::kRouters && node.type != IB_RTR_NODE) {
    cause.text = "the node is not a router";
  } else if (nodes == AttributeOf::kNotSpecial && node.isSpecialNode()) {
    cause.key = "specialNode";
    cause.text = "the node is a special node";
  } else {
    return std::nullopt;
  }
  return cause;
}

bool IsSet(const capability_mask_t& mask, unsigned bit) {
  return ((mask.mask[bit / 32] >> (bit % 32)) & 1U) != 0;
}

Cause ClearBitsCause(const Requirement& requirement, std::vector<unsigned> bits) {
  Cause cause;
  cause.code = CauseCode::kNotSupported;
  cause.mask = MaskKey(requirement.mask);
  cause.key = cause.mask;
  cause.bits = std::move(bits);
  std::string named;
  for (const unsigned bit : cause.bits) {
    named += fmt::format("{}{} ({})", named.empty() ? "" : " and ", bit,
                         BitName(requirement.mask, static_cast<u_int8_t>(bit)));
  }
  cause.text = fmt::format("not supported by the device: {} {} {} {} clear", cause.mask,
                           cause.bits.size() == 1 ? "bit" : "bits", named,
                           cause.bits.size() == 1 ? "is" : "are");
  return cause;
}

MaybeCause MaskCause(const Fabscan& fabscan, const IBNode& node, const Requirement& requirement) {
  if (requirement.mask == GatingMask::kNone) return std::nullopt;
  const capability_mask_t* mask =
      fabscan.capability_module.find(node, requirement.mask == GatingMask::kGMP);
  if (mask == nullptr) {
    Cause cause;
    cause.code = CauseCode::kMaskNotCollected;
    cause.mask = MaskKey(requirement.mask);
    cause.key = cause.mask;
    cause.text = cause.key + " not collected";
    return cause;
  }
  std::vector<unsigned> clear;
  for (const u_int8_t bit : requirement.bits) {
    if (!IsSet(*mask, bit)) clear.push_back(bit);
  }
  if (clear.empty()) return std::nullopt;
  return ClearBitsCause(requirement, std::move(clear));
}

/// `of`: where the record is missing, such as ` of port 0`.
Cause RecordCause(std::string_view record, const std::string& of, const std::string* reason) {
  Cause cause;
  cause.code = CauseCode::kRecordNotCollected;
  cause.record = record;
  cause.key = record;
  cause.text = cause.key + of;
  if (reason == nullptr) {
    cause.text += " not collected";
  } else {
    cause.reason = HarmlessName(*reason);
    cause.text += reason->empty() ? " absent" : fmt::format(" absent ({})", cause.reason);
  }
  return cause;
}

template <class Owner>
const std::string* AbsentReason(const Fabscan& fabscan, const Owner& owner,
                                std::string_view record) {
  const AbsentReasons& reasons = fabscan.fabric_extended_info.absentReasons(owner);
  const auto found = reasons.find(record);
  return found == reasons.end() ? nullptr : &found->second;
}

bool IsZero(std::string_view name, const void* record, std::string_view field_name) {
  for (const auto& kind : kNodeRecords) {
    if (kind.table->name != name) continue;
    const FieldRow* field = FindField(*kind.table, field_name);
    return field != nullptr && LoadNumber(field->element(record, 0), field->size) == 0;
  }
  return false;
}

MaybeCause NodeRecordCause(const Fabscan& fabscan, const IBNode& node, const NeededRecord& needed) {
  const void* record = FindNodeRecord(needed.name)(fabscan.fabric_extended_info, node);
  if (record == nullptr) {
    return RecordCause(needed.name, "", AbsentReason(fabscan, node, needed.name));
  }
  if (needed.nonzero_field.empty() || !IsZero(needed.name, record, needed.nonzero_field)) {
    return std::nullopt;
  }
  Cause cause;
  cause.code = CauseCode::kNotSupported;
  cause.record = needed.name;
  cause.key = fmt::format("{}.{}", needed.name, needed.nonzero_field);
  cause.text = fmt::format("not supported by the device: {} is 0", cause.key);
  return cause;
}

MaybeCause Port0Cause(const Fabscan& fabscan, const IBNode& node, std::string_view name) {
  if (node.type != IB_SW_NODE) return std::nullopt;
  const IBPort* port = node.Ports.empty() ? nullptr : node.Ports[0];
  if (port == nullptr) return RecordCause(name, " of port 0", nullptr);
  if (FindPortRecord(name)(fabscan.fabric_extended_info, *port) != nullptr) return std::nullopt;
  return RecordCause(name, " of port 0", AbsentReason(fabscan, *port, name));
}

bool IsMarked(const IBPort& port) {
  return port.isFNMPort() || port.isFNM1Port() || port.isSpecialPort();
}

/// Of the ports that can have it, one with the record is enough.
MaybeCause PortRecordCause(const Fabscan& fabscan, const IBNode& node, const NeededRecord& needed) {
  const auto& store = fabscan.fabric_extended_info;
  const bool marked = needed.owner == RecordOwner::kMarkedPort;
  const bool any = needed.owner == RecordOwner::kAnyPort;
  const FindRecord<IBPort> find = FindPortRecord(needed.name);
  const std::string_view monitors = kMonitorsTable.name;
  bool has_port = false;
  bool has_monitor = needed.monitor == NeededRecord::kNoMonitor;
  const std::string* reason = nullptr;
  const std::string* monitor_reason = nullptr;
  for (const IBPort& port : generator::ActivePorts(node)) {
    if (!any && IsMarked(port) != marked) continue;
    has_port = true;
    if (needed.monitor != NeededRecord::kNoMonitor) {
      const auto selector = static_cast<u_int8_t>(needed.monitor);
      if (store.getWrenReductionConfigureMLIDMonitors(port.createIndex, selector) == nullptr) {
        if (monitor_reason == nullptr) monitor_reason = AbsentReason(fabscan, port, monitors);
        continue;
      }
      has_monitor = true;
    }
    if (find(store, port) != nullptr) return std::nullopt;
    if (reason == nullptr) reason = AbsentReason(fabscan, port, needed.name);
  }
  if (!has_port) {
    Cause cause;
    cause.code = marked ? CauseCode::kNoMarkedPort : CauseCode::kNoActivePort;
    cause.key = "ports";
    cause.text = marked ? "no active fnm, fnm1 or special port" : "no active port";
    return cause;
  }
  const std::string of = marked ? " of special ports" : " of active ports";
  if (has_monitor) return RecordCause(needed.name, of, reason);
  return RecordCause(monitors, fmt::format(" {}{}", needed.monitor, of), monitor_reason);
}

MaybeCause RecordsCause(const Fabscan& fabscan, const IBNode& node,
                        const Requirement& requirement) {
  for (const NeededRecord& needed : requirement.records) {
    MaybeCause cause = needed.owner == RecordOwner::kNode ? NodeRecordCause(fabscan, node, needed)
                       : needed.owner == RecordOwner::kPort0
                           ? Port0Cause(fabscan, node, needed.name)
                           : PortRecordCause(fabscan, node, needed);
    if (cause) return cause;
  }
  return std::nullopt;
}

}  // namespace

std::optional<Cause> UnmetRequirement(const Fabscan& fabscan, const IBNode& node,
                                      const Requirement& requirement) {
  MaybeCause cause = NodeTypeCause(node, requirement.nodes);
  if (!cause) cause = MaskCause(fabscan, node, requirement);
  if (!cause) cause = RecordsCause(fabscan, node, requirement);
  return cause;
}

std::string_view CodeWord(CauseCode code) {
  switch (code) {
    case CauseCode::kMaskNotCollected:
      return "mask-not-collected";
    case CauseCode::kRecordNotCollected:
      return "record-not-collected";
    case CauseCode::kNotSupported:
      return "not-supported";
    case CauseCode::kNoActivePort:
      return "no-active-port";
    case CauseCode::kNoMarkedPort:
      return "no-special-port";
    case CauseCode::kByHand:
      return "by-hand";
    case CauseCode::kSharedClass:
      return "shared-class";
    case CauseCode::kNodeType:
      return "node-type";
    case CauseCode::kOther:
      break;
  }
  return "other";
}

std::optional<Cause> CauseOf(const Fabscan& fabscan, const IBNode& node, const FunctionBody& body) {
  if (body.mark == Mark::kBlock) return std::nullopt;
  const Requirement* requirement = FindRequirement(body.function->name);
  Cause other;
  if (body.mark == Mark::kHand) {
    other.code = CauseCode::kByHand;
    if (requirement != nullptr && !requirement->records.empty()) {
      other.record = requirement->records.back().name;
    }
    other.key = other.record;
    other.text = ProblemsText(*body.function);
    return other;
  }
  if (requirement != nullptr) {
    std::optional<Cause> cause = UnmetRequirement(fabscan, node, *requirement);
    if (cause) return cause;
  }
  other.key = body.function->name;
  other.text = "see the generated line";
  return other;
}

Cause SharedClassCause(const std::string& class_word) {
  Cause cause;
  cause.code = CauseCode::kSharedClass;
  cause.key = class_word;
  cause.text =
      fmt::format("several nodes define the class {}; one file can contain only one", class_word);
  return cause;
}

std::string RemedyText(const Cause& cause) {
  switch (cause.code) {
    case CauseCode::kMaskNotCollected:
    case CauseCode::kRecordNotCollected:
      return fmt::format("Collect {} and add it with fabscan merge.", cause.key);
    case CauseCode::kNotSupported:
    case CauseCode::kNoMarkedPort:
    case CauseCode::kOther:
      return "Nothing to collect. fabscan dump --buildable writes a file that compiles.";
    case CauseCode::kNoActivePort:
      return "Discover the node again while a link is up, or select another node of its model.";
    case CauseCode::kByHand:
      return "fabscan dump --buildable makes these edits.";
    case CauseCode::kSharedClass:
      return "Select one node of each class with --guid, or use fabscan dump --one-per-model.";
    case CauseCode::kNodeType:
      break;
  }
  return {};
}

}  // namespace fabscan
