#ifndef FABSCAN_DISCOVERY_LIVE_CAPTURED_STANDARD_ERROR_H
#define FABSCAN_DISCOVERY_LIVE_CAPTURED_STANDARD_ERROR_H

#include <string>

namespace fabscan {

/// The InfiniBand libraries print warnings to standard error. While this object exists, the output
/// goes to memory instead, so that an error message can quote it.
class CapturedStandardError {
 public:
  CapturedStandardError();
  ~CapturedStandardError();
  CapturedStandardError(const CapturedStandardError&) = delete;
  CapturedStandardError& operator=(const CapturedStandardError&) = delete;

  /// The last line, without control characters; empty if there was none.
  std::string LastLine() const;

 private:
  int captured_ = -1;
  int original_ = -1;
};

}  // namespace fabscan

#endif
