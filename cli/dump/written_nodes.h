#ifndef FABSCAN_CLI_WRITTEN_NODES_H
#define FABSCAN_CLI_WRITTEN_NODES_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace fabscan {

/// How many nodes a file holds that the generator is still writing. Generating is one call, so the
/// end of the file is asked: it names the node that was written last.
class WrittenNodes {
 public:
  /// `nodes` in the order in which they are written.
  WrittenNodes(const std::vector<const IBNode*>& nodes, std::string path);

  std::size_t Count();

 private:
  std::unordered_map<u_int64_t, std::size_t> place_of_guid_;
  std::string path_;
  std::string end_;
  std::size_t count_ = 0;
};

}  // namespace fabscan

#endif
