#ifndef FABSCAN_CLI_EDIT_REPORT_H
#define FABSCAN_CLI_EDIT_REPORT_H

#include <buildable_source.h>

#include <string>
#include <vector>

#include "terminal.h"

namespace fabscan {

/// For people: which functions were edited so that files compile, how, and what the generated line
/// said, without the names of nodes, so that edits of many nodes read alike; empty without edits.
std::string EditsText(const std::vector<SourceEdit>& edits, const Terminal& terminal);

}  // namespace fabscan

#endif
