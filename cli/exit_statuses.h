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
    {kDone, "Done."},
    {kFailed, "Failed, and nothing usable was written. Of diff: the snapshots differ."},
    {kWrongUsage, "Wrong usage. Of diff: trouble of any kind."},
    {kIncomplete, "Written, but incomplete or not compilable. Of dump only with --strict."},
};

}  // namespace fabscan

#endif
