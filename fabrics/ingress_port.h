#ifndef FABSCAN_FABRICS_INGRESS_PORT_H
#define FABSCAN_FABRICS_INGRESS_PORT_H

#include <infiniband/tessel/Fabric.h>

#include "records/record_table.h"

namespace CLI {
class App;
}

namespace fabscan {

/// Whether fields that depend on the ingress port of a query are compared.
enum class IngressPort { kIgnored, kIncluded };

/// The option `--include-ingress-port`. `does` begins its description: "Also compare".
void AddIngressPort(CLI::App& app, IngressPort& ingress_port, const char* does);

/// Whether two records of a node of this type can differ in this field because one fabric was
/// queried from two hosts: `LocalPortNum` is the ingress port, and `PortGUID` of NodeInfo its GUID,
/// except for switches, which have one port GUID.
bool DependsOnIngressPort(IBNodeType type, const RecordTable& table, const FieldRow& row,
                          const void* first, const void* second);

}  // namespace fabscan

#endif
