#ifndef FABSCAN_BODY_H
#define FABSCAN_BODY_H

#include <infiniband/fabscan/fabscan.h>

#include <string_view>

#include "attribute_block.h"
#include "capability_bits.h"

namespace fabscan::generator {

/// The body of one generated function: conditions in the order in which they are asked, each with
/// the line that is written if it does not hold, then the block. `$` stands for the node's name.
/// Once something is written, nothing more is asked.
class Body {
 public:
  Body(std::ostream& out, Fabscan& fabscan, const IBNode& node)
      : writer_(out), fabscan_(fabscan), node_(node) {}

  template <class Holds>
  Body& Unless(const Holds& holds, std::string_view line) {
    if (!is_written_ && !holds(fabscan_, node_)) Write(line);
    return *this;
  }

  /// Sets `record` to what `find(store, createIndex)` gives.
  template <class Record, class Find>
  Body& Need(const Record*& record, const Find& find, std::string_view line) {
    if (is_written_) return *this;
    record = find(fabscan_.fabric_extended_info, node_.createIndex);
    if (record == nullptr) Write(line);
    return *this;
  }

  /// The block of what `find(store, createIndex)` gives; the line if it gives nothing.
  template <const Target& kTarget, const auto& kFields, class Find>
  Body& Block(const Find& find, std::string_view line) {
    if (is_written_) return *this;
    if (const auto* record = find(fabscan_.fabric_extended_info, node_.createIndex)) {
      WriteNodeBlock<kTarget, kFields>(writer_, *record);
      is_written_ = has_block_ = true;
    } else {
      Write(line);
    }
    return *this;
  }

  /// Writes the template below the block, if there is one.
  template <const Template& kTemplate>
  void Below() {
    if (has_block_) writer_.EmitLines<kTemplate>(kBodyIndent);
  }

  /// Whether a line or a block is written.
  explicit operator bool() const { return is_written_; }
  SourceWriter& writer() { return writer_; }

  /// Writes the line, which may go on.
  SourceWriter& Write(std::string_view line) {
    is_written_ = true;
    const std::size_t name = line.find('$');
    writer_.Text(line.substr(0, name));
    if (name == std::string_view::npos) return writer_;
    return writer_.Text(node_.name).Text(line.substr(name + 1));
  }

 private:
  SourceWriter writer_;
  Fabscan& fabscan_;
  const IBNode& node_;
  bool is_written_ = false;
  bool has_block_ = false;
};

// ---------- Conditions ----------

inline bool IsSwitch(Fabscan& /*fabscan*/, const IBNode& node) { return node.type == IB_SW_NODE; }
inline bool IsRouter(Fabscan& /*fabscan*/, const IBNode& node) { return node.type == IB_RTR_NODE; }
inline bool IsNotSpecial(Fabscan& /*fabscan*/, const IBNode& node) { return !node.isSpecialNode(); }

/// The node supports all of these SMP capabilities.
template <u_int8_t... kBits>
bool Supports(Fabscan& fabscan, const IBNode& node) {
  return (fabscan.capability_module.IsSupportedSMPCapability(&node, kBits) && ...);
}

// ---------- Records ----------

/// What the store's getter gives for a node.
#define FABSCAN_STORED(getter) [](auto& store, u_int32_t index) { return store.getter(index); }
/// A member of it.
#define FABSCAN_STORED_PART(getter, member)    \
  [](auto& store, u_int32_t index) {           \
    const auto* record = store.getter(index);  \
    return record ? &record->member : nullptr; \
  }

}  // namespace fabscan::generator

#endif
