#include "bench/statement_list.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace fabscan {

namespace {

/// The digits of the line's first hexadecimal value; empty without one, or if formatting the value
/// would give different digits.
std::string_view DigitsIn(std::string_view line, std::uint64_t& value) {
  constexpr std::string_view kPrefix = "0x";
  const std::size_t prefix = line.find(kPrefix);
  if (prefix == std::string_view::npos) return {};
  const std::string_view rest = line.substr(prefix + kPrefix.size());
  const auto read = std::from_chars(rest.data(), rest.data() + rest.size(), value, 16);
  const auto digits = rest.substr(0, static_cast<std::size_t>(read.ptr - rest.data()));
  return fmt::format("{:x}", value) == digits ? digits : std::string_view();
}

StatementText TakeApart(std::string_view line, std::string_view digits) {
  StatementText text;
  const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
  text.indent = line.substr(0, indent);
  text.has_value = !digits.empty();
  if (!text.has_value) {
    text.text = line.substr(indent);
    return text;
  }
  const auto begin = static_cast<std::size_t>(digits.data() - line.data());
  text.text = line.substr(indent, begin - 2 - indent);
  text.after = line.substr(begin + digits.size());
  return text;
}

}  // namespace

StatementList::StatementList(std::string_view generated) {
  while (!generated.empty()) {
    const std::size_t end = std::min(generated.find('\n'), generated.size());
    const std::string_view line = generated.substr(0, end);
    std::uint64_t value = 0;
    const std::string_view digits = DigitsIn(line, value);
    std::string key(line);
    if (!digits.empty()) {
      key.replace(static_cast<std::size_t>(digits.data() - line.data()), digits.size(), 1, '\0');
    }
    const auto [found, is_new] = texts_.try_emplace(std::move(key));
    if (is_new) found->second = TakeApart(line, digits);
    statements_.push_back({&found->second, value});
    generated.remove_prefix(std::min(end + 1, generated.size()));
  }
}

}  // namespace fabscan
