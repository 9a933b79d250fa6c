#include "comparison.h"

#include <algorithm>
#include <sstream>

#include "storages.h"

namespace fabscan::simulator {

namespace {

/// The size of the ports' partition key tables, set by generated files, is compared as a separate
/// field.
constexpr char kPkeyTables[] = "portPkeyTable";
constexpr char kPkeyEntries[] = "entries";

std::string Hex(u_int64_t value) {
  std::ostringstream text;
  text << "0x" << std::hex << value;
  return text.str();
}

const u_int64_t* Find(const Assignments& assigned, const std::string& storage,
                      const std::string& field) {
  const auto fields = assigned.find(storage);
  if (fields == assigned.end()) return nullptr;
  const auto value = fields->second.find(field);
  return value == fields->second.end() ? nullptr : &value->second;
}

struct FieldValue {
  std::string name;  // as generated code writes it after "mad_buffer."
  unsigned width;    // bits in the packed attribute
  u_int64_t value;
};

std::vector<FieldValue> FieldsIn(const RecordTable& table, const u_int8_t* bytes) {
  std::vector<FieldValue> fields;
  ForEachNumber(table, [&](const Number& number) {
    fields.push_back({number.path(), number.place.bits, ReadBits(bytes, number.place)});
  });
  return fields;
}

/// The bytes without the bits of fields.
std::vector<u_int8_t> RestOf(const Storage& storage) {
  std::vector<u_int8_t> bytes(storage.bytes, storage.bytes + storage.size);
  ForEachNumber(*storage.table,
                [&](const Number& number) { WriteBits(bytes.data(), number.place, 0); });
  return bytes;
}

void CompareField(const std::string& storage, const FieldValue& before, const FieldValue& after,
                  const Assignments& assigned, Differences& differences) {
  const u_int64_t* value = Find(assigned, storage, after.name);
  if (after.value == (value != nullptr ? *value : before.value)) return;
  std::string& text = differences[storage + "." + after.name];
  if (value == nullptr) {
    text = "is " + Hex(after.value) + ", should have stayed " + Hex(before.value);
  } else {
    text = "is " + Hex(after.value) + ", should be " + Hex(*value);
    if (after.width < 64 && *value >> after.width != 0) {
      text += ", which its " + std::to_string(after.width) + "-bit field cannot hold";
    }
  }
}

void CompareStorage(const Storage& before, const Storage& after, const Assignments& assigned,
                    Differences& differences) {
  const bool changed = !std::equal(before.bytes, before.bytes + before.size, after.bytes);
  const auto wanted = assigned.find(after.name);
  if (!changed && wanted == assigned.end()) return;

  const std::vector<FieldValue> old_fields = FieldsIn(*before.table, before.bytes);
  const std::vector<FieldValue> new_fields = FieldsIn(*after.table, after.bytes);
  for (std::size_t i = 0; i < new_fields.size(); ++i) {
    CompareField(after.name, old_fields[i], new_fields[i], assigned, differences);
  }
  if (wanted != assigned.end()) {
    for (const auto& [name, value] : wanted->second) {
      const auto has_name = [&name = name](const FieldValue& field) { return field.name == name; };
      if (std::none_of(new_fields.begin(), new_fields.end(), has_name)) {
        differences[after.name + "." + name] = "is no field of the simulator's";
      }
    }
  }

  if (RestOf(before) != RestOf(after)) {
    differences[after.name] = "changed in bits that belong to no field";
  }
}

/// The first difference in the tables. A table that is resized keeps the entries that fit; new ones
/// are zero.
std::string PkeyDifference(const Node& before, const Node& after, const u_int64_t* entries) {
  const auto has = [](std::size_t is, std::size_t should, const char* what) {
    return "has " + std::to_string(is) + what + ", should have " + std::to_string(should);
  };
  const std::size_t ports = before.portPkeyTable.size();
  if (after.portPkeyTable.size() != ports) return has(after.portPkeyTable.size(), ports, " ports");
  for (std::size_t port = 0; port < ports; ++port) {
    const std::string of_port = "of port " + std::to_string(port) + ' ';
    const std::vector<u_int16_t>& is = after.portPkeyTable[port];
    std::vector<u_int16_t> should = before.portPkeyTable[port];
    if (entries != nullptr) should.resize(static_cast<std::size_t>(*entries));
    if (is.size() != should.size()) return of_port + has(is.size(), should.size(), " entries");
    const auto wrong = std::mismatch(is.begin(), is.end(), should.begin());
    if (wrong.first == is.end()) continue;
    return of_port + "has " + Hex(*wrong.first) + " at index " +
           std::to_string(wrong.first - is.begin()) + ", should have " + Hex(*wrong.second);
  }
  return {};
}

}  // namespace

void Compare(Node& before, Node& after, const Assignments& assigned, Differences& differences) {
  const std::vector<Storage> old_storages = StoragesOf(before);
  const std::vector<Storage> new_storages = StoragesOf(after);
  Assignments unseen = assigned;
  unseen.erase(kPkeyTables);
  std::map<std::string, const Storage*> old_by_name;
  for (const Storage& storage : old_storages) old_by_name[storage.name] = &storage;
  for (const Storage& storage : new_storages) {
    unseen.erase(storage.name);
    const auto old_storage = old_by_name.find(storage.name);
    if (old_storage == old_by_name.end()) {
      differences[storage.name] = "came to be, though the node kept none";
    } else {
      CompareStorage(*old_storage->second, storage, assigned, differences);
      old_by_name.erase(old_storage);
    }
  }
  for (const auto& lost : old_by_name) differences[lost.first] = "is lost, though the node kept it";
  for (const auto& missing : unseen) differences[missing.first] = "is nothing that the node keeps";
  if (after.numPorts != before.numPorts) {
    differences["numPorts"] = "is " + std::to_string(after.numPorts) + ", should have stayed " +
                              std::to_string(before.numPorts);
  }
  const std::string pkeys =
      PkeyDifference(before, after, Find(assigned, kPkeyTables, kPkeyEntries));
  if (!pkeys.empty()) differences[kPkeyTables] = pkeys;
}

}  // namespace fabscan::simulator
