#include "cli/dump/class_prefix.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "cli/command.h"

namespace fabscan {

namespace {

// The keywords of C++20 and the alternative operator names, ascending.
// clang-format off
constexpr std::string_view kKeywords[] = {
    "alignas", "alignof", "and", "and_eq", "asm", "auto", "bitand", "bitor", "bool", "break",
    "case", "catch", "char", "char16_t", "char32_t", "char8_t", "class", "co_await", "co_return",
    "co_yield", "compl", "concept", "const", "const_cast", "consteval", "constexpr", "constinit",
    "continue", "decltype", "default", "delete", "do", "double", "dynamic_cast", "else", "enum",
    "explicit", "export", "extern", "false", "float", "for", "friend", "goto", "if", "inline",
    "int", "long", "mutable", "namespace", "new", "noexcept", "not", "not_eq", "nullptr",
    "operator", "or", "or_eq", "private", "protected", "public", "register", "reinterpret_cast",
    "requires", "return", "short", "signed", "sizeof", "static", "static_assert", "static_cast",
    "struct", "switch", "template", "this", "thread_local", "throw", "true", "try", "typedef",
    "typeid", "typename", "union", "unsigned", "using", "virtual", "void", "volatile", "wchar_t",
    "while", "xor", "xor_eq",
};
// clang-format on

// Unlike those of <cctype>, these do not depend on the locale.
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }
constexpr bool IsWordCharacter(char c) {
  return IsDigit(c) || IsUpper(c) || (c >= 'a' && c <= 'z') || c == '_';
}

}  // namespace

std::string_view FaultOfClassPrefix(std::string_view prefix) {
  if (prefix.empty()) return "is empty";
  if (IsDigit(prefix.front())) return "begins with a digit";
  if (!std::all_of(prefix.begin(), prefix.end(), IsWordCharacter)) {
    return "contains characters other than ASCII letters, digits and underscores";
  }
  if (prefix.front() == '_') return "is reserved, because it begins with an underscore";
  if (prefix.find("__") != std::string_view::npos) {
    return "is reserved, because it contains two consecutive underscores";
  }
  if (std::binary_search(std::begin(kKeywords), std::end(kKeywords), prefix)) {
    return "is a C++ keyword";
  }
  return {};
}

void CheckClassPrefix(std::string_view prefix) {
  const std::string_view fault = FaultOfClassPrefix(prefix);
  if (fault.empty()) return;
  throw CommandError(
      fmt::format("--prefix: '{}' {}; it names a C++ class, such as MyDev", prefix, fault),
      kWrongUsage);
}

std::string LowerCasePrefix(std::string_view prefix) {
  std::string lower(prefix);
  for (char& c : lower) {
    if (IsUpper(c)) c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string GeneratedFileName(std::string_view prefix) {
  return LowerCasePrefix(prefix) + "_generated.cpp";
}

}  // namespace fabscan
