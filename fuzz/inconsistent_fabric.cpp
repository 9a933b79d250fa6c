#include "fuzz/inconsistent_fabric.h"

#include <cstdio>

#include "fuzz/record_filler.h"
#include "model/harmless_name.h"

namespace fabscan {

namespace {

constexpr std::size_t kMostNodes = 6;
constexpr std::size_t kMostNameBytes = 40;

/// An index that has records, or one far beyond all of them.
u_int32_t TakeIndex(Bytes& bytes, std::size_t own) {
  constexpr u_int32_t kFar[] = {0xFFFFFFFF, 0xFFFFFFFE, 0x80000000, 0x10000000};
  switch (bytes.OneOf(8)) {
    case 6:
      return bytes.Byte();  // possibly in use
    case 7:
      return kFar[bytes.OneOf(4)];
    default:
      return static_cast<u_int32_t>(own);
  }
}

bool HasRecords(u_int32_t index) { return index < 1024; }

/// The order of the generated file, for any names.
std::string KeyOf(std::size_t index) {
  char key[24];
  static_cast<void>(std::snprintf(key, sizeof key, "%08zu", index));
  return key;
}

void Replace(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
}

}  // namespace

InconsistentFabric::InconsistentFabric(Bytes& bytes, Fabscan& fabscan) : fabscan_(fabscan) {
  const std::size_t count = bytes.OneOf(kMostNodes + 1);
  for (std::size_t i = 0; i < count; ++i) AddNode(bytes);
  if (bytes.Flag()) guids_.insert(bytes.Byte());
  if (bytes.Flag()) guids_.insert(bytes.Byte());
}

void InconsistentFabric::AddNode(Bytes& bytes) {
  auto& by_name = fabscan_.discovered_fabric.NodeByName;
  const std::string key = KeyOf(nodes_.size());
  const std::string name = HarmlessName(bytes.Text(kMostNameBytes));
  const u_int64_t guid = bytes.Byte();
  const auto type = static_cast<IBNodeType>(bytes.OneOf(6));
  const phys_port_t port_count = bytes.Byte();
  IBNode& node = nodes_.emplace_back(name, guid, type, port_count, TakeIndex(bytes, nodes_.size()));
  node.setAlternativeName(bytes.Text(kMostNameBytes));
  const u_int8_t marks = bytes.Byte();
  node.in_sub_fabric = (marks & 3U) != 3;
  node.setOpalSwitch((marks & 4U) != 0);
  if ((marks & 8U) != 0) node.setSpecialNodeType(static_cast<IBSpecialPortType>(marks >> 4U));
  by_name[key] = (marks & 0xF0U) == 0xA0 ? nullptr : &node;
  if (HasRecords(node.createIndex)) FillRecords(bytes, fabscan_, node);
  AddPorts(bytes, node);
}

void InconsistentFabric::AddPorts(Bytes& bytes, IBNode& node) {
  std::size_t slots = bytes.OneOf(8);
  if (bytes.Flag()) slots = bytes.Byte();
  node.Ports.resize(slots);
  for (std::size_t slot = 0; slot < slots; ++slot) {
    if (bytes.AtEnd()) break;
    node.Ports[slot] = TakePort(bytes, slot);
  }
}

IBPort* InconsistentFabric::TakePort(Bytes& bytes, std::size_t slot) {
  const std::size_t choice = bytes.OneOf(8);
  if (choice == 0) return nullptr;
  if (choice == 1 && !ports_.empty()) return &ports_[bytes.Byte() % ports_.size()];
  const auto number = static_cast<phys_port_t>(choice < 6 ? slot : bytes.Byte());
  IBPort& port = ports_.emplace_back(number, TakeIndex(bytes, ports_.size()));
  FillMarks(bytes, port);
  if (bytes.OneOf(8) == 7) port.port_state = static_cast<IBPortState>(bytes.Byte());
  if (HasRecords(port.createIndex)) FillRecords(bytes, fabscan_, port);
  return &port;
}

void InconsistentFabric::UsePlainNames() {
  for (std::size_t i = 0; i < nodes_.size(); ++i) {
    const IBNode& node = nodes_[i];
    IBNode& plain = plain_nodes_.emplace_back("<N" + std::to_string(i) + '>', node.guid, node.type,
                                              node.numPorts, node.createIndex);
    plain.setAlternativeName("<A" + std::to_string(i) + '>');
    plain.in_sub_fabric = node.in_sub_fabric;
    plain.setOpalSwitch(node.isOpalSwitch());
    plain.setSpecialNodeType(node.getSpecialNodeType());
    plain.Ports = node.Ports;
    IBNode*& entry = fabscan_.discovered_fabric.NodeByName[KeyOf(i)];
    if (entry != nullptr) entry = &plain;
  }
}

std::string InconsistentFabric::WithFirstNames(const std::string& plain_text) const {
  // A name can contain the placeholder of another name, but no control character: first mark all
  // placeholders, then replace them.
  std::string text = plain_text;
  for (const char* kind : {"N", "A"}) {
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      const std::string plain = kind + std::to_string(i) + '>';
      Replace(text, '<' + plain, '\1' + plain);
    }
  }
  for (std::size_t i = 0; i < nodes_.size(); ++i) {
    const std::string number = std::to_string(i) + '>';
    Replace(text, "\1N" + number, nodes_[i].name);
    Replace(text, "\1A" + number, nodes_[i].getAlternativeName());
  }
  return text;
}

std::vector<const IBNode*> InconsistentFabric::Selected() const {
  std::vector<const IBNode*> selected;
  for (const auto& [key, node] : fabscan_.discovered_fabric.NodeByName) {
    if (node == nullptr || !node->in_sub_fabric) continue;
    if (guids_.empty() || guids_.count(node->guid) != 0) selected.push_back(node);
  }
  return selected;
}

}  // namespace fabscan
