#include "cli/output/link_text.h"

#include "cli/output/node_text.h"

namespace fabscan {

std::string EndText(const LinkEnd& end) { return PortText(end.name, end.port); }

void WriteEnd(JsonResult& json, std::string_view key, const LinkEnd& end) {
  json.Key(key);
  json.BeginObject();
  json.Text("name", end.name);
  json.Guid("guid", end.guid);
  json.Count("port", end.port);
  json.EndObject();
}

}  // namespace fabscan
