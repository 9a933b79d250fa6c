#ifndef OTHER_HEADERS_FABRIC_H
#define OTHER_HEADERS_FABRIC_H

#include <recording.h>
#include <stdint.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

typedef uint8_t phys_port_t;

typedef enum { IB_UNKNOWN_NODE_TYPE, IB_CA_NODE, IB_SW_NODE, IB_RTR_NODE } IBNodeType;

typedef enum {
  IB_UNKNOWN_PORT_STATE = 0,
  IB_PORT_STATE_DOWN = 1,
  IB_PORT_STATE_INIT = 2,
  IB_PORT_STATE_ARM = 3,
  IB_PORT_STATE_ACTIVE = 4
} IBPortState;

typedef enum {
  IB_SPECIAL_PORT_AN = 1,
  IB_SPECIAL_PORT_ROUTER = 2,
  IB_SPECIAL_PORT_ETH_GATEWAY = 3,
  IB_NOT_SPECIAL_PORT = 255
} IBSpecialPortType;

/// Members are public; code that fills the model sets them.
class IBPort {
 public:
  bool getInSubFabric() const { return Asked("getInSubFabric", in_sub_fabric_); }
  bool isFNMPort() const { return Asked("isFNMPort", fnm_); }
  bool isFNM1Port() const { return Asked("isFNM1Port", fnm1_); }
  bool isSpecialPort() const { return Asked("isSpecialPort", special_); }

  IBPortState port_state = IB_PORT_STATE_ACTIVE;
  phys_port_t num = 0;
  uint32_t createIndex = 0;

  bool in_sub_fabric_ = true, fnm_ = false, fnm1_ = false, special_ = false;

 private:
  bool Asked(const char* question, bool answer) const {
    if (recording::ports_too) {
      recording::Ask(std::string(question) + "(" + std::to_string(num) + ")");
    }
    return answer;
  }
};

class IBNode {
 public:
  explicit IBNode(IBNodeType node_type) : type(node_type) {}

  bool isSpecialNode() const { return special_ != IB_NOT_SPECIAL_PORT; }
  IBSpecialPortType getSpecialNodeType() const { return special_; }
  const std::string& getAlternativeName() const { return alternative_name_; }
  bool isOpalSwitch() const { return opal_; }
  IBPort* getPort(phys_port_t n) const {
    if (n == 0) return type == IB_SW_NODE ? Ports[0] : nullptr;
    return n >= Ports.size() ? nullptr : Ports[n];
  }

  uint64_t guid = 0;
  std::vector<IBPort*> Ports;
  bool in_sub_fabric = true;
  const IBNodeType type;
  std::string name;
  phys_port_t numPorts = 0;
  uint32_t createIndex = 0;

  IBSpecialPortType special_ = IB_NOT_SPECIAL_PORT;
  std::string alternative_name_;
  bool opal_ = false;
};

class IBFabric {
 public:
  static void WriteFileHeader(std::ostream& out, const char* prefix) {
    recording::Ask(std::string("WriteFileHeader(") + prefix + ")");
    out << prefix << " header\n";
  }

  std::map<std::string, IBNode*> NodeByName;
};

#endif
