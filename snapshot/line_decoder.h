#ifndef FABSCAN_SNAPSHOT_LINE_DECODER_H
#define FABSCAN_SNAPSHOT_LINE_DECODER_H

#include <infiniband/fabscan/fabscan.h>

#include <set>

#include "snapshot/json_value.h"
#include "snapshot/known_keys.h"
#include "snapshot/snapshot.h"

namespace fabscan {

inline constexpr char kNoSnapshot[] =
    "not a snapshot: line 1 must be the header, {\"fabscan_snapshot\": 2, ...}";

/// Takes one line of a snapshot after another into a model and its store. All operations throw
/// Malformed and simdjson::simdjson_error; `path` then tells where.
class LineDecoder {
 public:
  LineDecoder(Fabscan& fabscan, const SnapshotReadOptions& options)
      : fabric_(fabscan.discovered_fabric),
        store_(fabscan.fabric_extended_info),
        capabilities_(fabscan.capability_module),
        options_(options) {}

  SnapshotHeader DecodeHeader(json::document& line);
  /// A node, or the last line. True when it was the last line.
  bool DecodeNodeOrEnd(json::document& line);

  const KeyPath& path() const { return path_; }

 private:
  /// What a node is made of; the rest of its line can only be read once it is known.
  struct Identity {
    std::string name;
    u_int64_t guid = 0;
    IBNodeType type = IB_UNKNOWN_NODE_TYPE;
    phys_port_t num_ports = 0;
  };

  void CheckVersion() const;
  /// Throws for one of `new_keys` (bit i: key i) in a file of version 1.
  template <class List>
  void RefuseNewKeys(const KnownKeys<List>& known, u_int64_t new_keys, const List& keys);
  /// False where the line is the last one.
  bool FindIdentity(json::document& line, Identity& identity);
  IBNode& MakeNode(const Identity& identity);
  void DecodeNode(json::document& line, IBNode& node);
  void DecodeMask(json::value value, const IBNode& node, bool is_gmp);
  void DecodePorts(json::value value, IBNode& node);
  void DecodePort(json::object port, IBNode& node);
  IBPort& MakePort(json::object& port, IBNode& node);
  RemotePort DecodeRemotePort(json::value value);
  void DecodeEnd(json::document& line);

  IBFabric& fabric_;
  TesselExtendedInfo& store_;
  CapabilityModule& capabilities_;
  const SnapshotReadOptions& options_;
  u_int64_t version_ = 0;
  KeyPath path_;
};

}  // namespace fabscan

#endif
