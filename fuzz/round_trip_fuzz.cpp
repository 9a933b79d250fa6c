// Any consistent fabric: written, read and written again, it gives the same bytes, and the
// generator writes the same for both.

#include <cstdint>

#include "fuzz/bytes.h"
#include "fuzz/record_filler.h"
#include "fuzz/require.h"
#include "fuzz/scratch_folder.h"
#include "model/harmless_name.h"
#include "snapshot/testing/snapshot_text.h"

namespace fabscan {
namespace {

void AddPorts(Bytes& bytes, Fabscan& fabscan, IBNode& node) {
  const std::size_t count = bytes.OneOf(5);
  for (std::size_t i = 0; i < count; ++i) {
    const auto number = static_cast<phys_port_t>(bytes.Byte() % (node.numPorts + 1U));
    if (number == 0 && node.type != IB_SW_NODE) continue;
    if (node.getPort(number) != nullptr) continue;
    IBPort& port = fabscan.discovered_fabric.makePort(node, number);
    FillMarks(bytes, port);
    FillRecords(bytes, fabscan, port);
  }
}

void AddNode(Bytes& bytes, Fabscan& fabscan, std::size_t index) {
  IBFabric& fabric = fabscan.discovered_fabric;
  std::string name = bytes.Text(40);
  while (fabric.NodeByName.count(HarmlessName(name)) != 0) name += std::to_string(index);
  const u_int64_t guid = bytes.Number(8) << 3U | index;
  const auto type = static_cast<IBNodeType>(bytes.OneOf(4));
  IBNode& node = fabric.makeNode(name, guid, type, bytes.Byte());
  node.setAlternativeName(bytes.Text(40));
  const u_int8_t marks = bytes.Byte();
  node.in_sub_fabric = (marks & 1U) == 0;
  node.setOpalSwitch((marks & 2U) != 0);
  if (marks >> 6U != 0) node.setSpecialNodeType(static_cast<IBSpecialPortType>(marks >> 6U));
  FillRecords(bytes, fabscan, node);
  AddPorts(bytes, fabscan, node);
}

/// The redirect GID is written as an address of the running program.
std::string WithoutAddresses(std::string text) {
  const std::string before = "RedirectGID = 0x0x";
  for (std::size_t at = 0; (at = text.find(before, at)) != std::string::npos;) {
    at += before.size();
    text.erase(at, text.find_first_not_of("0123456789abcdef", at) - at);
  }
  return text;
}

void Check(Bytes bytes) {
  static const ScratchFolder folder;
  Fabscan fabscan;
  const SnapshotHeader header{bytes.Text(30), bytes.Text(30), {}};
  const std::size_t nodes = bytes.OneOf(6);
  for (std::size_t i = 0; i < nodes; ++i) AddNode(bytes, fabscan, i);

  const std::string text = WriteText(fabscan, header);
  Fabscan read;
  SnapshotHeader read_header;
  try {
    read_header = ReadText(text, read);
  } catch (const SnapshotError& error) {
    Require(false, error.what());
  }
  Require(WriteText(read, read_header) == text, "the same bytes after writing and reading");
  Require(WithoutAddresses(folder.Generated(read, {})) ==
              WithoutAddresses(folder.Generated(fabscan, {})),
          "the same generated file after writing and reading");
}

}  // namespace
}  // namespace fabscan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fabscan::Check(fabscan::Bytes(data, size));
  return 0;
}
