#include "report.h"

#include <fmt/format.h>

#include <cstdio>
#include <iterator>
#include <system_error>

namespace fabscan {

namespace {

constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7F;

void PrintLine(std::string_view kind, std::string_view message) {
  std::string line = fmt::format("fabscan: {}: ", kind);
  for (const char c : message) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < kFirstPrintable || byte == kDelete) {
      fmt::format_to(std::back_inserter(line), "\\x{:02x}", byte);
    } else {
      line += c;
    }
  }
  line += '\n';
  // Results come before what is said of them when both go to the same place.
  std::fflush(stdout);
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void PrintError(std::string_view message) { PrintLine("error", message); }
void PrintWarning(std::string_view message) { PrintLine("warning", message); }

std::string CauseText(int error_number) { return std::generic_category().message(error_number); }

}  // namespace fabscan
