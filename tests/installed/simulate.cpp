// Runs a function of the device that the command wrote, and prints the resulting values of the
// node.

#include <iostream>

#include "mydev.h"

int main() {
  fabscan::simulator::Node node(2);
  MyDev::HCA(node).setAll();
  SMP_NodeInfo info;
  SMP_NodeInfo_unpack(&info, node.nodeInfo.bytes);
  std::cout << std::hex << "VendorID 0x" << info.VendorID << ", DeviceID 0x" << info.DeviceID
            << '\n';
}
