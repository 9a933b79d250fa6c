#ifndef FABSCAN_BENCH_STATEMENT_LIST_H
#define FABSCAN_BENCH_STATEMENT_LIST_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// One line of a generated file, taken apart: the text up to a hexadecimal value, the value, and
/// the text after it. A line without a value is `before` alone.
struct Statement {
  std::string_view before;
  std::uint64_t value = 0;
  std::string_view after;
  bool has_value = false;
};

/// The lines of a generated file, which outlives the list. What other ways of writing the same
/// statements are given to write, without having to find the values first.
std::vector<Statement> TakeApart(std::string_view generated);

}  // namespace fabscan

#endif
