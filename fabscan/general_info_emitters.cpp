#include "body.h"
#include "fabscan_sim_info_dump.h"

namespace fabscan::generator {
namespace {

// clang-format off

constexpr Target kFWInfo = {"FWInfo_Block_Element", "&m_node->fwInfo"};
constexpr Field<FWInfo_Block_Element> kFWInfoFields[] = {
    FABSCAN_FIELD(FWInfo_Block_Element, Major),
    FABSCAN_FIELD(FWInfo_Block_Element, Minor),
    FABSCAN_FIELD(FWInfo_Block_Element, SubMinor),
    FABSCAN_FIELD(FWInfo_Block_Element, BuildID),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[0]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[1]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[2]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[3]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[4]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[5]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[6]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[7]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[8]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[9]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[10]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[11]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[12]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[13]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[14]),
    FABSCAN_FIELD(FWInfo_Block_Element, PSID.PSID[15]),
    FABSCAN_FIELD(FWInfo_Block_Element, INI_File_Version),
    FABSCAN_FIELD(FWInfo_Block_Element, Extended_Major),
    FABSCAN_FIELD(FWInfo_Block_Element, Extended_Minor),
    FABSCAN_FIELD(FWInfo_Block_Element, Extended_SubMinor),
    FABSCAN_FIELD(FWInfo_Block_Element, isfu_major),
    FABSCAN_FIELD(FWInfo_Block_Element, sec_boot),
};

constexpr Target kHWInfo = {"HWInfo_Block_Element", "&m_node->hwInfo"};
constexpr Field<HWInfo_Block_Element> kHWInfoFields[] = {
    FABSCAN_FIELD(HWInfo_Block_Element, DeviceHWRevision),
    FABSCAN_FIELD(HWInfo_Block_Element, DeviceID),
    FABSCAN_FIELD(HWInfo_Block_Element, num_ports),
    FABSCAN_FIELD(HWInfo_Block_Element, technology),
    FABSCAN_FIELD(HWInfo_Block_Element, pvs),
    FABSCAN_FIELD(HWInfo_Block_Element, hw_dev_id),
};

constexpr Target kSWInfo = {"SWInfo_Block_Element", "&m_node->swInfo"};
constexpr Field<SWInfo_Block_Element> kSWInfoFields[] = {
    FABSCAN_FIELD(SWInfo_Block_Element, Major),
    FABSCAN_FIELD(SWInfo_Block_Element, Minor),
    FABSCAN_FIELD(SWInfo_Block_Element, SubMinor),
};

// clang-format on

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

// The comments on special nodes differ in a blank.
// clang-format off

void SimInfoDumpCPP::GenerateFWInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(IsNotSpecial, "// The node=$ is special and it should not support VS General Info mad.")
      .Block<kFWInfo, kFWInfoFields>(FABSCAN_STORED_PART(getVSGeneralInfo, FWInfo),
                            "// Failed to get VS GeneralInfo mad for the node=$");
}

void SimInfoDumpCPP::GenerateHWInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(IsNotSpecial, "// The node=$ is special and it should not support VS General Info mad.")
      .Block<kHWInfo, kHWInfoFields>(FABSCAN_STORED_PART(getVSGeneralInfo, HWInfo),
                            "// Failed to get VS GeneralInfo mad for the node=$");
}

void SimInfoDumpCPP::GenerateSWInfo(std::ostream& out, const IBNode& node) const {
  Body(out, m_fabscan, node)
      .Unless(IsNotSpecial, "// The node=$ is special and it should not support VS GeneralInfo mad.")
      .Block<kSWInfo, kSWInfoFields>(FABSCAN_STORED_PART(getVSGeneralInfo, SWInfo),
                            "// Failed to get VS GeneralInfo mad for the node=$");
}

// clang-format on
