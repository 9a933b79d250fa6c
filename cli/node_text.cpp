#include "node_text.h"

#include <fmt/format.h>
#include <words.h>

namespace fabscan {

std::string KindText(IBNodeType type, IBSpecialPortType special) {
  std::string text(WordFor(kNodeTypeWords, type));
  if (special != IB_NOT_SPECIAL_PORT) {
    text += fmt::format(" ({})", WordFor(kSpecialNodeWords, special));
  }
  return text;
}

std::string IdText(u_int64_t id, int digits) {
  return id == 0 ? "-" : fmt::format("0x{:0{}x}", id, digits);
}

std::string OrDash(const std::string& text) { return text.empty() ? "-" : text; }

}  // namespace fabscan
