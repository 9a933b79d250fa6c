#ifndef SIMULATOR_RUNNER_EXPECTATIONS_H
#define SIMULATOR_RUNNER_EXPECTATIONS_H

#include <sys/types.h>

#include <istream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace fabscan {
namespace simulator {

/// Storage -> field -> the value that it must have.
using Assignments = std::map<std::string, std::map<std::string, u_int64_t>>;

/// What the functions of one unit must do to a node; every field that is not named must be left as
/// it was.
struct UnitExpectations {
  std::string unit;
  unsigned last_port = 0;
  /// Port and multicast LID of the push counters that the node keeps.
  std::vector<std::pair<unsigned, unsigned>> push_counters;
  std::map<std::string, Assignments> functions;
};

/// Reads expectations, a line each:
///
///     unit NAME
///     ports LAST_PORT
///     push PORT MLID
///     function NAME
///     STORAGE FIELD VALUE
///
/// Throws std::runtime_error, with the line, for anything else.
std::vector<UnitExpectations> ReadExpectations(std::istream& in);

}  // namespace simulator
}  // namespace fabscan

#endif
