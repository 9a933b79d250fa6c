#ifndef FABSCAN_CLI_EDIT_REPORT_H
#define FABSCAN_CLI_EDIT_REPORT_H

#include <string>
#include <vector>

#include "cli/terminal/terminal.h"
#include "simulator/buildable/buildable_source.h"

namespace fabscan {

/// For people: the edited functions, the edits, and the original lines without node names, so that
/// edits of many nodes are listed together. Empty without edits.
std::string EditsText(const std::vector<SourceEdit>& edits, const Terminal& terminal);

}  // namespace fabscan

#endif
