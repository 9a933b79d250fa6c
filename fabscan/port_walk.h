#ifndef FABSCAN_PORT_WALK_H
#define FABSCAN_PORT_WALK_H

#include <infiniband/fabscan/fabscan.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <type_traits>

#include "attribute_block.h"

namespace fabscan::generator {

/// The port walk and the grouping rule that the port emitters share: FNM, FNM1 and special ports
/// are told apart; every other port takes the values of the lowest-numbered regular port that has
/// any. Records are never compared.

/// The ports 1 to `numPorts` that are there, above down and in the sub-fabric, by ascending number.
class ActivePorts {
 public:
  explicit ActivePorts(const IBNode& node) : node_(node) {}

  class Iterator {
   public:
    Iterator(const IBNode& node, unsigned number) : node_(node), number_(number) { SkipInactive(); }
    const IBPort& operator*() const { return *port_; }
    Iterator& operator++() {
      ++number_;
      SkipInactive();
      return *this;
    }
    bool operator!=(const Iterator& other) const { return number_ != other.number_; }

   private:
    void SkipInactive() {
      for (; number_ <= node_.numPorts; ++number_) {
        port_ = node_.getPort(static_cast<u_int8_t>(number_));
        if (port_ == nullptr || port_->port_state <= IB_PORT_STATE_DOWN) continue;
        if (port_->getInSubFabric()) return;
      }
    }

    const IBNode& node_;
    const IBPort* port_ = nullptr;
    unsigned number_;  // wider than a port number, so that 255 ports come to an end
  };

  Iterator begin() const { return {node_, 1}; }
  Iterator end() const { return {node_, node_.numPorts + 1U}; }

 private:
  const IBNode& node_;
};

/// An ordered map from small numbers, without heap: what a std::map of records is to a caller of
/// the generator, inside it. `kCapacity`: the most numbers.
template <class Number, class Value, std::size_t kCapacity>
class SmallMap {
 public:
  struct Entry {
    Number number;
    Value value;
  };

  SmallMap() = default;
  SmallMap(const SmallMap& other) : size_(other.size_) {
    std::copy(other.begin(), other.end(), entries_.begin());
  }
  SmallMap& operator=(const SmallMap& other) {
    size_ = other.size_;
    std::copy(other.begin(), other.end(), entries_.begin());
    return *this;
  }
  ~SmallMap() = default;

  void Set(Number number, const Value& value) {
    Entry* at = entries_.data() + size_;
    while (at != begin() && number <= at[-1].number) --at;
    if (at == end() || at->number != number) {
      std::copy_backward(at, entries_.data() + size_, entries_.data() + size_ + 1);
      ++size_;
    }
    *at = {number, value};
  }
  bool empty() const { return size_ == 0; }
  const Entry* begin() const { return entries_.data(); }
  const Entry* end() const { return entries_.data() + size_; }

 private:
  std::size_t size_ = 0;
  std::array<Entry, kCapacity> entries_;  // the first `size_` of them are set
};

template <class Record>
bool IsEmpty(const Record* record) {
  return record == nullptr;
}
template <class Record, std::size_t kRecords>
bool IsEmpty(const std::array<const Record*, kRecords>& records) {
  return std::all_of(records.begin(), records.end(), IsEmpty<Record>);
}

/// The ports of one node that have a value, as they are told apart. A value is a record, or a fixed
/// number of them, of which some may be null.
template <class Value>
struct PortGroups {
  u_int8_t regular_port = 0;
  Value regular{};
  SmallMap<u_int8_t, Value, 256> marked;
};

/// `value_of(port)` gives a port's value; a port whose value is empty is left out.
template <class Value, class ValueOf>
PortGroups<Value> GroupPorts(const IBNode& node, ValueOf value_of) {
  PortGroups<Value> groups;
  for (const IBPort& port : ActivePorts(node)) {
    const Value value = value_of(port);
    if (IsEmpty(value)) continue;
    if (port.isFNMPort() || port.isFNM1Port() || port.isSpecialPort()) {
      groups.marked.Set(port.num, value);
    } else if (IsEmpty(groups.regular)) {
      groups.regular_port = port.num;
      groups.regular = value;
    }
  }
  return groups;
}

inline constexpr Template kPortSwitch(R"(
switch (i) {
$cases$
default:
    $default$
})",
                                      {"cases", "default"});

inline constexpr Template kPortCase(R"(
case $port$:
    $values$
    break;)",
                                    {"port", "values"});

/// A switch on the port index, with `kCase` for each marked port that has a value.
/// `branch(number, value)` gives the lines of one; `default_branch` are those of all other ports.
template <const Template& kCase = kPortCase, class Marked, class Branch, class Default>
auto PortSwitch(const Marked& marked, const Branch& branch, const Default& default_branch) {
  const auto cases = [&marked, &branch](SourceWriter& writer, int indent) {
    for (const auto& [number, value] : marked) {
      if constexpr (std::is_pointer_v<std::decay_t<decltype(value)>>) {
        if (value == nullptr) continue;
      }
      writer.EmitLines<kCase>(indent, unsigned{number}, branch(number, value));
    }
  };
  return Filled<kPortSwitch>(cases, default_branch);
}

}  // namespace fabscan::generator

#endif
