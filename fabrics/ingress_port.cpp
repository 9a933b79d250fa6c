#include "fabrics/ingress_port.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

namespace fabscan {

void AddIngressPort(CLI::App& app, IngressPort& ingress_port, const char* does) {
  app.add_flag_callback(
      "--include-ingress-port", [&ingress_port] { ingress_port = IngressPort::kIncluded; },
      fmt::format("{} the fields that depend on the host from which the fabric was queried: "
                  "LocalPortNum, and PortGUID of adapters and routers",
                  does));
}

bool DependsOnIngressPort(IBNodeType type, const RecordTable& table, const FieldRow& row,
                          const void* first, const void* second) {
  if (row.name == "LocalPortNum") return true;
  if (type == IB_SW_NODE || row.name != "PortGUID" || table.name != "SMP_NodeInfo") return false;
  const u_int8_t first_port = static_cast<const SMP_NodeInfo*>(first)->LocalPortNum;
  const u_int8_t second_port = static_cast<const SMP_NodeInfo*>(second)->LocalPortNum;
  return first_port != second_port && first_port != 0 && second_port != 0;
}

}  // namespace fabscan
