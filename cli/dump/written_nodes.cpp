#include "cli/dump/written_nodes.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <utility>

#include "cli/dump/generated_file.h"

namespace fabscan {

namespace {

/// More than the text of a large switch.
constexpr std::streamoff kEnd = 1 << 20;

}  // namespace

WrittenNodes::WrittenNodes(const std::vector<const IBNode*>& nodes, std::string path)
    : path_(std::move(path)), end_(kEnd, '\0') {
  for (const IBNode* node : nodes) place_of_guid_.emplace(node->guid, place_of_guid_.size());
}

std::size_t WrittenNodes::Count() {
  std::ifstream text(path_, std::ios::binary | std::ios::ate);
  const std::streamoff size = text.tellg();
  text.seekg(std::max<std::streamoff>(0, size - kEnd));
  text.read(end_.data(), kEnd);
  const std::optional<u_int64_t> guid =
      GuidOfLastNode(std::string_view(end_).substr(0, static_cast<std::size_t>(text.gcount())));
  const auto found = guid ? place_of_guid_.find(*guid) : place_of_guid_.end();
  // Where it is not told, the count stays.
  if (found != place_of_guid_.end()) count_ = found->second;
  return count_;
}

}  // namespace fabscan
