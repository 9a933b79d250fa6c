#include <harmless_name.h>
#include <utf8.h>

#include "record_fields.h"
#include "record_writer.h"
#include "snapshot_writer.h"
#include "words.h"

namespace fabscan {

namespace {

/// Nodes of one model, in canonical form: keys in one order, defaults left out.
class NodeWriter {
 public:
  NodeWriter(JsonWriter& json, const Fabscan& fabscan)
      : json_(json),
        store_(fabscan.fabric_extended_info),
        capabilities_(fabscan.capability_module) {}

  void Write(const IBNode& node) {
    json_.BeginObject();
    WriteName("name", node.name);
    json_.Key("guid");
    json_.Hex(node.guid, 16);
    WriteText("type", WordFor(kNodeTypeWords, node.type));
    json_.Key("numPorts");
    json_.Number(node.numPorts);
    if (!node.getAlternativeName().empty()) {
      WriteName("alternativeName", node.getAlternativeName());
    }
    WriteWhereNot(true, "inSubFabric", node.in_sub_fabric);
    if (node.isSpecialNode()) {
      WriteText("specialNode", WordFor(kSpecialNodeWords, node.getSpecialNodeType()));
    }
    WriteWhereNot(false, "opalSwitch", node.isOpalSwitch());
    WriteMask("smpCapabilityMask", capabilities_.find(node, false));
    WriteMask("gmpCapabilityMask", capabilities_.find(node, true));
    WriteAttributes(node);
    WriteAbsent(node);
    WritePorts(node);
    json_.EndObject();
    json_.EndLine();
  }

 private:
  void WritePorts(const IBNode& node) {
    bool any = false;
    for (const IBPort* port : node.Ports) {
      if (port == nullptr) continue;
      if (!any) {
        json_.Key("ports");
        json_.BeginArray();
        any = true;
      }
      WritePort(*port);
    }
    if (any) json_.EndArray();
  }

  void WritePort(const IBPort& port) {
    json_.BeginObject();
    json_.Key("num");
    json_.Number(port.num);
    WriteText("state", WordFor(kPortStateWords, port.port_state));
    WriteWhereNot(true, "inSubFabric", port.getInSubFabric());
    WriteWhereNot(false, "fnm", port.isFNMPort());
    WriteWhereNot(false, "fnm1", port.isFNM1Port());
    WriteWhereNot(false, "special", port.isSpecialPort());
    WriteAttributes(port);
    WriteAbsent(port);
    json_.EndObject();
  }

  void WriteAttributes(const IBNode& node) {
    attributes_open_ = false;
    ForEachRecord(store_, node, [this](const RecordTable& table, const void* record) {
      OpenAttribute(table.name);
      WriteRecord(json_, table, record);
    });
    if (attributes_open_) json_.EndObject();
  }

  void WriteAttributes(const IBPort& port) {
    attributes_open_ = false;
    const RecordTable* open = nullptr;  // the counters or monitors being written
    ForEachRecord(store_, port, [&](const RecordTable& table, int index, const void* record) {
      if (open != nullptr && open != &table) CloseIndexed(*open);
      if (open != &table) OpenAttribute(table.name);
      if (index == kOnlyOne) {
        WriteRecord(json_, table, record);
        return;
      }
      if (open != &table) OpenIndexed(table);
      open = &table;
      WriteIndexed(table, index, record);
    });
    if (open != nullptr) CloseIndexed(*open);
    if (attributes_open_) json_.EndObject();
  }

  void OpenAttribute(std::string_view name) {
    if (!attributes_open_) {
      json_.Key("attributes");
      json_.BeginObject();
      attributes_open_ = true;
    }
    json_.Key(name);
  }

  // Counter sets are an object from index to record, monitors a list of selectors.
  void OpenIndexed(const RecordTable& table) {
    &table == &kCountersTable ? json_.BeginObject() : json_.BeginArray();
  }
  void CloseIndexed(const RecordTable& table) {
    &table == &kCountersTable ? json_.EndObject() : json_.EndArray();
  }
  void WriteIndexed(const RecordTable& table, int index, const void* record) {
    if (&table == &kCountersTable) {
      const char digit = static_cast<char>('0' + index);
      json_.Key({&digit, 1});
      WriteRecord(json_, table, record);
    } else {
      json_.Number(static_cast<u_int64_t>(index));
    }
  }

  template <class Key>
  void WriteMask(const Key& key, const capability_mask_t* mask) {
    if (mask == nullptr) return;
    json_.Key(key);
    json_.BeginArray();
    for (const u_int32_t word : mask->mask) json_.Hex(word);
    json_.EndArray();
  }

  /// Reasons for records that are there after all are left out.
  template <class Owner>
  void WriteAbsent(const Owner& owner) {
    bool any = false;
    for (const auto& [record, reason] : store_.absentReasons(owner)) {
      if (!Lacks(store_, owner, record)) continue;
      if (!any) {
        json_.Key("absent");
        json_.BeginObject();
        any = true;
      }
      WriteText(record, reason);
    }
    if (any) json_.EndObject();
  }

  /// A name as the device gave it; one that JSON cannot hold, in its escaped form.
  template <class Key>
  void WriteName(const Key& key, const std::string& harmless) {
    const std::string original = OriginalName(harmless);
    if (IsUtf8(original)) {
      WriteText(key, original);
      return;
    }
    json_.Key(key);
    json_.BeginObject();
    WriteText("escaped", harmless);
    json_.EndObject();
  }

  template <class Key>
  void WriteText(const Key& key, std::string_view text) {
    json_.Key(key);
    json_.String(text);
  }

  template <class Key>
  void WriteWhereNot(bool usual, const Key& key, bool value) {
    if (value == usual) return;
    json_.Key(key);
    json_.Bool(value);
  }

  JsonWriter& json_;
  const TesselExtendedInfo& store_;
  const CapabilityModule& capabilities_;
  bool attributes_open_ = false;
};

}  // namespace

SnapshotWriter::SnapshotWriter(std::ostream& out, const SnapshotHeader& header) : json_(out) {
  json_.BeginObject();
  json_.Key("fabscan_snapshot");
  json_.Number(kSnapshotVersion);
  if (!header.source.empty()) {
    json_.Key("source");
    json_.String(header.source);
  }
  if (!header.created.empty()) {
    json_.Key("created");
    json_.String(header.created);
  }
  json_.EndObject();
  json_.EndLine();
}

void SnapshotWriter::Write(const Fabscan& part,
                           const std::function<void(std::size_t nodes)>& written) {
  NodeWriter writer(json_, part);
  for (const IBNode& node : part.discovered_fabric.nodes()) {
    writer.Write(node);
    ++nodes_;
    if (written) written(nodes_);
  }
}

void SnapshotWriter::Finish() {
  json_.BeginObject();
  json_.Key("end");
  json_.Bool(true);
  json_.Key("nodes");
  json_.Number(nodes_);
  json_.EndObject();
  json_.EndLine();
  json_.Flush();
}

void WriteSnapshot(std::ostream& out, const Fabscan& fabscan, const SnapshotHeader& header,
                   const std::function<void(std::size_t done, std::size_t total)>& progress) {
  SnapshotWriter writer(out, header);
  const std::size_t total = fabscan.discovered_fabric.nodeCount();
  writer.Write(fabscan, [&](std::size_t nodes) {
    if (progress) progress(nodes, total);
  });
  writer.Finish();
}

}  // namespace fabscan
