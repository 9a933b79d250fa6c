#ifndef FABSCAN_BENCH_STATEMENT_LIST_H
#define FABSCAN_BENCH_STATEMENT_LIST_H

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace fabscan {

/// A line of generated text, taken apart as the code that writes it would name its parts: the
/// indent, the text up to "0x", and the text after the value. A line without a hexadecimal value is
/// an indent and a text, its decimal numbers included.
struct StatementText {
  std::string indent;
  std::string text;
  std::string after;
  bool has_value = false;
};

/// What other ways of writing a generated file are given to write, without having to look for
/// records or values. Lines of the same text share it, as they would share a literal.
class StatementList {
 public:
  struct Statement {
    const StatementText* text;
    std::uint64_t value;
  };

  explicit StatementList(std::string_view generated);

  auto begin() const { return statements_.begin(); }
  auto end() const { return statements_.end(); }

 private:
  std::unordered_map<std::string, StatementText> texts_;
  std::vector<Statement> statements_;
};

}  // namespace fabscan

#endif
