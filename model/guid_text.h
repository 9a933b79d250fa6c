#ifndef FABSCAN_MODEL_GUID_TEXT_H
#define FABSCAN_MODEL_GUID_TEXT_H

#include <sys/types.h>

#include <string>

namespace fabscan {

/// A GUID as the InfiniBand tools print it: 0x and all sixteen digits.
std::string GuidText(u_int64_t guid);

}  // namespace fabscan

#endif
