#ifndef INFINIBAND_FABSCAN_CAPABILITY_MODULE_H
#define INFINIBAND_FABSCAN_CAPABILITY_MODULE_H

#include <infiniband/fabscan/fabscan_types.h>
#include <infiniband/fabscan/slot_table.h>
#include <infiniband/tessel/Fabric.h>

/// Reports which capabilities a node supports, according to the masks of the devices.
///
/// A node whose mask was not collected supports nothing.
class CapabilityModule {
 public:
  static constexpr unsigned kBits = 128;
  /// The result of `GetCapability` if the node's mask was not collected.
  static constexpr int kNotCollected = 1;

  bool IsSupportedSMPCapability(const IBNode* node, u_int8_t bit) const {
    return isSet(smp_.find(node->createIndex), bit);
  }
  bool IsSupportedGMPCapability(const IBNode* node, u_int8_t bit) const {
    return isSet(gmp_.find(node->createIndex), bit);
  }
  /// Fills `mask` with the node's SMP or GMP mask. Returns 0, or `kNotCollected`; then `mask`
  /// is unchanged.
  int GetCapability(IBNode* node, bool isGMP, capability_mask_t& mask) const;

  /// The collected mask, or null.
  const capability_mask_t* find(const IBNode& node, bool isGMP) const {
    return (isGMP ? gmp_ : smp_).find(node.createIndex);
  }
  void put(const IBNode& node, bool isGMP, const capability_mask_t& mask) {
    (isGMP ? gmp_ : smp_).slot(node.createIndex) = mask;
  }
  /// Clears all masks, and keeps the memory.
  void clear() {
    smp_.clear();
    gmp_.clear();
  }

 private:
  static bool isSet(const capability_mask_t* mask, unsigned bit) {
    return mask != nullptr && bit < kBits && ((mask->mask[bit / 32] >> (bit % 32)) & 1U) != 0;
  }

  fabscan::SlotTable<capability_mask_t> smp_;
  fabscan::SlotTable<capability_mask_t> gmp_;
};

#endif
