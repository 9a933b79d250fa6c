// Calls the functions of generated nodes on simulated nodes with other values, and compares every
// field with its expected value.
//
// usage: runner EXPECTATIONS
//
// Prints, separated by tabs, for each unit a line `unit NAME`, and for each function a line
// `function NAME RECORDS FIELDS DIFFERENCES` followed by a line `differ FIELD HOW` for each of its
// differences. Ends with `done`, and status 0 if nothing differs.

#include <unistd.h>

#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "comparison.h"
#include "expectations.h"
#include "storages.h"
#include "unit.h"

namespace fabscan::simulator {

namespace {

/// A generated function that never returns must not block the caller.
constexpr unsigned kSecondsToRun = 120;

constexpr u_int32_t kCounterSets = 8;
/// The lean pipe that generated files name, and one that they must not change.
constexpr u_int8_t kLeanPipes[] = {0x0F, 0x00};

/// Bytes without close repetitions, so that no two fields have the same value.
u_int8_t PatternByte(u_int64_t position) {
  u_int64_t mixed = (position + 1) * 0x9e3779b97f4a7c15U;
  mixed = (mixed ^ mixed >> 30U) * 0xbf58476d1ce4e5b9U;
  return static_cast<u_int8_t>(mixed >> 56U);
}

/// A node with other values: the pattern, with every bit flipped by `flip`. For any assigned value,
/// at least one of two nodes with opposite bits has a different value.
Node MakeNode(const UnitExpectations& expected, u_int8_t flip) {
  Node node(static_cast<phys_port_t>(expected.last_port));
  const ib_wren_reduction_counters_t counters;
  for (unsigned port = 1; port < node.numPorts; ++port) {
    for (u_int32_t index = 0; index < kCounterSets; ++index) {
      for (const u_int8_t lean_pipe : kLeanPipes) {
        node.setWrenReductionCounters(static_cast<phys_port_t>(port), index, lean_pipe, &counters);
      }
    }
  }
  const WrenPushReductionCounters_view_t view;
  for (const auto& [port, mlid] : expected.push_counters) {
    node.setWrenReductionCounters(static_cast<u_int16_t>(port), static_cast<u_int16_t>(mlid),
                                  &view);
  }
  u_int64_t position = 0;
  for (const Storage& storage : StoragesOf(node)) {
    for (std::size_t i = 0; i < storage.size; ++i) {
      storage.bytes[i] = static_cast<u_int8_t>(PatternByte(position++) ^ flip);
    }
  }
  node.resizePortPkeyTable(flip == 0 ? 3 : 5);
  for (auto& table : node.portPkeyTable) {
    for (u_int16_t& key : table) key = static_cast<u_int16_t>(PatternByte(position++) + 1);
  }
  return node;
}

/// A value that was about to be packed into a field that cannot hold it.
struct Truncated {
  const u_int8_t* bytes;
  std::string record;
  std::string field;
  u_int64_t value;
  unsigned width;
};
std::vector<Truncated> truncated;

void NoteTruncated(const RecordTable& table, const void* record, const u_int8_t* bytes) {
  ForEachNumber(table, [&](const Number& number) {
    const u_int64_t value = number.Load(record);
    const unsigned width = number.place.bits;
    if (width == 64 || value >> width == 0) return;
    truncated.push_back({bytes, std::string(table.name), number.path(), value, width});
  });
}

void ReportTruncated(Node& node, Differences& differences) {
  const std::vector<Storage> storages = StoragesOf(node);
  for (const Truncated& each : truncated) {
    const auto storage = std::find_if(storages.begin(), storages.end(),
                                      [&](const Storage& one) { return one.bytes == each.bytes; });
    const std::string& name = storage != storages.end() ? storage->name : each.record;
    std::ostringstream how;
    how << "is assigned 0x" << std::hex << each.value << ", which its " << std::dec << each.width
        << "-bit field cannot hold";
    differences.emplace(name + '.' + each.field, how.str());
  }
  truncated.clear();
}

std::size_t CountFields(const Assignments& assigned) {
  std::size_t fields = 0;
  for (const auto& storage : assigned) fields += storage.second.size();
  return fields;
}

bool Run(const Unit& unit, const UnitExpectations& expected) {
  std::map<std::string, Differences> differences;
  for (const u_int8_t flip : {u_int8_t{0x00}, u_int8_t{0xFF}}) {
    Node node = MakeNode(expected, flip);
    for (const Setter& setter : unit.setters) {
      Node before = node;
      pack_observer = NoteTruncated;
      setter.call(node);
      pack_observer = nullptr;
      const auto assigned = expected.functions.find(setter.name);
      Compare(before, node, assigned == expected.functions.end() ? Assignments{} : assigned->second,
              differences[setter.name]);
      ReportTruncated(node, differences[setter.name]);
    }
  }

  bool same = true;
  std::cout << "unit\t" << unit.name << '\n';
  for (const Setter& setter : unit.setters) {
    const std::string name = setter.name;
    const auto assigned = expected.functions.find(name);
    const bool any = assigned != expected.functions.end();
    std::cout << "function\t" << name << '\t' << (any ? assigned->second.size() : 0) << '\t'
              << (any ? CountFields(assigned->second) : 0) << '\t' << differences[name].size()
              << '\n';
    for (const auto& [field, how] : differences[name]) {
      std::cout << "differ\t" << field << '\t' << how << '\n';
      same = false;
    }
  }
  return same;
}

int Main(const char* path) {
  std::ifstream file(path);
  bool same = true;
  for (const UnitExpectations& expected : ReadExpectations(file)) {
    const auto unit = std::find_if(Units().begin(), Units().end(), [&](const Unit* candidate) {
      return candidate->name == expected.unit;
    });
    if (unit == Units().end()) throw std::runtime_error("no such unit: " + expected.unit);
    if (expected.last_port > Node::kLastPort) throw std::runtime_error("too many ports");
    same = Run(**unit, expected) && same;
  }
  std::cout << "done\n" << std::flush;
  return same ? 0 : 1;
}

}  // namespace

}  // namespace fabscan::simulator

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: runner EXPECTATIONS\n";
    return 2;
  }
  alarm(fabscan::simulator::kSecondsToRun);
  try {
    return fabscan::simulator::Main(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "runner: " << error.what() << '\n';
    return 2;
  }
}
