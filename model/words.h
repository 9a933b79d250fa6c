#ifndef FABSCAN_MODEL_WORDS_H
#define FABSCAN_MODEL_WORDS_H

#include <infiniband/tessel/Fabric.h>

#include <string_view>

namespace fabscan {

/// A word of the snapshot and its meaning.
template <class Value>
struct Word {
  std::string_view text;
  Value value;
};

inline constexpr Word<IBNodeType> kNodeTypeWords[] = {
    {"SW", IB_SW_NODE},
    {"RTR", IB_RTR_NODE},
    {"CA", IB_CA_NODE},
    {"UNKNOWN", IB_UNKNOWN_NODE_TYPE},
};

inline constexpr Word<IBPortState> kPortStateWords[] = {
    {"ACTIVE", IB_PORT_STATE_ACTIVE},   {"ARM", IB_PORT_STATE_ARM},
    {"INIT", IB_PORT_STATE_INIT},       {"DOWN", IB_PORT_STATE_DOWN},
    {"UNKNOWN", IB_UNKNOWN_PORT_STATE},
};

inline constexpr Word<IBLinkWidth> kLinkWidthWords[] = {
    {"1x", IB_LINK_WIDTH_1X}, {"2x", IB_LINK_WIDTH_2X},   {"4x", IB_LINK_WIDTH_4X},
    {"8x", IB_LINK_WIDTH_8X}, {"12x", IB_LINK_WIDTH_12X}, {"", IB_UNKNOWN_LINK_WIDTH},
};

inline constexpr Word<IBLinkSpeed> kLinkSpeedWords[] = {
    {"SDR", IB_LINK_SPEED_SDR}, {"DDR", IB_LINK_SPEED_DDR}, {"QDR", IB_LINK_SPEED_QDR},
    {"FDR", IB_LINK_SPEED_FDR}, {"EDR", IB_LINK_SPEED_EDR}, {"HDR", IB_LINK_SPEED_HDR},
    {"NDR", IB_LINK_SPEED_NDR}, {"XDR", IB_LINK_SPEED_XDR}, {"", IB_UNKNOWN_LINK_SPEED},
};

inline constexpr Word<IBSpecialPortType> kSpecialNodeWords[] = {
    {"AN", IB_SPECIAL_PORT_AN},
    {"ROUTER", IB_SPECIAL_PORT_ROUTER},
    {"ETH_GATEWAY", IB_SPECIAL_PORT_ETH_GATEWAY},
};

/// The word for `value`; the last one of the list if there is none.
template <class Value, std::size_t N>
constexpr std::string_view WordFor(const Word<Value> (&words)[N], Value value) {
  for (const Word<Value>& word : words) {
    if (word.value == value) return word.text;
  }
  return words[N - 1].text;
}

}  // namespace fabscan

#endif
