#include "snapshot/snapshot_writer.h"

#include <infiniband/fabscan/absent_table.h>

#include <string_view>
#include <type_traits>
#include <vector>

#include "model/harmless_name.h"
#include "model/utf8.h"
#include "model/words.h"
#include "snapshot/record_text.h"

namespace fabscan {

namespace {

/// The maximum size of the records of these types in a snapshot, without their names.
template <class Kinds>
constexpr std::size_t TextBytesOf(const Kinds& kinds) {
  std::size_t bytes = 0;
  for (const auto& kind : kinds) bytes += TextBytes(*kind.table);
  return bytes;
}

// So all records of a node or port fit into one piece, with the text around them.
static_assert(TextBytesOf(kNodeRecords) < JsonWriter::kMostAtOnce / 2);
static_assert(TextBytesOf(kPortRecords) +
                  TesselExtendedInfo::kCounterSets * TextBytes(kCountersTable) <
              JsonWriter::kMostAtOnce / 2);

/// The reason for an absent record, prepared for writing.
template <class Owner>
struct AbsentRecord {
  FindRecord<Owner> find;
  std::string_view name;
  std::string_view reason;
  bool plain;  // the reason is a word
};

/// Looks up the records for the reasons of one owner after another. Owners share sets of reasons,
/// and consecutive ones mostly have the same set, which is looked up once.
template <class Owner>
class AbsentRecords {
 public:
  /// Only the names that an owner can have. The reasons must not move or change.
  const std::vector<AbsentRecord<Owner>>& Of(const AbsentReasons& reasons) {
    if (&reasons != reasons_) LookUp(reasons);
    return records_;
  }

 private:
  void LookUp(const AbsentReasons& reasons) {
    reasons_ = &reasons;
    records_.clear();
    for (const auto& [name, reason] : reasons) {
      const FindRecord<Owner> find = Find(name);
      if (find != nullptr) records_.push_back({find, name, reason, JsonWriter::IsWord(reason)});
    }
  }

  static FindRecord<Owner> Find(std::string_view name) {
    if constexpr (std::is_same_v<Owner, IBNode>) {
      return FindNodeRecord(name);
    } else {
      return FindPortRecord(name);
    }
  }

  const AbsentReasons* reasons_ = nullptr;
  std::vector<AbsentRecord<Owner>> records_;
};

/// Nodes of one model in canonical form: keys in a fixed order, defaults omitted.
class NodeWriter {
 public:
  NodeWriter(JsonWriter& json, const Fabscan& fabscan)
      : json_(json),
        fabric_(fabscan.discovered_fabric),
        store_(fabscan.fabric_extended_info),
        capabilities_(fabscan.capability_module) {}

  void Write(const IBNode& node) {
    json_.BeginObject();
    WriteName("name", node.name);
    json_.AtOnce([&](JsonPiece& to) {
      to.Key("guid").Hex(node.guid, 16);
      to.Key("type").Word(WordFor(kNodeTypeWords, node.type));
      to.Key("numPorts").Number(node.numPorts);
    });
    if (!node.getAlternativeName().empty()) {
      WriteName("alternativeName", node.getAlternativeName());
    }
    if (node.getDescription()) WriteName("description", *node.getDescription());
    json_.AtOnce([&](JsonPiece& to) {
      PutWhereNot(to, true, "inSubFabric", node.in_sub_fabric);
      if (node.isSpecialNode()) {
        to.Key("specialNode").Word(WordFor(kSpecialNodeWords, node.getSpecialNodeType()));
      }
      PutWhereNot(to, false, "opalSwitch", node.isOpalSwitch());
      PutMask(to, "smpCapabilityMask", capabilities_.find(node, false));
      PutMask(to, "gmpCapabilityMask", capabilities_.find(node, true));
      PutAttributes(to, node);
    });
    WriteAbsent(node, absent_of_nodes_);
    WriteExtra(node);
    WritePorts(node);
    json_.AtOnce([](JsonPiece& to) { to.EndObject().EndLine(); });
  }

 private:
  void WritePorts(const IBNode& node) {
    bool any = false;
    for (const IBPort* port : node.Ports) {
      if (port == nullptr) continue;
      WritePort(*port, !any);
      any = true;
    }
    if (any) json_.EndArray();
  }

  void WritePort(const IBPort& port, bool first) {
    json_.AtOnce([&](JsonPiece& to) {
      if (first) to.Key("ports").BeginArray();
      to.BeginObject();
      to.Key("num").Number(port.num);
      to.Key("state").Word(WordFor(kPortStateWords, port.port_state));
      if (port.guid != 0) to.Key("portGuid").Hex(port.guid, 16);
      if (const auto remote = port.getRemotePort()) PutRemotePort(to, *remote);
      if (port.lid != 0) to.Key("lid").Number(port.lid);
      if (port.link_width != IB_UNKNOWN_LINK_WIDTH) {
        to.Key("width").Word(WordFor(kLinkWidthWords, port.link_width));
      }
      if (port.link_speed != IB_UNKNOWN_LINK_SPEED) {
        to.Key("speed").Word(WordFor(kLinkSpeedWords, port.link_speed));
      }
      PutWhereNot(to, true, "inSubFabric", port.getInSubFabric());
      PutWhereNot(to, false, "fnm", port.isFNMPort());
      PutWhereNot(to, false, "fnm1", port.isFNM1Port());
      PutWhereNot(to, false, "special", port.isSpecialPort());
      PutAttributes(to, port);
    });
    WriteAbsent(port, absent_of_ports_);
    WriteExtra(port);
    json_.EndObject();
  }

  static void PutRemotePort(JsonPiece& to, const RemotePort& remote) {
    to.Key("peer").BeginObject();
    to.Key("guid").Hex(remote.node_guid, 16);
    to.Key("port").Number(remote.number);
    to.EndObject();
  }

  template <class Owner>
  void WriteExtra(const Owner& owner) {
    const std::string& extra = fabric_.extraOf(owner);
    if (extra.empty()) return;
    json_.Key("extra");
    json_.Raw(extra);
  }

  void PutAttributes(JsonPiece& to, const IBNode& node) const {
    bool any = false;
    ForEachRecord(store_, node, [&](const RecordTable& table, const void* record) {
      if (!any) to.Key("attributes").BeginObject();
      to.Key(table.name);
      PutRecord(to, table, record);
      any = true;
    });
    if (any) to.EndObject();
  }

  void PutAttributes(JsonPiece& to, const IBPort& port) const {
    const RecordTable* last = nullptr;
    ForEachRecord(store_, port, [&](const RecordTable& table, int index, const void* record) {
      if (last == nullptr) to.Key("attributes").BeginObject();
      if (last != &table) {
        if (last != nullptr) EndIndexed(to, *last);
        to.Key(table.name);
        BeginIndexed(to, table);
      }
      PutIndexed(to, table, index, record);
      last = &table;
    });
    if (last == nullptr) return;
    EndIndexed(to, *last);
    to.EndObject();
  }

  // Counter sets are an object from index to record, monitors a list of selectors.
  static void BeginIndexed(JsonPiece& to, const RecordTable& table) {
    if (&table == &kCountersTable) to.BeginObject();
    if (&table == &kMonitorsTable) to.BeginArray();
  }
  static void EndIndexed(JsonPiece& to, const RecordTable& table) {
    if (&table == &kCountersTable) to.EndObject();
    if (&table == &kMonitorsTable) to.EndArray();
  }
  static void PutIndexed(JsonPiece& to, const RecordTable& table, int index, const void* record) {
    if (&table == &kMonitorsTable) {
      to.Number(static_cast<u_int32_t>(index));
      return;
    }
    if (&table == &kCountersTable) {
      const char digit = static_cast<char>('0' + index);
      to.Key({&digit, 1});
    }
    PutRecord(to, table, record);
  }
  static void PutRecord(JsonPiece& to, const RecordTable& table, const void* record) {
    to.Value(PutRecordText(table, to.Begin(), record));
  }

  static void PutMask(JsonPiece& to, std::string_view key, const capability_mask_t* mask) {
    if (mask == nullptr) return;
    to.Key(key).BeginArray();
    for (const u_int32_t word : mask->mask) to.Hex(word);
    to.EndArray();
  }

  /// Omits reasons for records that are present.
  template <class Owner>
  void WriteAbsent(const Owner& owner, AbsentRecords<Owner>& absent) {
    bool any = false;
    for (const AbsentRecord<Owner>& record : absent.Of(store_.absentReasons(owner))) {
      if (record.find(store_, owner) != nullptr) continue;
      json_.AtOnce([&](JsonPiece& to) {
        if (!any) to.Key("absent").BeginObject();
        to.Key(record.name);
        if (record.plain) to.Word(record.reason);
      });
      if (!record.plain) json_.String(record.reason);
      any = true;
    }
    if (any) json_.EndObject();
  }

  /// A name as reported by the device; escaped if JSON cannot contain it.
  void WriteName(std::string_view key, const std::string& harmless) {
    json_.Key(key);
    if (harmless.find(kEscapeMark) == std::string::npos) return json_.String(harmless);
    const std::string original = OriginalName(harmless);
    if (IsUtf8(original)) return json_.String(original);
    json_.BeginObject();
    json_.Key("escaped");
    json_.String(harmless);
    json_.EndObject();
  }

  static void PutWhereNot(JsonPiece& to, bool usual, std::string_view key, bool value) {
    if (value != usual) to.Key(key).Bool(value);
  }

  JsonWriter& json_;
  const IBFabric& fabric_;
  const TesselExtendedInfo& store_;
  const CapabilityModule& capabilities_;
  AbsentRecords<IBNode> absent_of_nodes_;
  AbsentRecords<IBPort> absent_of_ports_;
};

}  // namespace

SnapshotWriter::SnapshotWriter(std::ostream& out, const SnapshotHeader& header) : json_(out) {
  json_.BeginObject();
  json_.Key("fabscan_snapshot");
  json_.Number(kSnapshotVersion);
  WriteText("source", header.source);
  WriteText("created", header.created);
  if (!header.extra.empty()) {
    json_.Key("extra");
    json_.Raw(header.extra);
  }
  json_.EndObject();
  json_.EndLine();
}

void SnapshotWriter::WriteText(std::string_view key, std::string_view text) {
  if (text.empty()) return;
  json_.Key(key);
  json_.String(text);
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
