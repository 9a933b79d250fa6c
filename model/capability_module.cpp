#include <infiniband/fabscan/fabscan_capability_module.h>

int CapabilityModule::GetCapability(IBNode* node, bool isGMP, capability_mask_t& mask) const {
  const capability_mask_t* collected = find(*node, isGMP);
  if (collected == nullptr) return kNotCollected;
  mask = *collected;
  return 0;
}
