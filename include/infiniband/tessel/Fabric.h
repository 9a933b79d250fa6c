#ifndef INFINIBAND_TESSEL_FABRIC_H
#define INFINIBAND_TESSEL_FABRIC_H

#include <infiniband/tessel/place_index.h>
#include <sys/types.h>

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The discovered fabric: nodes and their ports, from a discovery or a saved fabric.
///
/// Only `IBFabric` creates nodes and ports; it numbers them densely in the order of their creation;
/// that number (`createIndex`) is the key of every record in the attribute store.

typedef u_int8_t phys_port_t;

enum IBNodeType : u_int8_t {
  IB_UNKNOWN_NODE_TYPE = 0,
  IB_CA_NODE = 1,
  IB_SW_NODE = 2,
  IB_RTR_NODE = 3,
};

enum IBPortState : u_int8_t {
  IB_UNKNOWN_PORT_STATE = 0,
  IB_PORT_STATE_DOWN = 1,
  IB_PORT_STATE_INIT = 2,
  IB_PORT_STATE_ARM = 3,
  IB_PORT_STATE_ACTIVE = 4,
};

enum IBLinkWidth : u_int8_t {
  IB_UNKNOWN_LINK_WIDTH = 0,
  IB_LINK_WIDTH_1X = 1,
  IB_LINK_WIDTH_4X = 2,
  IB_LINK_WIDTH_8X = 4,
  IB_LINK_WIDTH_12X = 8,
  IB_LINK_WIDTH_2X = 16,
};

enum IBLinkSpeed : u_int8_t {
  IB_UNKNOWN_LINK_SPEED = 0,
  IB_LINK_SPEED_SDR,
  IB_LINK_SPEED_DDR,
  IB_LINK_SPEED_QDR,
  IB_LINK_SPEED_FDR,
  IB_LINK_SPEED_EDR,
  IB_LINK_SPEED_HDR,
  IB_LINK_SPEED_NDR,
  IB_LINK_SPEED_XDR,
};

enum IBSpecialPortType : u_int8_t {
  IB_SPECIAL_PORT_AN = 1,
  IB_SPECIAL_PORT_ROUTER = 2,
  IB_SPECIAL_PORT_ETH_GATEWAY = 3,
  IB_NOT_SPECIAL_PORT = 255,
};

/// The port at the other end of a link. Its node may be outside the fabric.
struct RemotePort {
  u_int64_t node_guid;
  phys_port_t number;

  bool operator==(const RemotePort& other) const {
    return node_guid == other.node_guid && number == other.number;
  }
  bool operator!=(const RemotePort& other) const { return !(*this == other); }
};

class IBPort {
 public:
  IBPort(phys_port_t number, u_int32_t create_index) : num(number), createIndex(create_index) {}

  bool getInSubFabric() const { return in_sub_fabric_; }
  /// One of the two types of fabric-management ports.
  bool isFNMPort() const { return fnm_; }
  bool isFNM1Port() const { return fnm1_; }
  /// A port that serves a special node rather than a link of the fabric.
  bool isSpecialPort() const { return special_; }

  /// Nothing if the port has no link, or the link is not known.
  std::optional<RemotePort> getRemotePort() const {
    if (!has_remote_port_) return std::nullopt;
    return RemotePort{remote_guid_, remote_number_};
  }

  void setInSubFabric(bool value) { in_sub_fabric_ = value; }
  void setFNMPort(bool value) { fnm_ = value; }
  void setFNM1Port(bool value) { fnm1_ = value; }
  void setSpecialPort(bool value) { special_ = value; }
  void setRemotePort(const std::optional<RemotePort>& remote) {
    has_remote_port_ = remote.has_value();
    remote_guid_ = remote ? remote->node_guid : 0;
    remote_number_ = remote ? remote->number : phys_port_t{0};
  }

  IBPortState port_state = IB_UNKNOWN_PORT_STATE;
  phys_port_t num;

 private:
  bool in_sub_fabric_ = true;
  bool fnm_ = false;
  bool fnm1_ = false;
  bool special_ = false;
  bool has_remote_port_ = false;
  phys_port_t remote_number_ = 0;

 public:
  const u_int32_t createIndex;

  // What a topology text reports of a port, whose PortInfo is not known then; 0 otherwise.
  u_int16_t lid = 0;
  IBLinkWidth link_width = IB_UNKNOWN_LINK_WIDTH;
  IBLinkSpeed link_speed = IB_UNKNOWN_LINK_SPEED;

  /// 0 if not known. All ports of a switch have the GUID of its port 0.
  u_int64_t guid = 0;

 private:
  u_int64_t remote_guid_ = 0;
};

class IBNode {
 public:
  IBNode(std::string node_name, u_int64_t node_guid, IBNodeType node_type, phys_port_t port_count,
         u_int32_t create_index)
      : name(std::move(node_name)),
        guid(node_guid),
        createIndex(create_index),
        type(node_type),
        numPorts(port_count) {}

  /// Whether the node has a special role (see `getSpecialNodeType`), for any type.
  bool isSpecialNode() const { return special_type_ != IB_NOT_SPECIAL_PORT; }
  IBSpecialPortType getSpecialNodeType() const { return special_type_; }
  /// A second name of the node, harmless like `name`; may be empty.
  const std::string& getAlternativeName() const { return alternative_name_; }
  /// The NodeDescription as reported, harmless like `name`; nothing if it was not read.
  const std::optional<std::string>& getDescription() const { return description_; }
  /// A switch of the family that does not report a link width on regular ports.
  bool isOpalSwitch() const { return opal_switch_; }

  /// The port with number `number`, or null. Only switches have port 0.
  IBPort* getPort(phys_port_t number) const {
    if (number == 0 && type != IB_SW_NODE) return nullptr;
    return number < Ports.size() ? Ports[number] : nullptr;
  }

  void setSpecialNodeType(IBSpecialPortType value) { special_type_ = value; }
  /// Sets the name as reported by the device; makes it harmless.
  void setAlternativeName(std::string_view device_name);
  void setDescription(std::string_view reported);
  void setOpalSwitch(bool value) { opal_switch_ = value; }

  const std::string name;
  const u_int64_t guid;
  const u_int32_t createIndex;
  const IBNodeType type;
  bool in_sub_fabric = true;
  phys_port_t numPorts;
  std::vector<IBPort*> Ports;

 private:
  bool opal_switch_ = false;
  IBSpecialPortType special_type_ = IB_NOT_SPECIAL_PORT;
  std::string alternative_name_;
  std::optional<std::string> description_;
};

class IBFabric {
 public:
  IBFabric() = default;
  IBFabric(const IBFabric&) = delete;
  IBFabric& operator=(const IBFabric&) = delete;

  /// Adds a node. `device_name` is the name as reported by the device; the model stores its
  /// harmless form. Throws std::invalid_argument if the name or the GUID is in use.
  IBNode& makeNode(std::string_view device_name, u_int64_t guid, IBNodeType type,
                   phys_port_t num_ports);
  /// Adds port `number` to a node of this fabric. Throws std::invalid_argument if the number is
  /// in use, above `numPorts`, or 0 on a node that is not a switch.
  IBPort& makePort(IBNode& node, phys_port_t number);

  /// Removes all nodes and ports, and keeps some of their memory.
  void clear();

  /// Null if no node has this GUID.
  IBNode* getNodeByGuid(u_int64_t guid) const;

  std::size_t nodeCount() const { return nodes_.size(); }
  std::size_t portCount() const { return ports_.size(); }
  /// Nodes in the order of their creation: `nodes()[n].createIndex == n`.
  const std::deque<IBNode>& nodes() const { return nodes_; }
  std::deque<IBNode>& nodes() { return nodes_; }

  /// A JSON object that a snapshot contains and nothing here uses; empty if there is none.
  const std::string& extraOf(const IBNode& node) const { return textOf(extra_of_nodes_, node); }
  const std::string& extraOf(const IBPort& port) const { return textOf(extra_of_ports_, port); }
  void setExtra(const IBNode& node, std::string json);
  void setExtra(const IBPort& port, std::string json);

  /// Writes the name and version of this program, each line prefixed by `comment_prefix`.
  static void WriteFileHeader(std::ostream& out, const char* comment_prefix);

  /// Every node by its name, ascending; the order of the generated file.
  std::map<std::string, IBNode*> NodeByName;

 private:
  using Texts = std::map<u_int32_t, std::string>;  // by creation index

  template <class Owner>
  static const std::string& textOf(const Texts& texts, const Owner& owner) {
    static const std::string none;
    const auto found = texts.find(owner.createIndex);
    return found == texts.end() ? none : found->second;
  }

  /// Returns false if another node has the name.
  bool enterName(IBNode& node);

  std::map<std::string, IBNode*> spare_names_;  // entries for `NodeByName`, whose memory is kept
  std::deque<IBNode> nodes_;
  std::deque<IBPort> ports_;
  fabscan::PlaceIndex<u_int64_t> place_by_guid_;
  Texts extra_of_nodes_;
  Texts extra_of_ports_;
};

#endif
