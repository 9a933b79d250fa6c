#ifndef FABSCAN_CLI_JSON_RESULT_H
#define FABSCAN_CLI_JSON_RESULT_H

#include <iostream>
#include <string_view>

#include "cli/selection/guid_options.h"
#include "snapshot/json_writer.h"

namespace fabscan {

/// The version of the JSON format, which docs/json.md describes. It increases when a key disappears
/// or changes its meaning, not when one is added.
inline constexpr u_int64_t kReportVersion = 1;

/// Writes a command's result as one JSON object to standard output. It begins with the version; the
/// destructor ends it.
class JsonResult : public JsonWriter {
 public:
  JsonResult() : JsonWriter(std::cout) {
    BeginObject();
    Count("fabscan_report", kReportVersion);
  }
  ~JsonResult() {
    EndObject();
    EndLine();
    Flush();
  }
  JsonResult(const JsonResult&) = delete;
  JsonResult& operator=(const JsonResult&) = delete;

  void Text(std::string_view key, std::string_view value) {
    Key(key);
    String(value);
  }
  void Count(std::string_view key, u_int64_t value) {
    Key(key);
    Number(value);
  }
  void Truth(std::string_view key, bool value) {
    Key(key);
    Bool(value);
  }
  void Guid(std::string_view key, u_int64_t guid) { Text(key, GuidText(guid)); }
  void BeginObjects(std::string_view key) {
    Key(key);
    BeginArray();
  }
};

}  // namespace fabscan

#endif
