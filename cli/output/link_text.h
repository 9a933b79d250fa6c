#ifndef FABSCAN_CLI_OUTPUT_LINK_TEXT_H
#define FABSCAN_CLI_OUTPUT_LINK_TEXT_H

#include <string>
#include <string_view>

#include "cli/output/json_result.h"
#include "fabrics/link_differences.h"

namespace fabscan {

/// `leaf-01/U1[3]`
std::string EndText(const LinkEnd& end);
/// The same as an object: name and GUID of the node, and the port.
void WriteEnd(JsonResult& json, std::string_view key, const LinkEnd& end);

}  // namespace fabscan

#endif
