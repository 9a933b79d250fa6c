#ifndef FABSCAN_FABRICS_INGRESS_PORT_H
#define FABSCAN_FABRICS_INGRESS_PORT_H

#include <infiniband/tessel/Fabric.h>

#include "records/record_table.h"

namespace CLI {
class App;
}

namespace fabscan {

/// Whether fields count that depend on the port by which a query reaches a node.
enum class IngressPort { kIgnored, kIncluded };

/// The option `--include-ingress-port`. `does` begins its description: "Also compare".
void AddIngressPort(CLI::App& app, IngressPort& ingress_port, const char* does);

/// Whether two records of a node of this type can differ in this field because one fabric was
/// queried from two hosts: `LocalPortNum` is the ingress port, and `PortGUID` of NodeInfo its GUID,
/// except on switches, where all ports have one.
bool DependsOnIngressPort(IBNodeType type, const RecordTable& table, const FieldRow& row,
                          const void* first, const void* second);

}  // namespace fabscan

#endif
