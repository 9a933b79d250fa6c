#ifndef FABSCAN_CLI_EDIT_REPORT_H
#define FABSCAN_CLI_EDIT_REPORT_H

#include <string>
#include <vector>

#include "cli/terminal/terminal.h"
#include "simulator/buildable/buildable_source.h"

namespace fabscan {

/// For people: which functions were edited so that files compile, how, and what the generated line
/// said, without the names of nodes, so that edits of many nodes read alike; empty without edits.
std::string EditsText(const std::vector<SourceEdit>& edits, const Terminal& terminal);

}  // namespace fabscan

#endif
