#ifndef FABSCAN_SNAPSHOT_JSON_TEXT_H
#define FABSCAN_SNAPSHOT_JSON_TEXT_H

#include <simdjson.h>

#include <string>

namespace fabscan {

/// What a JSON text says, its escapes resolved. Throws simdjson::simdjson_error for an escape that
/// does not exist.
///
/// All texts are taken here, not by simdjson's own getters: those unescape into a buffer of which
/// nobody has looked whether it could be allocated.
std::string Unescaped(simdjson::ondemand::raw_json_string text);

}  // namespace fabscan

#endif
