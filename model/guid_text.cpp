#include "model/guid_text.h"

namespace fabscan {

std::string GuidText(u_int64_t guid) {
  std::string text = "0x";
  for (int shift = 60; shift >= 0; shift -= 4) text += "0123456789abcdef"[(guid >> shift) & 0xFU];
  return text;
}

}  // namespace fabscan
