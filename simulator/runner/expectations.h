#ifndef SIMULATOR_RUNNER_EXPECTATIONS_H
#define SIMULATOR_RUNNER_EXPECTATIONS_H

#include <sys/types.h>

#include <istream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace fabscan::simulator {

/// Storage -> field -> expected value.
using Assignments = std::map<std::string, std::map<std::string, u_int64_t>>;

/// The expected effects of the functions of one unit on a node; all other fields must be unchanged.
struct UnitExpectations {
  std::string unit;
  unsigned last_port = 0;
  /// Port and multicast LID of the push counters that the node has.
  std::vector<std::pair<unsigned, unsigned>> push_counters;
  std::map<std::string, Assignments> functions;
};

/// Reads expectations, one per line:
///
///     unit NAME
///     ports LAST_PORT
///     push PORT MLID
///     function NAME
///     STORAGE FIELD VALUE
///
/// Throws std::runtime_error, with the line, for anything else.
std::vector<UnitExpectations> ReadExpectations(std::istream& in);

}  // namespace fabscan::simulator

#endif
