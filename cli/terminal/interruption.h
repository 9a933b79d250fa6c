#ifndef FABSCAN_CLI_INTERRUPTION_H
#define FABSCAN_CLI_INTERRUPTION_H

#include <csignal>

namespace fabscan {

/// While this lives, the first Ctrl-C ends no program but asks for an end. A second one does what
/// it did before. One at a time.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  bool requested() const;
};

}  // namespace fabscan

#endif
