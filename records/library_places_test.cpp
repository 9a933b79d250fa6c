// The places of the architecture's attributes against the field table of libibmad, the only other
// source of them: discovery and simulator both use the rows, so an error there would cancel out.

#include <gtest/gtest.h>
#include <infiniband/mad.h>

#include <array>
#include <map>
#include <set>
#include <string>

#include "records/all_records.h"
#include "records/wire.h"

namespace fabscan {
namespace {

using FieldIds = std::map<std::string, MAD_FIELDS>;

// clang-format off
const FieldIds kNodeInfo = {
    {"BaseVersion",     IB_NODE_BASE_VERS_F},     {"ClassVersion", IB_NODE_CLASS_VERS_F},
    {"NodeType",        IB_NODE_TYPE_F},          {"NumPorts",     IB_NODE_NPORTS_F},
    {"SystemImageGUID", IB_NODE_SYSTEM_GUID_F},   {"NodeGUID",     IB_NODE_GUID_F},
    {"PortGUID",        IB_NODE_PORT_GUID_F},     {"PartitionCap", IB_NODE_PARTITION_CAP_F},
    {"DeviceID",        IB_NODE_DEVID_F},         {"revision",     IB_NODE_REVISION_F},
    {"LocalPortNum",    IB_NODE_LOCAL_PORT_F},    {"VendorID",     IB_NODE_VENDORID_F},
};

const FieldIds kSwitchInfo = {
    {"LinearFDBCap",       IB_SW_LINEAR_FDB_CAP_F},       {"RandomFDBCap",    IB_SW_RANDOM_FDB_CAP_F},
    {"MCastFDBCap",        IB_SW_MCAST_FDB_CAP_F},        {"LinearFDBTop",    IB_SW_LINEAR_FDB_TOP_F},
    {"DefPort",            IB_SW_DEF_PORT_F},             {"DefMCastPriPort", IB_SW_DEF_MCAST_PRIM_F},
    {"DefMCastNotPriPort", IB_SW_DEF_MCAST_NOT_PRIM_F},   {"LifeTimeValue",   IB_SW_LIFE_TIME_F},
    {"PortStateChange",    IB_SW_STATE_CHANGE_F},         {"LidsPerPort",     IB_SW_LIDS_PER_PORT_F},
    {"OptimizedSLVLMapping", IB_SW_OPT_SLTOVL_MAPPING_F}, {"InbEnfCap",       IB_SW_PARTITION_ENF_INB_F},
    {"PartEnfCap",         IB_SW_PARTITION_ENFORCE_CAP_F},{"OutbEnfCap",      IB_SW_PARTITION_ENF_OUTB_F},
    {"FilterRawInbCap",    IB_SW_FILTER_RAW_INB_F},       {"ENP0",            IB_SW_ENHANCED_PORT0_F},
    {"FilterRawOutbCap",   IB_SW_FILTER_RAW_OUTB_F},      {"MCastFDBTop",     IB_SW_MCAST_FDB_TOP_F},
};

const FieldIds kPortInfo = {
    {"GIDPrefix",            IB_PORT_GID_PREFIX_F},         {"LID",               IB_PORT_LID_F},
    {"MasterSMLID",          IB_PORT_SMLID_F},              {"CapMsk",            IB_PORT_CAPMASK_F},
    {"DiagCode",             IB_PORT_DIAG_F},               {"MKeyLeasePeriod",   IB_PORT_MKEY_LEASE_F},
    {"LocalPortNum",         IB_PORT_LOCAL_PORT_F},         {"LinkWidthEnabled",  IB_PORT_LINK_WIDTH_ENABLED_F},
    {"LinkWidthSup",         IB_PORT_LINK_WIDTH_SUPPORTED_F}, {"LinkWidthActive", IB_PORT_LINK_WIDTH_ACTIVE_F},
    {"LinkSpeedSup",         IB_PORT_LINK_SPEED_SUPPORTED_F}, {"PortState",       IB_PORT_STATE_F},
    {"PortPhysicalState",    IB_PORT_PHYS_STATE_F},         {"LinkDownDefaultState", IB_PORT_LINK_DOWN_DEF_F},
    {"MKeyProtectBits",      IB_PORT_MKEY_PROT_BITS_F},     {"LMC",               IB_PORT_LMC_F},
    {"LinkSpeedActive",      IB_PORT_LINK_SPEED_ACTIVE_F},  {"LinkSpeedEnabled",  IB_PORT_LINK_SPEED_ENABLED_F},
    {"NeighborMTU",          IB_PORT_NEIGHBOR_MTU_F},       {"MasterSMSL",        IB_PORT_SMSL_F},
    {"VLCap",                IB_PORT_VL_CAP_F},             {"InitType",          IB_PORT_INIT_TYPE_F},
    {"VLHighLimit",          IB_PORT_VL_HIGH_LIMIT_F},      {"InitTypeReply",     IB_PORT_INIT_TYPE_REPLY_F},
    {"VLArbitrationHighCap", IB_PORT_VL_ARBITRATION_HIGH_CAP_F}, {"MTUCap",       IB_PORT_MTU_CAP_F},
    {"VLArbitrationLowCap",  IB_PORT_VL_ARBITRATION_LOW_CAP_F},  {"VLStallCount", IB_PORT_VL_STALL_COUNT_F},
    {"HOQLife",              IB_PORT_HOQ_LIFE_F},           {"OperationalVLs",    IB_PORT_OPER_VLS_F},
    {"PartitionEnforcementInbound",  IB_PORT_PART_EN_INB_F},     {"FilterRawInbound",  IB_PORT_FILTER_RAW_INB_F},
    {"PartitionEnforcementOutbound", IB_PORT_PART_EN_OUTB_F},    {"FilterRawOutbound", IB_PORT_FILTER_RAW_OUTB_F},
    {"MKeyViolations",       IB_PORT_MKEY_VIOL_F},          {"PKeyViolations",    IB_PORT_PKEY_VIOL_F},
    {"QKeyViolations",       IB_PORT_QKEY_VIOL_F},          {"GUIDCap",           IB_PORT_GUID_CAP_F},
    {"ClientReregister",     IB_PORT_CLIENT_REREG_F},       {"SubnetTimeOut",     IB_PORT_SUBN_TIMEOUT_F},
    {"MulticastPKeyTrapSuppressionEnabled", IB_PORT_MCAST_PKEY_SUPR_ENAB_F},
    {"RespTimeValue",        IB_PORT_RESP_TIME_VAL_F},      {"LocalPhyErrors",    IB_PORT_LOCAL_PHYS_ERR_F},
    {"OverrunErrors",        IB_PORT_OVERRUN_ERR_F},        {"MaxCreditHint",     IB_PORT_MAX_CREDIT_HINT_F},
    {"LinkRoundTripLatency", IB_PORT_LINK_ROUND_TRIP_F},    {"CapMsk2",           IB_PORT_CAPMASK2_F},
    {"LinkSpeedExtActive",   IB_PORT_LINK_SPEED_EXT_ACTIVE_F}, {"LinkSpeedExtSup", IB_PORT_LINK_SPEED_EXT_SUPPORTED_F},
    {"LinkSpeedExtEnabled",  IB_PORT_LINK_SPEED_EXT_ENABLED_F},
};

const FieldIds kPortInfoExtended = {
    {"CapMsk",              IB_PORT_EXT_CAPMASK_F},                {"FECModeActive",     IB_PORT_EXT_FEC_MODE_ACTIVE_F},
    {"FDRFECModeSupported", IB_PORT_EXT_FDR_FEC_MODE_SUPPORTED_F}, {"FDRFECModeEnabled", IB_PORT_EXT_FDR_FEC_MODE_ENABLED_F},
    {"EDRFECModeSupported", IB_PORT_EXT_EDR_FEC_MODE_SUPPORTED_F}, {"EDRFECModeEnabled", IB_PORT_EXT_EDR_FEC_MODE_ENABLED_F},
};

const FieldIds kClassPortInfo = {
    {"BaseVersion",   IB_CPI_BASEVER_F},       {"ClassVersion", IB_CPI_CLASSVER_F},
    {"CapMsk",        IB_CPI_CAPMASK_F},       {"CapMsk2",      IB_CPI_CAPMASK2_F},
    {"RespTimeValue", IB_CPI_RESP_TIME_VALUE_F},
    {"RedirectTC",    IB_CPI_REDIRECT_TC_F},   {"RedirectSL",   IB_CPI_REDIRECT_SL_F},
    {"RedirectLID",   IB_CPI_REDIRECT_LID_F},  {"RedirectPKey", IB_CPI_REDIRECT_PKEY_F},
    {"RedirectQP",    IB_CPI_REDIRECT_QP_F},   {"RedirectQKey", IB_CPI_REDIRECT_QKEY_F},
    {"TrapTC",        IB_CPI_TRAP_TC_F},       {"TrapSL",       IB_CPI_TRAP_SL_F},
    {"TrapLID",       IB_CPI_TRAP_LID_F},      {"TrapPKey",     IB_CPI_TRAP_PKEY_F},
    {"TrapHL",        IB_CPI_TRAP_HL_F},       {"TrapQP",       IB_CPI_TRAP_QP_F},
    {"TrapQKey",      IB_CPI_TRAP_QKEY_F},
};
// clang-format on

using Bytes = std::array<u_int8_t, kGmpDataBytes>;

/// Sets one field after the other, all its bits and nothing else, on either side, and reads it on
/// the other. Fields that the library does not know, or not as the architecture has them, must be
/// those of `others`.
void CompareWithLibrary(const RecordTable& table, const FieldIds& ids,
                        const std::set<std::string>& others) {
  std::set<std::string> not_compared;
  std::size_t compared = 0;
  ForEachNumber(table, [&](const Number& number) {
    const std::string name = number.path();
    const auto id = ids.find(name);
    if (id == ids.end()) {
      not_compared.insert(name);
      return;
    }
    ++compared;
    const u_int64_t ones = ~u_int64_t{0} >> (64 - number.place.bits);
    Bytes ours = {};
    WriteBits(ours.data(), number.place, ones);
    Bytes theirs = {};
    if (number.place.bits > 32) {
      EXPECT_EQ(mad_get_field64(ours.data(), 0, id->second), ones) << name;
      mad_set_field64(theirs.data(), 0, id->second, ones);
    } else {
      EXPECT_EQ(mad_get_field(ours.data(), 0, id->second), ones) << name;
      mad_set_field(theirs.data(), 0, id->second, static_cast<u_int32_t>(ones));
    }
    EXPECT_EQ(ours, theirs) << name;
    EXPECT_EQ(ReadBits(theirs.data(), number.place), ones) << name;
  });
  EXPECT_EQ(not_compared, others);
  EXPECT_EQ(compared, ids.size()) << "a name in the test is not in the table";
}

TEST(LibraryPlaces, NodeInfo) { CompareWithLibrary(TableOf<SMP_NodeInfo>::value, kNodeInfo, {}); }

TEST(LibraryPlaces, SwitchInfo) {
  CompareWithLibrary(TableOf<SMP_SwitchInfo>::value, kSwitchInfo, {});
}

// The library of rdma-core 44 does not know the second set of extended speeds.
TEST(LibraryPlaces, PortInfo) {
  CompareWithLibrary(TableOf<SMP_PortInfo>::value, kPortInfo,
                     {"LinkSpeedExtActive2", "LinkSpeedExtSup2", "LinkSpeedExtEnabled2"});
}

// The library swaps the halves of the words with the HDR and NDR modes; the test below shows it.
TEST(LibraryPlaces, PortInfoExtended) {
  CompareWithLibrary(TableOf<SMP_PortInfoExtended>::value, kPortInfoExtended,
                     {"HDRFECModeSupported", "HDRFECModeEnabled", "NDRFECModeSupported",
                      "NDRFECModeEnabled", "PartitionTop"});
}

// When this fails, the library was repaired, and the fields above can be compared as well.
TEST(LibraryPlaces, OfHdrLieOnTopOfThoseOfEdr) {
  Bytes bytes = {};
  bytes[12] = 0xff;
  EXPECT_EQ(mad_get_field(bytes.data(), 0, IB_PORT_EXT_EDR_FEC_MODE_ENABLED_F),
            mad_get_field(bytes.data(), 0, IB_PORT_EXT_HDR_FEC_MODE_SUPPORTED_F));
}

// The library gives the flow labels the four bits of the service level as well.
TEST(LibraryPlaces, ClassPortInfo) {
  CompareWithLibrary(TableOf<IB_ClassPortInfo>::value, kClassPortInfo,
                     {"RedirectGID[0]", "RedirectGID[1]", "RedirectFL", "TrapGID[0]", "TrapGID[1]",
                      "TrapGID[2]", "TrapGID[3]", "TrapFL"});

  IB_ClassPortInfo record{};
  record.RedirectGID[0] = 0x0001020304050607;
  record.RedirectGID[1] = 0x08090a0b0c0d0e0f;
  record.TrapGID[0] = 0x00010203;
  record.TrapGID[1] = 0x04050607;
  record.TrapGID[2] = 0x08090a0b;
  record.TrapGID[3] = 0x0c0d0e0f;
  record.RedirectFL = 0x12345;
  record.TrapFL = 0x6789a;
  Bytes packed = {};
  PackRecord(TableOf<IB_ClassPortInfo>::value, &record, packed.data());
  for (const MAD_FIELDS field : {IB_CPI_REDIRECT_GID_F, IB_CPI_TRAP_GID_F}) {
    u_int8_t gid[16];
    mad_get_array(packed.data(), 0, field, gid);
    for (u_int8_t i = 0; i < 16; ++i) EXPECT_EQ(gid[i], i);
  }
  EXPECT_EQ(mad_get_field(packed.data(), 0, IB_CPI_REDIRECT_FL_F), 0x12345U);
  EXPECT_EQ(mad_get_field(packed.data(), 0, IB_CPI_TRAP_FL_F), 0x6789aU);
}

}  // namespace
}  // namespace fabscan
