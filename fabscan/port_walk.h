#ifndef FABSCAN_PORT_WALK_H
#define FABSCAN_PORT_WALK_H

#include <infiniband/fabscan/fabscan.h>

#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "attribute_block.h"

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

/// An ordered map from small numbers, without heap: what a map of records is to a caller of the
/// generator, inside it.
template <class Number, class Value, std::size_t Size>
class NumberedMap {
 public:
  void Set(std::size_t number, const Value& value) {
    slots_[number].value = value;
    present_[number / kWordBits] |= u_int64_t{1} << (number % kWordBits);
  }
  bool empty() const { return NextFrom(0) == Size; }

  class Iterator {
   public:
    Iterator(const NumberedMap& map, std::size_t number) : map_(map), number_(number) {}
    std::pair<Number, const Value&> operator*() const {
      return {static_cast<Number>(number_), map_.slots_[number_].value};
    }
    Iterator& operator++() {
      number_ = map_.NextFrom(number_ + 1);
      return *this;
    }
    bool operator!=(const Iterator& other) const { return number_ != other.number_; }

   private:
    const NumberedMap& map_;
    std::size_t number_;
  };

  Iterator begin() const { return {*this, NextFrom(0)}; }
  Iterator end() const { return {*this, Size}; }

 private:
  static constexpr std::size_t kWordBits = 64;

  // Nothing is made in a slot before it is set: a map of 256 maps would be a long way to go.
  union Slot {
    Slot() {}
    Value value;
  };
  static_assert(std::is_trivially_copyable_v<Value>);

  /// The first number there is from this one on; `Size` where there is none.
  std::size_t NextFrom(std::size_t number) const {
    std::size_t word = number / kWordBits;
    if (word >= kWords) return Size;
    u_int64_t bits = present_[word] >> (number % kWordBits) << (number % kWordBits);
    while (bits == 0) {
      if (++word == kWords) return Size;
      bits = present_[word];
    }
    return word * kWordBits + static_cast<std::size_t>(__builtin_ctzll(bits));
  }

  static constexpr std::size_t kWords = (Size + kWordBits - 1) / kWordBits;
  u_int64_t present_[kWords] = {};
  std::array<Slot, Size> slots_;
};

template <class Record>
bool IsEmpty(const Record* record) {
  return record == nullptr;
}
template <class Map>
bool IsEmpty(const Map& map) {
  return map.empty();
}

/// Has the record on its way from memory by the time that it is written.
template <class Record>
void FetchAhead(const Record* record) {
  constexpr std::size_t kCacheLine = 64;
  for (std::size_t at = 0; at < sizeof(Record); at += kCacheLine) {
    __builtin_prefetch(reinterpret_cast<const char*>(record) + at);
  }
}
template <class Map>
void FetchAhead(const Map& map) {
  for (const auto& entry : map) FetchAhead(entry.second);
}

/// The ports of one node that have a value, as they are told apart. A value is a record, or a map
/// of records.
template <class Value>
struct PortGroups {
  u_int8_t regular_port = 0;
  Value regular{};
  NumberedMap<u_int8_t, Value, 256> marked;
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
      FetchAhead(value);
    } else if (IsEmpty(groups.regular)) {
      groups.regular_port = port.num;
      groups.regular = value;
      FetchAhead(value);
    }
  }
  return groups;
}

/// The dispatch on the port index. `write_branch(number, value)` writes what a marked port has;
/// `write_default()` what all others have. Both end the line before each of their own.
template <class Marked, class WriteBranch, class WriteDefault>
void WritePortSwitch(SourceWriter& writer, int case_indent, const Marked& marked,
                     WriteBranch write_branch, WriteDefault write_default) {
  writer.AtOnce([](auto& to) { to.Line(kLoopIndent).Text("switch (i) {"); });
  for (const auto& [number, value] : marked) {
    if constexpr (std::is_pointer_v<std::decay_t<decltype(value)>>) {
      if (value == nullptr) continue;
    }
    writer.AtOnce([case_indent, port = unsigned{number}](auto& to) {
      to.Line(case_indent).Text("case ").Decimal(port).Text(":");
    });
    write_branch(number, value);
    writer.AtOnce([](auto& to) { to.Line(kBranchIndent).Text("break;"); });
  }
  writer.AtOnce([](auto& to) { to.Line(kLoopIndent).Text("default:"); });
  write_default();
  writer.AtOnce([](auto& to) { to.Line(kLoopIndent).Text("}"); });
}

#endif
