#include "snapshot/json_text.h"

#include <cstdint>
#include <new>
#include <string_view>

namespace fabscan {

namespace {

/// simdjson chooses its kernel at first use, in functions that may not throw and yet allocate.
/// Chosen here, before the program begins, that cannot end it half-way.
// NOLINTNEXTLINE(cert-err58-cpp)
[[maybe_unused]] const std::string kKernel = simdjson::get_active_implementation()->name();

/// Unescaping needs a parser, and leaves it as it is.
const simdjson::ondemand::parser& Unescaper() {
  static const simdjson::ondemand::parser kParser = [] {
    simdjson::ondemand::parser parser;
    if (parser.allocate(simdjson::SIMDJSON_PADDING) != simdjson::SUCCESS) throw std::bad_alloc();
    return parser;
  }();
  return kParser;
}

std::string ResolveEscapes(simdjson::ondemand::raw_json_string raw, std::size_t raw_size) {
  std::string text(raw_size + simdjson::SIMDJSON_PADDING, '\0');
  auto* to = reinterpret_cast<std::uint8_t*>(text.data());
  std::string_view resolved;
  if (const simdjson::error_code error = Unescaper().unescape(raw, to).get(resolved)) {
    throw simdjson::simdjson_error(error);
  }
  text.resize(resolved.size());
  return text;
}

}  // namespace

std::string Unescaped(simdjson::ondemand::raw_json_string raw) {
  // The parser has seen the closing quote already.
  const char* const begin = raw.raw();
  const char* end = begin;
  bool escapes = false;
  while (*end != '"') {
    const bool escape = *end == '\\';
    escapes |= escape;
    end += escape ? 2 : 1;
  }
  const auto size = static_cast<std::size_t>(end - begin);
  return escapes ? ResolveEscapes(raw, size) : std::string(begin, size);
}

}  // namespace fabscan
