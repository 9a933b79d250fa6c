#include "cli/selection/node_matchers.h"

#include <fmt/format.h>
#include <fnmatch.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "cli/command.h"
#include "model/words.h"

namespace fabscan {

namespace {

/// Usual words in addition to those of the snapshot format.
constexpr Word<IBNodeType> kUsualTypeWords[] = {
    {"switch", IB_SW_NODE},
    {"router", IB_RTR_NODE},
    {"adapter", IB_CA_NODE},
    {"HCA", IB_CA_NODE},
};

char Lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool SameWord(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

template <std::size_t N>
std::optional<IBNodeType> FindType(const Word<IBNodeType> (&words)[N], std::string_view text) {
  for (const Word<IBNodeType>& word : words) {
    if (SameWord(word.text, text)) return word.value;
  }
  return std::nullopt;
}

/// From `0xd2f0`.
std::optional<u_int16_t> ParseDeviceId(std::string_view text) {
  if (text.size() < 3 || !SameWord(text.substr(0, 2), "0x")) return std::nullopt;
  u_int16_t id = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data() + 2, end, id, 16);
  return error == std::errc{} && rest == end ? std::optional(id) : std::nullopt;
}

bool SameModel(const DeviceModelKey& one, const DeviceModelKey& other) {
  return !(one < other) && !(other < one);
}

}  // namespace

NodeMatcher MatchName(const std::string& pattern) {
  return [pattern](const IBNode& node) {
    return ::fnmatch(pattern.c_str(), node.name.c_str(), 0) == 0;
  };
}

NodeMatcher MatchType(const std::string& word) {
  std::optional<IBNodeType> type = FindType(kNodeTypeWords, word);
  if (!type) type = FindType(kUsualTypeWords, word);
  if (!type) {
    throw CommandError(fmt::format("--type: '{}' is not a node type; expected SW (switch), CA "
                                   "(adapter, HCA) or RTR (router)",
                                   word),
                       kWrongUsage);
  }
  return [type = *type](const IBNode& node) { return node.type == type; };
}

NodeMatcher MatchModel(const std::string& word, const std::vector<NamedModel>& models,
                       const Fabscan& fabscan) {
  if (const std::optional<u_int16_t> id = ParseDeviceId(word)) {
    return [&fabscan, id = *id](const IBNode& node) {
      const SMP_NodeInfo* info = fabscan.fabric_extended_info.getSMPNodeInfo(node.createIndex);
      return info != nullptr && info->DeviceID == id;
    };
  }
  const auto listed = std::find_if(models.begin(), models.end(), [&word](const NamedModel& model) {
    return SameWord(model.prefix, word);
  });
  if (listed == models.end()) return [](const IBNode&) { return false; };
  return [&fabscan, key = listed->model.key](const IBNode& node) {
    return SameModel(DeviceModelOf(fabscan, node), key);
  };
}

}  // namespace fabscan
