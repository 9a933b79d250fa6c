#include <infiniband/fabscan/fabscan_tessel_extended_info.h>

#include <stdexcept>
#include <tuple>

WrenReductionCounters& TesselExtendedInfo::putCounters(const IBPort& port, u_int32_t index) {
  if (index >= kCounterSets) throw std::out_of_range("counter-set index above 7");
  return counters_.slot(std::size_t{port.createIndex} * kCounterSets + index);
}

void TesselExtendedInfo::putMonitors(const IBPort& port, u_int8_t selector) {
  if (selector >= kMonitorSelectors) throw std::out_of_range("monitor selector above 1");
  monitors_.slot(std::size_t{port.createIndex} * kMonitorSelectors + selector).selector = selector;
}

void TesselExtendedInfo::clear() {
  const auto clear_all = [](auto&... tables) { (tables.clear(), ...); };
  std::apply(clear_all, node_records_);
  std::apply(clear_all, port_records_);
  clear_all(counters_, monitors_);
  node_absent_.Clear();
  port_absent_.Clear();
}
