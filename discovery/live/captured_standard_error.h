#ifndef FABSCAN_DISCOVERY_LIVE_CAPTURED_STANDARD_ERROR_H
#define FABSCAN_DISCOVERY_LIVE_CAPTURED_STANDARD_ERROR_H

#include <string>

namespace fabscan {

/// The InfiniBand libraries write their warnings to standard error themselves. While this lives,
/// they go to memory instead; what matters of them is told with the cause at hand.
class CapturedStandardError {
 public:
  CapturedStandardError();
  ~CapturedStandardError();
  CapturedStandardError(const CapturedStandardError&) = delete;
  CapturedStandardError& operator=(const CapturedStandardError&) = delete;

  /// The last line that was written, without control characters; empty when there was none.
  std::string LastLine() const;

 private:
  int captured_ = -1;
  int original_ = -1;
};

}  // namespace fabscan

#endif
