#ifndef FABSCAN_SIM_INFO_DUMP_H
#define FABSCAN_SIM_INFO_DUMP_H

#include <infiniband/fabscan/fabscan.h>
#include <sys/types.h>

#include <cstdint>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

/// Names of capability bits; the index is the bit number, null an unnamed bit.
namespace SimInfoData {

extern const std::vector<const char*> SMPCapMaskBits;        // 90 bits
extern const std::vector<const char*> GMPCapMaskBits;        // 49 bits
extern const std::vector<const char*> PortInfoCapMaskBits;   // 32 bits
extern const std::vector<const char*> PortInfoCapMask2Bits;  // 16 bits

}  // namespace SimInfoData

/// Turns what a discovered fabric reported into C++ source for a fabric simulator.
///
///     Fabscan fabscan;                       // filled by discovery or from a saved fabric
///     SimInfoDumpCPP dump(fabscan);
///     int status = dump.Generate("MyDev", {0x5a1e0c0000001234});
///
/// `Generate` is the entry. The emitters below write the body of one generated function each, to
/// the stream they are given, and leave its last line without a line end. An emitter whose data is
/// missing, or whose attribute the node does not serve, writes one line that says so instead: a
/// comment where the simulated node may keep its own values, an `#error` where it must not.
///
/// The generator only reads the fabric and the store, on the caller's thread, and keeps nothing
/// between calls. Neither may change while it runs. It catches nothing: exceptions of the stream
/// pass through.
class SimInfoDumpCPP {
 public:
  explicit SimInfoDumpCPP(Fabscan& fabscan) : m_fabscan(fabscan) {}

  /// Writes the file that is named by the lower-cased prefix and "_generated.cpp", with 22
  /// functions for each selected node, by ascending node name.
  ///
  /// `prefix`: qualifies the generated functions, in the letter case given.
  /// `guids`: node GUIDs; empty selects every node of the sub-fabric.
  /// Returns the status of `Fabscan::OpenFile`, 0 on success; what closing the file finds, the
  /// facade knows.
  int Generate(const std::string& prefix, const std::set<uint64_t>& guids);

  // ---------- Frame of the generated file ----------

  /// The licence block, with the current year.
  void PrintCopyright(std::ostream& out) const;
  /// The include lines; `name` is the lower-cased prefix.
  void PrintIncludes(std::ostream& out, const std::string& name) const;
  /// The simulator's class for the node: SW, RTR, HCA, AN or Unknown.
  std::string GetDumpedNodeType(const IBNode& node) const;

  // ---------- Node attributes ----------

  /// From `getSMPNodeInfo`.
  void GenerateNodeInfo(std::ostream& out, const IBNode& node) const;
  /// The whole masks from `GetCapability`; the names of bits that the module calls supported.
  void GenerateSMPCapabilityMask(std::ostream& out, const IBNode& node) const;
  void GenerateGMPCapabilityMask(std::ostream& out, const IBNode& node) const;
  /// From `getSMPSwitchInfo`, `getSMP_ExtendedSwitchInfo` and `getSMPRouterInfo`.
  void GenerateSwitchInfo(std::ostream& out, const IBNode& node) const;
  void GenerateExtendedSwitchInfo(std::ostream& out, const IBNode& node) const;
  void GenerateRouterInfo(std::ostream& out, const IBNode& node) const;
  /// From `getSMPExtNodeInfo`.
  void GenerateExtendedNodeInfo(std::ostream& out, const IBNode& node) const;
  /// From `getPLFTInfo`.
  void GeneratePrivateLFTInfo(std::ostream& out, const IBNode& node) const;
  /// From `getARInfo`.
  void GenerateARInfo(std::ostream& out, const IBNode& node) const;
  /// From `getVSGeneralInfo`, one of its blocks each.
  void GenerateFWInfo(std::ostream& out, const IBNode& node) const;
  void GenerateHWInfo(std::ostream& out, const IBNode& node) const;
  void GenerateSWInfo(std::ostream& out, const IBNode& node) const;

  // ---------- Port attributes ----------
  // The maps are keyed by port number and hold what FNM, FNM1 and special ports have of their own;
  // every other port takes the regular or default record. Null records in a map are passed over.

  /// From `getSMPPortInfo`.
  void GeneratePortInfo(std::ostream& out, const IBNode& node) const;
  void GeneratePortInfoSW(const IBNode& node, std::ostream& out, const SMP_PortInfo* port0,
                          const SMP_PortInfo* regular,
                          const std::map<u_int8_t, const SMP_PortInfo*>& special) const;
  void GeneratePortInfoSW(std::ostream& out, const SMP_PortInfo* info, int indent,
                          bool withCapNames, bool withLinkWidthSup) const;
  void GeneratePortInfoCA(std::ostream& out, const SMP_PortInfo* regular) const;
  /// Comment lines that name the set bits of `mask`.
  void PrintCapabilityMask(int indent, std::ostream& out, u_int32_t mask, bool isCapMask2) const;

  /// From `getSMPPortInfoExtended`, the first active port that has a record.
  void GeneratePortInfoExtended(std::ostream& out, const IBNode& node) const;
  void GeneratePortInfoExtended(std::ostream& out, const SMP_PortInfoExtended* info) const;

  /// From `getSMPTarnExtPortInfo`.
  void GenerateExtendedPortInfo(std::ostream& out, const IBNode& node) const;
  void GenerateExtendedPortInfo(
      std::ostream& out, const SMP_TarnExtPortInfo* regular,
      const std::map<u_int8_t, const SMP_TarnExtPortInfo*>& special) const;
  void GenerateExtendedPortInfo(std::ostream& out, int indent,
                                const SMP_TarnExtPortInfo* info) const;

  // ---------- Congestion control ----------

  /// From `getCCEnhancedCongestionInfo`.
  void GenerateEnhancedCongestionInfo(std::ostream& out, const IBNode& node) const;
  /// From `getCCSwitchGeneralSettings`, where the enhanced congestion info has version 0.
  void GenerateCongestionSwitchGeneralSettings(std::ostream& out, const IBNode& node) const;

  // ---------- Reduction ----------

  /// From `getWrenClassPortInfo`.
  void GenerateVSReductionManagerClassPortInfo(std::ostream& out, const IBNode& node) const;
  /// From `getWrenReductionInfo`.
  void GenerateWrenReductionInfo(std::ostream& out, const IBNode& node) const;

  /// From `getWrenReductionPortInfo`.
  void GenerateWrenReductionPortInfo(std::ostream& out, const IBNode& node) const;
  void GenerateWrenReductionPortInfo(
      std::ostream& out, const WrenReductionPortInfo* defaultRecord,
      const std::map<uint8_t, const WrenReductionPortInfo*>& specialRecords) const;
  void GenerateWrenReductionPortInfo(std::ostream& out, int indent,
                                     const WrenReductionPortInfo* record) const;

  /// From `getWrenReductionCounters`, sets 0 to 7 of ports that have a monitor configuration.
  void GenerateWrenReductionCounters(std::ostream& out, const IBNode& node) const;
  void GenerateWrenReductionCounters(
      std::ostream& out,
      const std::map<uint8_t, std::map<uint32_t, const WrenReductionCounters*>>& normalPorts,
      const std::map<uint8_t, std::map<uint32_t, const WrenReductionCounters*>>& specialPorts)
      const;
  void GenerateWrenReductionCounters(
      std::ostream& out, int indent, uint8_t port,
      const std::map<uint32_t, const WrenReductionCounters*>& counterSets) const;
  void GenerateWrenReductionCounters(std::ostream& out, int indent,
                                     const WrenReductionCounters* record) const;

  /// From `getWrenPushReductionCounters`, for ports that have a monitor configuration.
  void GenerateWrenPushReductionCounters(std::ostream& out, const IBNode& node) const;
  void GenerateWrenPushReductionCounters(
      std::ostream& out, const WrenPushReductionCounters* defaultRecord,
      const std::map<uint8_t, const WrenPushReductionCounters*>& specialRecords) const;
  void GenerateWrenPushReductionCounters(std::ostream& out, int indent,
                                         const WrenPushReductionCounters* record) const;

 private:
  Fabscan& m_fabscan;
};

#endif
