#include "fabrics/natural_order.h"

#include <algorithm>

namespace fabscan {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// A number at the begin of a text, of any length.
struct Digits {
  std::size_t zeros = 0;  // before the value
  std::string_view value;
};

/// Removes the number from the text.
Digits ReadDigits(std::string_view& text) {
  Digits digits;
  while (digits.zeros < text.size() && text[digits.zeros] == '0') ++digits.zeros;
  std::size_t end = digits.zeros;
  while (end < text.size() && IsDigit(text[end])) ++end;
  digits.value = text.substr(digits.zeros, end - digits.zeros);
  text.remove_prefix(end);
  return digits;
}

/// Negative, zero or positive, as from a comparison of the values.
int CompareValues(std::string_view one, std::string_view other) {
  if (one.size() != other.size()) return one.size() < other.size() ? -1 : 1;
  return one.compare(other);
}

}  // namespace

bool NaturallyBefore(std::string_view one, std::string_view other) {
  bool fewer_zeros = false;
  bool same_zeros = true;
  while (!one.empty() && !other.empty()) {
    if (!IsDigit(one.front()) || !IsDigit(other.front())) {
      const auto byte = static_cast<unsigned char>(one.front());
      const auto other_byte = static_cast<unsigned char>(other.front());
      if (byte != other_byte) return byte < other_byte;
      one.remove_prefix(1);
      other.remove_prefix(1);
      continue;
    }
    const Digits digits = ReadDigits(one);
    const Digits other_digits = ReadDigits(other);
    const int compared = CompareValues(digits.value, other_digits.value);
    if (compared != 0) return compared < 0;
    if (same_zeros) fewer_zeros = digits.zeros < other_digits.zeros;
    same_zeros = same_zeros && digits.zeros == other_digits.zeros;
  }
  if (!one.empty() || !other.empty()) return one.empty();
  return fewer_zeros;
}

bool NaturallyBefore(const IBNode& one, const IBNode& other) {
  if (one.name != other.name) return NaturallyBefore(one.name, other.name);
  return one.guid < other.guid;
}

void SortNaturally(std::vector<const IBNode*>& nodes) {
  std::sort(nodes.begin(), nodes.end(),
            [](const IBNode* one, const IBNode* other) { return NaturallyBefore(*one, *other); });
}

std::vector<const IBNode*> NodesInNaturalOrder(const IBFabric& fabric) {
  std::vector<const IBNode*> nodes;
  nodes.reserve(fabric.nodeCount());
  for (const IBNode& node : fabric.nodes()) nodes.push_back(&node);
  SortNaturally(nodes);
  return nodes;
}

}  // namespace fabscan
