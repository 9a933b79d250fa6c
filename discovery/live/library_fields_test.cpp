// Holds the decoder's tables against the field functions of libibmad, bit by bit.

#include <gtest/gtest.h>
#include <infiniband/mad.h>

#include <cstring>
#include <map>
#include <string>
#include <string_view>

#include "discovery/attribute_fields.h"

namespace fabscan {
namespace {

using LibraryFields = std::map<std::string, MAD_FIELDS, std::less<>>;

// clang-format off
const LibraryFields kLibraryNodeInfo = {
    {"BaseVersion",     IB_NODE_BASE_VERS_F},
    {"ClassVersion",    IB_NODE_CLASS_VERS_F},
    {"NodeType",        IB_NODE_TYPE_F},
    {"NumPorts",        IB_NODE_NPORTS_F},
    {"SystemImageGUID", IB_NODE_SYSTEM_GUID_F},
    {"NodeGUID",        IB_NODE_GUID_F},
    {"PortGUID",        IB_NODE_PORT_GUID_F},
    {"PartitionCap",    IB_NODE_PARTITION_CAP_F},
    {"DeviceID",        IB_NODE_DEVID_F},
    {"revision",        IB_NODE_REVISION_F},
    {"LocalPortNum",    IB_NODE_LOCAL_PORT_F},
    {"VendorID",        IB_NODE_VENDORID_F},
};
const LibraryFields kLibrarySwitchInfo = {
    {"LinearFDBCap",         IB_SW_LINEAR_FDB_CAP_F},
    {"RandomFDBCap",         IB_SW_RANDOM_FDB_CAP_F},
    {"MCastFDBCap",          IB_SW_MCAST_FDB_CAP_F},
    {"LinearFDBTop",         IB_SW_LINEAR_FDB_TOP_F},
    {"DefPort",              IB_SW_DEF_PORT_F},
    {"DefMCastPriPort",      IB_SW_DEF_MCAST_PRIM_F},
    {"DefMCastNotPriPort",   IB_SW_DEF_MCAST_NOT_PRIM_F},
    {"LifeTimeValue",        IB_SW_LIFE_TIME_F},
    {"PortStateChange",      IB_SW_STATE_CHANGE_F},
    {"OptimizedSLVLMapping", IB_SW_OPT_SLTOVL_MAPPING_F},
    {"LidsPerPort",          IB_SW_LIDS_PER_PORT_F},
    {"PartEnfCap",           IB_SW_PARTITION_ENFORCE_CAP_F},
    {"InbEnfCap",            IB_SW_PARTITION_ENF_INB_F},
    {"OutbEnfCap",           IB_SW_PARTITION_ENF_OUTB_F},
    {"FilterRawInbCap",      IB_SW_FILTER_RAW_INB_F},
    {"FilterRawOutbCap",     IB_SW_FILTER_RAW_OUTB_F},
    {"ENP0",                 IB_SW_ENHANCED_PORT0_F},
    {"MCastFDBTop",          IB_SW_MCAST_FDB_TOP_F},
};
const LibraryFields kLibraryPortInfo = {
    {"GIDPrefix",                   IB_PORT_GID_PREFIX_F},
    {"LID",                         IB_PORT_LID_F},
    {"MasterSMLID",                 IB_PORT_SMLID_F},
    {"CapMsk",                      IB_PORT_CAPMASK_F},
    {"DiagCode",                    IB_PORT_DIAG_F},
    {"MKeyLeasePeriod",             IB_PORT_MKEY_LEASE_F},
    {"LocalPortNum",                IB_PORT_LOCAL_PORT_F},
    {"LinkWidthEnabled",            IB_PORT_LINK_WIDTH_ENABLED_F},
    {"LinkWidthSup",                IB_PORT_LINK_WIDTH_SUPPORTED_F},
    {"LinkWidthActive",             IB_PORT_LINK_WIDTH_ACTIVE_F},
    {"LinkSpeedSup",                IB_PORT_LINK_SPEED_SUPPORTED_F},
    {"PortState",                   IB_PORT_STATE_F},
    {"PortPhysicalState",           IB_PORT_PHYS_STATE_F},
    {"LinkDownDefaultState",        IB_PORT_LINK_DOWN_DEF_F},
    {"MKeyProtectBits",             IB_PORT_MKEY_PROT_BITS_F},
    {"LMC",                         IB_PORT_LMC_F},
    {"LinkSpeedActive",             IB_PORT_LINK_SPEED_ACTIVE_F},
    {"LinkSpeedEnabled",            IB_PORT_LINK_SPEED_ENABLED_F},
    {"NeighborMTU",                 IB_PORT_NEIGHBOR_MTU_F},
    {"MasterSMSL",                  IB_PORT_SMSL_F},
    {"VLCap",                       IB_PORT_VL_CAP_F},
    {"InitType",                    IB_PORT_INIT_TYPE_F},
    {"VLHighLimit",                 IB_PORT_VL_HIGH_LIMIT_F},
    {"VLArbitrationHighCap",        IB_PORT_VL_ARBITRATION_HIGH_CAP_F},
    {"VLArbitrationLowCap",         IB_PORT_VL_ARBITRATION_LOW_CAP_F},
    {"InitTypeReply",               IB_PORT_INIT_TYPE_REPLY_F},
    {"MTUCap",                      IB_PORT_MTU_CAP_F},
    {"VLStallCount",                IB_PORT_VL_STALL_COUNT_F},
    {"HOQLife",                     IB_PORT_HOQ_LIFE_F},
    {"OperationalVLs",              IB_PORT_OPER_VLS_F},
    {"PartitionEnforcementInbound", IB_PORT_PART_EN_INB_F},
    {"PartitionEnforcementOutbound", IB_PORT_PART_EN_OUTB_F},
    {"FilterRawInbound",            IB_PORT_FILTER_RAW_INB_F},
    {"FilterRawOutbound",           IB_PORT_FILTER_RAW_OUTB_F},
    {"MKeyViolations",              IB_PORT_MKEY_VIOL_F},
    {"PKeyViolations",              IB_PORT_PKEY_VIOL_F},
    {"QKeyViolations",              IB_PORT_QKEY_VIOL_F},
    {"GUIDCap",                     IB_PORT_GUID_CAP_F},
    {"ClientReregister",            IB_PORT_CLIENT_REREG_F},
    {"MulticastPKeyTrapSuppressionEnabled", IB_PORT_MCAST_PKEY_SUPR_ENAB_F},
    {"SubnetTimeOut",               IB_PORT_SUBN_TIMEOUT_F},
    {"RespTimeValue",               IB_PORT_RESP_TIME_VAL_F},
    {"LocalPhyErrors",              IB_PORT_LOCAL_PHYS_ERR_F},
    {"OverrunErrors",               IB_PORT_OVERRUN_ERR_F},
    {"MaxCreditHint",               IB_PORT_MAX_CREDIT_HINT_F},
    {"LinkRoundTripLatency",        IB_PORT_LINK_ROUND_TRIP_F},
    {"CapMsk2",                     IB_PORT_CAPMASK2_F},
    {"LinkSpeedExtActive",          IB_PORT_LINK_SPEED_EXT_ACTIVE_F},
    {"LinkSpeedExtSup",             IB_PORT_LINK_SPEED_EXT_SUPPORTED_F},
    {"LinkSpeedExtEnabled",         IB_PORT_LINK_SPEED_EXT_ENABLED_F},
};
// Without the four of HDR and NDR, which the library places on top of others, and without
// PartitionTop, which it does not know.
const LibraryFields kLibraryPortInfoExtended = {
    {"CapMsk",              IB_PORT_EXT_CAPMASK_F},
    {"FECModeActive",       IB_PORT_EXT_FEC_MODE_ACTIVE_F},
    {"FDRFECModeSupported", IB_PORT_EXT_FDR_FEC_MODE_SUPPORTED_F},
    {"FDRFECModeEnabled",   IB_PORT_EXT_FDR_FEC_MODE_ENABLED_F},
    {"EDRFECModeSupported", IB_PORT_EXT_EDR_FEC_MODE_SUPPORTED_F},
    {"EDRFECModeEnabled",   IB_PORT_EXT_EDR_FEC_MODE_ENABLED_F},
};
// clang-format on

u_int64_t LibraryReads(Payload& payload, MAD_FIELDS field, unsigned bits) {
  return bits > 32 ? mad_get_field64(payload.data(), 0, field)
                   : mad_get_field(payload.data(), 0, field);
}

/// Every bit of the payload, alone, must mean the same to both.
template <class Record, std::size_t kCount>
void ExpectAgreement(const WireField<Record> (&fields)[kCount], const LibraryFields& library,
                     std::size_t left_out) {
  std::size_t compared = 0;
  for (const WireField<Record>& field : fields) {
    const auto known = library.find(field.name);
    if (known == library.end()) continue;
    ++compared;
    for (unsigned bit = 0; bit < 512; ++bit) {
      Payload payload = {};
      payload[bit / 8] = static_cast<u_int8_t>(0x80U >> (bit % 8));
      EXPECT_EQ(ReadBits(payload, field.first_bit, field.bits),
                LibraryReads(payload, known->second, field.bits))
          << field.name << ", bit " << bit;
    }
  }
  EXPECT_EQ(compared, library.size()) << "a name in the test is not in the table";
  EXPECT_EQ(compared + left_out, kCount);
}

TEST(LibraryFields, AgreeOnNodeInfo) { ExpectAgreement(kNodeInfoFields, kLibraryNodeInfo, 0); }

TEST(LibraryFields, AgreeOnSwitchInfo) {
  ExpectAgreement(kSwitchInfoFields, kLibrarySwitchInfo, 0);
}

TEST(LibraryFields, AgreeOnPortInfo) { ExpectAgreement(kPortInfoFields, kLibraryPortInfo, 0); }

TEST(LibraryFields, AgreeOnPortInfoExtendedButForTheMisplacedOnes) {
  ExpectAgreement(kPortInfoExtendedFields, kLibraryPortInfoExtended, 5);
}

// Why the decoder has its own opinion on HDR and NDR. When this fails, the library was repaired,
// and the fields above can be compared as well.
TEST(LibraryFields, OfHdrLieOnTopOfThoseOfEdr) {
  Payload payload = {};
  payload[12] = 0xff;
  EXPECT_EQ(LibraryReads(payload, IB_PORT_EXT_EDR_FEC_MODE_ENABLED_F, 16),
            LibraryReads(payload, IB_PORT_EXT_HDR_FEC_MODE_SUPPORTED_F, 16));
}

}  // namespace
}  // namespace fabscan
