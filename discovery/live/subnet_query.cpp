#include "discovery/live/subnet_query.h"

#include <fmt/format.h>
#include <infiniband/mad.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "discovery/live/captured_standard_error.h"

namespace fabscan {

namespace {

/// A copy of the text with static lifetime. There are only as many as status codes and system
/// errors.
std::string_view Lasting(std::string text) {
  static std::set<std::string> texts;
  return *texts.insert(std::move(text)).first;
}

/// Why a query without an answer failed: a refusal has a status, anything else an error number.
std::string_view FailureText(int status, int error_number) {
  if (status != 0) return Lasting(fmt::format("status {:#06x}", status));
  if (error_number == ETIMEDOUT || error_number == 0) return kTimedOut;
  return Lasting(std::generic_category().message(error_number));
}

}  // namespace

SubnetQuery::SubnetQuery(const LocalPort& port, const LiveOptions& options) {
  std::string adapter = port.channel_adapter;
  int classes[] = {IB_SMI_CLASS, IB_SMI_DIRECT_CLASS};
  const CapturedStandardError captured;  // the library prints its error messages there
  port_ = mad_rpc_open_port(adapter.data(), port.number, classes, 2);
  if (port_ == nullptr) {
    throw DiscoveryError(fmt::format("{} port {}: cannot register for subnet management: {}",
                                     port.channel_adapter, port.number,
                                     std::generic_category().message(errno)));
  }
  mad_rpc_set_timeout(port_, static_cast<int>(options.timeout_ms));
  // The library's "retries" include the first try; 0 would be its default.
  mad_rpc_set_retries(port_, static_cast<int>(options.retries) + 1);
}

SubnetQuery::~SubnetQuery() { mad_rpc_close_port(port_); }

Answer SubnetQuery::Get(const portid& path, SubnetAttribute attribute, unsigned modifier) {
  Payload payload = {};
  portid target = path;
  int status = 0;
  errno = 0;
  const u_int8_t* answer = smp_query_status_via(
      payload.data(), &target, static_cast<unsigned>(attribute), modifier, 0, &status, port_);
  if (answer == nullptr || status != 0) return Answer::Failed(FailureText(status, errno));
  return Answer::Read(payload);
}

Answer SubnetQuery::GetBehind(const portid& path, unsigned exit, SubnetAttribute attribute) {
  portid target = path;
  if (target.drpath.cnt + 1 >= IB_SUBNET_PATH_HOPS_MAX) {
    return Answer::Failed("too many hops away for a query");
  }
  ++target.drpath.cnt;
  target.drpath.p[target.drpath.cnt] = static_cast<u_int8_t>(exit);
  return Get(target, attribute, 0);
}

}  // namespace fabscan
