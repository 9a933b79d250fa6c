#ifndef FABSCAN_FABRICS_PROGRESS_H
#define FABSCAN_FABRICS_PROGRESS_H

#include <cstddef>
#include <functional>

namespace fabscan {

/// Called while an operation runs, with the number of nodes that are done and of all; `total` 0:
/// not known. An empty function is not called.
using NodeProgress = std::function<void(std::size_t done, std::size_t total)>;

}  // namespace fabscan

#endif
