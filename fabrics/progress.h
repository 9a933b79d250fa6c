#ifndef FABSCAN_FABRICS_PROGRESS_H
#define FABSCAN_FABRICS_PROGRESS_H

#include <cstddef>
#include <functional>

namespace fabscan {

/// Called while an operation runs, with the number of completed nodes and the total; `total` 0:
/// unknown. An empty function is not called.
using NodeProgress = std::function<void(std::size_t done, std::size_t total)>;

}  // namespace fabscan

#endif
