#ifndef FABSCAN_CAPABILITY_NAMES_H
#define FABSCAN_CAPABILITY_NAMES_H

#include <cstddef>

#include "unchecked_writer.h"

/// The names of `SimInfoData` as the emitters write them.
struct BitNames {
  const PaddedText* names;
  std::size_t count;
};

extern const BitNames kSMPCapMaskNames;
extern const BitNames kGMPCapMaskNames;
extern const BitNames kPortInfoCapMaskNames;
extern const BitNames kPortInfoCapMask2Names;

#endif
