#ifndef OTHER_HEADERS_FABSCAN_H
#define OTHER_HEADERS_FABSCAN_H

#include <infiniband/fabscan/fabscan_tessel_extended_info.h>
#include <infiniband/fabscan/fabscan_types.h>
#include <infiniband/tessel/Fabric.h>
#include <infiniband/tessel/OutputControl.h>
#include <recording.h>

#include <fstream>
#include <string>

class CapabilityModule {
 public:
  bool IsSupportedSMPCapability(const IBNode* node, u_int8_t bit) const {
    recording::Ask("IsSupportedSMPCapability(" + node->name + ", " + std::to_string(bit) + ")");
    return recording::answers.smp_bits.count(bit) != 0;
  }
  bool IsSupportedGMPCapability(const IBNode* node, u_int8_t bit) const {
    recording::Ask("IsSupportedGMPCapability(" + node->name + ", " + std::to_string(bit) + ")");
    return recording::answers.gmp_bits.count(bit) != 0;
  }
  int GetCapability(IBNode* node, bool isGMP, capability_mask_t& mask) const {
    recording::Ask("GetCapability(" + node->name + (isGMP ? ", GMP)" : ", SMP)"));
    recording::mask_as_handed = mask;
    const int status = isGMP ? recording::answers.gmp_status : recording::answers.smp_status;
    if (status == 0) mask = isGMP ? recording::answers.gmp_mask : recording::answers.smp_mask;
    return status;
  }
};

class Fabscan {
 public:
  IBFabric discovered_fabric;
  TesselExtendedInfo fabric_extended_info;
  CapabilityModule capability_module;

  int OpenFile(const std::string& description, const OutputControl::Identity& identity,
               std::ofstream& out, bool flag, const char* comment) {
    recording::Ask("OpenFile(" + description + ", " + identity.name_ + ", " +
                   std::to_string(identity.flags_) + ", " + std::to_string(flag) + ", " +
                   (comment == nullptr ? "null" : comment) + ")");
    if (recording::answers.open_status == 0 || recording::answers.opens_all_the_same) {
      out.open(recording::answers.output_folder + '/' + identity.name_);
      out.exceptions(recording::answers.stream_exceptions);
      out.imbue(recording::answers.stream_locale);
    }
    return recording::answers.open_status;
  }
  int CloseFile(std::ofstream& out, const char* comment) {
    recording::Ask(std::string("CloseFile(") + comment + ")");
    out.close();
    return 1;  // nobody looks at it
  }
};

#endif
