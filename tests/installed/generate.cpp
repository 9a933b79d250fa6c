// Creates a fabric with one switch, and writes its simulated device.

#include <iostream>

#include "fabscan/fabscan_sim_info_dump.h"

int main() {
  Fabscan fabscan;
  IBNode& node = fabscan.discovered_fabric.makeNode("a switch", 0x5a1e0c, IB_SW_NODE, 4);
  fabscan.fabric_extended_info.put<SMP_NodeInfo>(node).VendorID = 0x1234;
  const int status = SimInfoDumpCPP(fabscan).Generate("Made", {});
  std::cout << fabscan.outputPath() << '\n';
  return status;
}
