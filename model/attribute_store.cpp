#include <infiniband/fabscan/fabscan_tessel_extended_info.h>

#include <stdexcept>

WrenReductionCounters& TesselExtendedInfo::putCounters(const IBPort& port, u_int32_t index) {
  if (index >= kCounterSets) throw std::out_of_range("counter-set index above 7");
  return counters_.slot(std::size_t{port.createIndex} * kCounterSets + index);
}

void TesselExtendedInfo::putMonitors(const IBPort& port, u_int8_t selector) {
  if (selector >= kMonitorSelectors) throw std::out_of_range("monitor selector above 1");
  monitors_.slot(std::size_t{port.createIndex} * kMonitorSelectors + selector).selector = selector;
}

namespace {

const TesselExtendedInfo::AbsentReasons& ReasonsOf(
    const std::map<u_int32_t, TesselExtendedInfo::AbsentReasons>& all, u_int32_t index) {
  static const TesselExtendedInfo::AbsentReasons none;
  const auto found = all.find(index);
  return found == all.end() ? none : found->second;
}

}  // namespace

void TesselExtendedInfo::setAbsent(const IBNode& node, std::string_view record,
                                   std::string_view reason) {
  node_absent_[node.createIndex].insert_or_assign(std::string(record), std::string(reason));
}

void TesselExtendedInfo::setAbsent(const IBPort& port, std::string_view record,
                                   std::string_view reason) {
  port_absent_[port.createIndex].insert_or_assign(std::string(record), std::string(reason));
}

const TesselExtendedInfo::AbsentReasons& TesselExtendedInfo::absentReasons(
    const IBNode& node) const {
  return ReasonsOf(node_absent_, node.createIndex);
}

const TesselExtendedInfo::AbsentReasons& TesselExtendedInfo::absentReasons(
    const IBPort& port) const {
  return ReasonsOf(port_absent_, port.createIndex);
}
