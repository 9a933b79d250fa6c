#include "comparison.h"

#include <algorithm>
#include <sstream>

#include "storages.h"

namespace fabscan::simulator {

namespace {

/// The size of the ports' partition key tables, set by generated files, compared as a separate
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

std::size_t PkeyEntries(const Node& node, std::size_t port) {
  return node.portPkeyTable[port].size();
}

void ComparePkeyTables(const Node& before, const Node& after, const Assignments& assigned,
                       Differences& differences) {
  const u_int64_t* entries = Find(assigned, kPkeyTables, kPkeyEntries);
  for (std::size_t port = 0; port < after.portPkeyTable.size(); ++port) {
    const u_int64_t should = entries != nullptr ? *entries : PkeyEntries(before, port);
    if (PkeyEntries(after, port) == should) continue;
    differences[kPkeyTables] = "of port " + std::to_string(port) + " has " +
                               std::to_string(PkeyEntries(after, port)) + " entries, should have " +
                               std::to_string(should);
  }
}

}  // namespace

void Compare(Node& before, Node& after, const Assignments& assigned, Differences& differences) {
  const std::vector<Storage> old_storages = StoragesOf(before);
  const std::vector<Storage> new_storages = StoragesOf(after);
  Assignments unseen = assigned;
  unseen.erase(kPkeyTables);
  auto old_storage = old_storages.begin();
  for (const Storage& storage : new_storages) {
    unseen.erase(storage.name);
    if (old_storage != old_storages.end() && old_storage->name == storage.name) {
      CompareStorage(*old_storage++, storage, assigned, differences);
    } else {
      differences[storage.name] = "came to be, though the node kept none";
    }
  }
  for (const auto& missing : unseen) differences[missing.first] = "is nothing that the node keeps";
  ComparePkeyTables(before, after, assigned, differences);
}

}  // namespace fabscan::simulator
