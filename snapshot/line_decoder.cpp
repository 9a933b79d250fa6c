#include "snapshot/line_decoder.h"

#include "model/guid_text.h"
#include "model/harmless_name.h"
#include "snapshot/attribute_decoder.h"
#include "snapshot/known_keys.h"

namespace fabscan {

namespace {

enum HeaderKey : std::size_t { kVersion, kSource, kCreated, kHeaderExtra };
constexpr std::array<std::string_view, 4> kHeaderKeys = {"fabscan_snapshot", "source", "created",
                                                         "extra"};

// A node's keys in the order in which they are written; then those that tell the other lines.
enum NodeKey : std::size_t {
  kName,
  kGuid,
  kType,
  kNumPorts,
  kAlternativeName,
  kDescription,
  kNodeInSubFabric,
  kSpecialNode,
  kOpalSwitch,
  kSmpMask,
  kGmpMask,
  kNodeAttributes,
  kNodeAbsent,
  kNodeExtra,
  kPorts,
  kSecondHeader,
  kLastLine,
  kLastLineCount,
};
constexpr std::array<std::string_view, 18> kNodeKeys = {"name",
                                                        "guid",
                                                        "type",
                                                        "numPorts",
                                                        "alternativeName",
                                                        "description",
                                                        "inSubFabric",
                                                        "specialNode",
                                                        "opalSwitch",
                                                        "smpCapabilityMask",
                                                        "gmpCapabilityMask",
                                                        "attributes",
                                                        "absent",
                                                        "extra",
                                                        "ports",
                                                        "fabscan_snapshot",
                                                        "end",
                                                        "nodes"};
constexpr u_int64_t kIdentityKeys = 0xF;

enum PortKey : std::size_t {
  kNum,
  kState,
  kPortGuid,
  kPeer,
  kLid,
  kWidth,
  kSpeed,
  kPortInSubFabric,
  kFnm,
  kFnm1,
  kSpecial,
  kPortAttributes,
  kPortAbsent,
  kPortExtra,
};
constexpr std::array<std::string_view, 14> kPortKeys = {
    "num",         "state", "portGuid", "peer",    "lid",        "width",  "speed",
    "inSubFabric", "fnm",   "fnm1",     "special", "attributes", "absent", "extra"};

enum PeerKey : std::size_t { kPeerGuid, kPeerPort };
constexpr std::array<std::string_view, 2> kPeerKeys = {"guid", "port"};

enum EndKey : std::size_t { kIsEnd, kNodeCount };
constexpr std::array<std::string_view, 2> kEndKeys = {"end", "nodes"};

constexpr u_int64_t Keys(std::initializer_list<std::size_t> keys) {
  u_int64_t bits = 0;
  for (const std::size_t key : keys) bits |= u_int64_t{1} << key;
  return bits;
}

// The keys that version 1 does not have.
constexpr u_int64_t kNewHeaderKeys = Keys({kHeaderExtra});
constexpr u_int64_t kNewNodeKeys = Keys({kDescription, kNodeExtra});
constexpr u_int64_t kNewPortKeys = Keys({kPortGuid, kPeer, kLid, kWidth, kSpeed, kPortExtra});

/// Throws where one of the keys of `wanted` (bit i: key i) was not seen.
template <class List>
void RequireKeys(const KnownKeys<List>& known, u_int64_t wanted, const List& keys) {
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (((wanted >> i) & 1U) == 0 || known.Has(i)) continue;
    throw Malformed("the key " + Quoted(keys[i]) + " is missing; add it");
  }
}

json::object TakeLine(json::document& line) {
  json::object object;
  const simdjson::error_code error = line.get_object().get(object);
  if (error == simdjson::INCORRECT_TYPE) throw Malformed("the line must be an object, {...}");
  if (error != simdjson::SUCCESS) throw simdjson::simdjson_error(error);
  return object;
}

void RequireEndOfLine(json::document& line) {
  const bool at_end = line.current_location().error() == simdjson::OUT_OF_BOUNDS;
  if (!at_end) throw Malformed("more text follows the object; put each object on its own line");
}

}  // namespace

SnapshotHeader LineDecoder::DecodeHeader(json::document& line) {
  path_.Clear();
  if (Take(line.type()) != json::json_type::object) throw Malformed(kNoSnapshot);
  bool is_header = false;
  for (auto item : TakeLine(line)) {
    json::field field = Take(std::move(item));
    is_header |= Unescaped(field.key()) == kHeaderKeys[kVersion];
  }
  if (!is_header) throw Malformed(kNoSnapshot);
  line.rewind();
  SnapshotHeader header;
  KnownKeys known(kHeaderKeys, "key");
  for (auto item : TakeLine(line)) {
    json::field field = Take(std::move(item));
    const std::size_t key = known.Find(field);
    path_.Enter(kHeaderKeys[key]);
    switch (key) {
      case kVersion:
        version_ = TakeNumber(field.value(), 64);
        CheckVersion();
        break;
      case kSource:
        header.source = TakeText(field.value());
        break;
      case kCreated:
        header.created = TakeText(field.value());
        break;
      default:
        header.extra = TakeExtra(field.value());
    }
    path_.Leave();
  }
  RefuseNewKeys(known, kNewHeaderKeys, kHeaderKeys);
  RequireEndOfLine(line);
  return header;
}

void LineDecoder::CheckVersion() const {
  const std::string newest = std::to_string(kSnapshotVersion);
  if (version_ > kSnapshotVersion) {
    throw Malformed("version " + std::to_string(version_) +
                    " is newer than this program, which reads versions 1 to " + newest +
                    "; use a newer one");
  }
  if (version_ == 0) throw Malformed("there is no version 0; the versions are 1 to " + newest);
}

template <class List>
void LineDecoder::RefuseNewKeys(const KnownKeys<List>& known, u_int64_t new_keys,
                                const List& keys) {
  if (version_ != 1) return;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (((new_keys >> i) & 1U) == 0 || !known.Has(i)) continue;
    path_.Enter(keys[i]);
    throw Malformed("version 1 does not have this key; set \"fabscan_snapshot\" to 2");
  }
}

bool LineDecoder::DecodeNodeOrEnd(json::document& line) {
  path_.Clear();
  Identity identity;
  if (!FindIdentity(line, identity)) {
    line.rewind();
    DecodeEnd(line);
    return true;
  }
  IBNode& node = MakeNode(identity);
  if (options_.guids != nullptr && options_.guids->count(node.guid) == 0) return false;
  line.rewind();
  DecodeNode(line, node);
  return false;
}

bool LineDecoder::FindIdentity(json::document& line, Identity& identity) {
  KnownKeys known(kNodeKeys, "key");
  for (auto item : TakeLine(line)) {
    json::field field = Take(std::move(item));
    const std::size_t key = known.Find(field);
    if (key == kLastLine || key == kLastLineCount) return false;
    if (key == kSecondHeader) {
      throw Malformed("a second header; a snapshot has one, in its first line");
    }
    path_.Enter(kNodeKeys[key]);
    switch (key) {
      case kName:
        identity.name = TakeName(field.value());
        break;
      case kGuid:
        identity.guid = TakeNumber(field.value(), 64);
        break;
      case kType:
        identity.type = TakeWord(field.value(), kNodeTypeWords);
        break;
      case kNumPorts:
        identity.num_ports = static_cast<phys_port_t>(TakeNumber(field.value(), 8));
        break;
      default:
        break;
    }
    path_.Leave();
    if ((known.seen() & kIdentityKeys) == kIdentityKeys) return true;
  }
  RequireKeys(known, kIdentityKeys, kNodeKeys);
  return true;
}

IBNode& LineDecoder::MakeNode(const Identity& identity) {
  if (fabric_.nodeCount() >= options_.max_nodes) {
    throw Malformed("more than " + std::to_string(options_.max_nodes) +
                    " nodes; raise max-nodes if that is meant");
  }
  if (const IBNode* other = fabric_.getNodeByGuid(identity.guid)) {
    path_.Enter(kNodeKeys[kGuid]);
    throw Malformed(GuidText(identity.guid) + " is the GUID of node " +
                    Quoted(OriginalName(other->name)) + " too; give each node its own");
  }
  try {
    return fabric_.makeNode(identity.name, identity.guid, identity.type, identity.num_ports);
  } catch (const std::invalid_argument&) {
    path_.Enter(kNodeKeys[kName]);
    throw Malformed(Quoted(identity.name) + " is the name of another node too; give each its own");
  }
}

void LineDecoder::DecodeNode(json::document& line, IBNode& node) {
  KnownKeys known(kNodeKeys, "key");
  AttributeDecoder<IBNode> attributes(store_, node, path_);
  for (auto item : TakeLine(line)) {
    json::field field = Take(std::move(item));
    const std::size_t key = known.Find(field);
    path_.Enter(kNodeKeys[key]);
    switch (key) {
      case kAlternativeName:
        node.setAlternativeName(TakeName(field.value()));
        break;
      case kDescription:
        node.setDescription(TakeName(field.value()));
        break;
      case kNodeInSubFabric:
        node.in_sub_fabric = TakeBool(field.value());
        break;
      case kSpecialNode:
        node.setSpecialNodeType(TakeWord(field.value(), kSpecialNodeWords));
        break;
      case kOpalSwitch:
        node.setOpalSwitch(TakeBool(field.value()));
        break;
      case kSmpMask:
      case kGmpMask:
        DecodeMask(field.value(), node, key == kGmpMask);
        break;
      case kNodeAttributes:
        attributes.DecodeAttributes(field.value());
        break;
      case kNodeAbsent:
        attributes.DecodeAbsent(field.value());
        break;
      case kNodeExtra:
        fabric_.setExtra(node, TakeExtra(field.value()));
        break;
      case kPorts:
        DecodePorts(field.value(), node);
        break;
      case kSecondHeader:
      case kLastLine:
      case kLastLineCount:
        throw Malformed("the key does not belong to a node; remove it");
      default:
        break;  // taken already
    }
    path_.Leave();
  }
  RefuseNewKeys(known, kNewNodeKeys, kNodeKeys);
  attributes.CheckAbsent();
  RequireEndOfLine(line);
}

void LineDecoder::DecodeMask(json::value value, const IBNode& node, bool is_gmp) {
  constexpr std::size_t kWords = sizeof(capability_mask_t::mask) / sizeof(u_int32_t);
  capability_mask_t mask{};
  std::size_t word = 0;
  for (auto item : TakeArray(value)) {
    if (word < kWords) {
      path_.EnterElement(word);
      mask.mask[word] = static_cast<u_int32_t>(TakeNumber(Take(item), 32));
      path_.Leave();
    }
    ++word;
  }
  if (word != kWords) {
    throw Malformed("the mask has " + std::to_string(word) + " words; give " +
                    std::to_string(kWords) + " of 32 bits, the lowest bits first");
  }
  capabilities_.put(node, is_gmp, mask);
}

void LineDecoder::DecodePorts(json::value value, IBNode& node) {
  std::size_t element = 0;
  for (auto item : TakeArray(value)) {
    path_.EnterElement(element++);
    DecodePort(TakeObject(Take(item)), node);
    path_.Leave();
  }
}

IBPort& LineDecoder::MakePort(json::object& port, IBNode& node) {
  KnownKeys known(kPortKeys, "key");
  for (auto item : port) {
    json::field field = Take(std::move(item));
    if (known.Find(field) != kNum) continue;
    path_.Enter(kPortKeys[kNum]);
    const auto number = static_cast<phys_port_t>(TakeNumber(field.value(), 8));
    if (number > node.numPorts) {
      throw Malformed("port " + std::to_string(number) + " is above the node's numPorts, " +
                      std::to_string(node.numPorts) + "; correct one of the two");
    }
    if (number == 0 && node.type != IB_SW_NODE) {
      throw Malformed("port 0 exists on a switch only; number this node's ports from 1");
    }
    if (node.getPort(number) != nullptr) {
      throw Malformed("duplicate port " + std::to_string(number) + "; keep one");
    }
    path_.Leave();
    return fabric_.makePort(node, number);
  }
  throw Malformed("the key \"num\" is missing; add it");
}

void LineDecoder::DecodePort(json::object object, IBNode& node) {
  IBPort& port = MakePort(object, node);
  if (const simdjson::error_code error = object.reset().error()) {
    throw simdjson::simdjson_error(error);
  }
  KnownKeys known(kPortKeys, "key");
  AttributeDecoder<IBPort> attributes(store_, port, path_);
  for (auto item : object) {
    json::field field = Take(std::move(item));
    const std::size_t key = known.Find(field);
    path_.Enter(kPortKeys[key]);
    switch (key) {
      case kState:
        port.port_state = TakeWord(field.value(), kPortStateWords);
        break;
      case kPortGuid:
        port.guid = TakeNumber(field.value(), 64);
        break;
      case kPeer:
        port.setRemotePort(DecodeRemotePort(field.value()));
        break;
      case kLid:
        port.lid = static_cast<u_int16_t>(TakeNumber(field.value(), 16));
        break;
      case kWidth:
        port.link_width = TakeWord(field.value(), kLinkWidthWords);
        break;
      case kSpeed:
        port.link_speed = TakeWord(field.value(), kLinkSpeedWords);
        break;
      case kPortInSubFabric:
        port.setInSubFabric(TakeBool(field.value()));
        break;
      case kFnm:
        port.setFNMPort(TakeBool(field.value()));
        break;
      case kFnm1:
        port.setFNM1Port(TakeBool(field.value()));
        break;
      case kSpecial:
        port.setSpecialPort(TakeBool(field.value()));
        break;
      case kPortAttributes:
        attributes.DecodeAttributes(field.value());
        break;
      case kPortAbsent:
        attributes.DecodeAbsent(field.value());
        break;
      case kPortExtra:
        fabric_.setExtra(port, TakeExtra(field.value()));
        break;
      default:
        break;  // taken already
    }
    path_.Leave();
  }
  RequireKeys(known, Keys({kState}), kPortKeys);
  RefuseNewKeys(known, kNewPortKeys, kPortKeys);
  attributes.CheckAbsent();
}

RemotePort LineDecoder::DecodeRemotePort(json::value value) {
  RemotePort remote = {};
  KnownKeys known(kPeerKeys, "key");
  for (auto item : TakeObject(value)) {
    json::field field = Take(std::move(item));
    const std::size_t key = known.Find(field);
    path_.Enter(kPeerKeys[key]);
    if (key == kPeerGuid) {
      remote.node_guid = TakeNumber(field.value(), 64);
    } else {
      remote.number = static_cast<phys_port_t>(TakeNumber(field.value(), 8));
    }
    path_.Leave();
  }
  RequireKeys(known, Keys({kPeerGuid, kPeerPort}), kPeerKeys);
  return remote;
}

void LineDecoder::DecodeEnd(json::document& line) {
  KnownKeys known(kEndKeys, "key");
  for (auto item : TakeLine(line)) {
    json::field field = Take(std::move(item));
    const std::size_t key = known.Find(field);
    path_.Enter(kEndKeys[key]);
    if (key == kIsEnd) {
      if (!TakeBool(field.value())) throw Malformed("must be true");
    } else {
      const u_int64_t nodes = TakeNumber(field.value(), 64);
      if (nodes != fabric_.nodeCount()) {
        throw Malformed("the last line counts " + std::to_string(nodes) + " nodes, but " +
                        std::to_string(fabric_.nodeCount()) +
                        " precede it; use the complete file, or correct the count");
      }
    }
    path_.Leave();
  }
  RequireKeys(known, Keys({kIsEnd, kNodeCount}), kEndKeys);
  RequireEndOfLine(line);
}

}  // namespace fabscan
