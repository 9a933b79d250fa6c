#ifndef FABSCAN_CLI_EXIT_STATUSES_H
#define FABSCAN_CLI_EXIT_STATUSES_H

#include "cli/command.h"

namespace fabscan {

struct StatusMeaning {
  ExitStatus status;
  const char* text;
};

/// For help and the manual page.
inline constexpr StatusMeaning kExitStatuses[] = {
    {kDone, "Success."},
    {kFailed, "Failed; nothing usable was written. For diff: the snapshots differ."},
    {kWrongUsage, "Usage error. For diff: any error."},
    {kIncomplete, "Written, but incomplete or not compilable. For dump: only with --strict."},
};

}  // namespace fabscan

#endif
