#include "statement_list.h"

#include <fmt/format.h>

#include <charconv>

namespace fabscan {

namespace {

Statement TakeLineApart(std::string_view line) {
  constexpr std::string_view kPrefix = "0x";
  Statement statement;
  statement.before = line;
  const std::size_t prefix = line.find(kPrefix);
  if (prefix == std::string_view::npos) return statement;

  const std::string_view rest = line.substr(prefix + kPrefix.size());
  const auto read = std::from_chars(rest.data(), rest.data() + rest.size(), statement.value, 16);
  const auto length = static_cast<std::size_t>(read.ptr - rest.data());
  if (fmt::format("{:x}", statement.value) != rest.substr(0, length)) return statement;

  statement.before = line.substr(0, prefix + kPrefix.size());
  statement.after = rest.substr(length);
  statement.has_value = true;
  return statement;
}

}  // namespace

std::vector<Statement> TakeApart(std::string_view generated) {
  std::vector<Statement> statements;
  while (!generated.empty()) {
    const std::size_t end = generated.find('\n');
    statements.push_back(TakeLineApart(generated.substr(0, end)));
    generated.remove_prefix(end == std::string_view::npos ? generated.size() : end + 1);
  }
  return statements;
}

}  // namespace fabscan
