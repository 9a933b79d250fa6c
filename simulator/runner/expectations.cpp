#include "expectations.h"

#include <sstream>
#include <stdexcept>

namespace fabscan::simulator {

std::vector<UnitExpectations> ReadExpectations(std::istream& in) {
  std::vector<UnitExpectations> units;
  Assignments* assignments = nullptr;
  std::string line;
  while (std::getline(in, line)) {
    std::istringstream words(line);
    std::string first;
    words >> first;
    const auto refuse = [&] { throw std::runtime_error("not an expectation: " + line); };
    if (first != "unit" && units.empty()) refuse();
    if (first == "unit") {
      units.emplace_back();
      assignments = nullptr;
      words >> units.back().unit;
    } else if (first == "ports") {
      words >> units.back().last_port;
    } else if (first == "push") {
      std::pair<unsigned, unsigned> key;
      words >> key.first >> key.second;
      units.back().push_counters.push_back(key);
    } else if (first == "function") {
      std::string name;
      words >> name;
      assignments = &units.back().functions[name];
    } else if (assignments != nullptr) {
      std::string field;
      u_int64_t value = 0;
      words >> field >> std::hex >> value;
      (*assignments)[first][field] = value;
    } else {
      refuse();
    }
    if (words.fail()) refuse();
  }
  return units;
}

}  // namespace fabscan::simulator
