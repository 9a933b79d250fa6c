#include "guid_options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <iostream>

#include "command.h"
#include "report.h"
#include "standard_streams.h"

namespace fabscan {

namespace {

constexpr std::size_t kMaxDigits = 16;
constexpr char kAdvise[] = "a GUID is 1 to 16 hexadecimal digits, with or without 0x";
/// Warnings of one kind that are written out before the rest is only counted.
constexpr std::size_t kMaxWarnings = 20;

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

void ReadGuidFile(const std::string& path, std::set<u_int64_t>& guids) {
  if (IsStandardStream(path)) TakeStandardInput();
  errno = 0;
  std::ifstream named;
  if (!IsStandardStream(path)) named.open(path);
  std::istream& file = IsStandardStream(path) ? std::cin : named;
  std::string line;
  unsigned long number = 0;
  while (std::getline(file, line)) {
    ++number;
    const std::string_view text = Trimmed(std::string_view(line).substr(0, line.find('#')));
    if (text.empty()) continue;
    const std::optional<u_int64_t> guid = ParseGuid(text);
    if (!guid) {
      throw CommandError(
          fmt::format("{}:{}: '{}' is no GUID; {}", InputName(path), number, text, kAdvise),
          kWrongUsage);
    }
    guids.insert(*guid);
  }
  if (!file.eof()) {
    throw CommandError(fmt::format("{}: cannot read the GUIDs: {}; check --guid-file",
                                   InputName(path), CauseText(errno != 0 ? errno : EIO)));
  }
  if (guids.empty()) {
    throw CommandError(fmt::format("{}: names no GUID; write one a line", InputName(path)),
                       kWrongUsage);
  }
}

/// Those of `chosen` that are there; warns of the others.
std::set<u_int64_t> Found(const std::set<u_int64_t>& chosen, const IBFabric& fabric,
                          bool in_sub_fabric) {
  std::set<u_int64_t> found;
  std::size_t warnings = 0;
  for (const u_int64_t guid : chosen) {
    const IBNode* node = fabric.getNodeByGuid(guid);
    if (node != nullptr && (node->in_sub_fabric || !in_sub_fabric)) {
      found.insert(guid);
      continue;
    }
    if (++warnings > kMaxWarnings) continue;
    PrintWarning(node == nullptr ? fmt::format("no node has the GUID {}", GuidText(guid))
                                 : fmt::format("the node {} ({}) is outside the sub-fabric",
                                               GuidText(guid), node->name));
  }
  if (warnings > kMaxWarnings) {
    PrintWarning(fmt::format("{} further GUIDs are missing{}", warnings - kMaxWarnings,
                             in_sub_fabric ? " or outside the sub-fabric" : ""));
  }
  return found;
}

}  // namespace

void GuidOptions::AddTo(CLI::App& app) {
  app.add_option("--guid", guids_, "A node to take, by its GUID; may be repeated")
      ->type_name("GUID")
      ->allow_extra_args(false);
  app.add_option(
         "--guid-file", file_,
         "A file that names nodes to take: one GUID a line, # comments; - is standard input")
      ->type_name("FILE");
}

std::set<u_int64_t> GuidOptions::Read() const {
  std::set<u_int64_t> guids;
  for (const std::string& text : guids_) {
    const std::optional<u_int64_t> guid = ParseGuid(text);
    if (!guid) {
      throw CommandError(fmt::format("--guid: '{}' is no GUID; {}", text, kAdvise), kWrongUsage);
    }
    guids.insert(*guid);
  }
  if (!file_.empty()) ReadGuidFile(file_, guids);
  return guids;
}

std::optional<u_int64_t> ParseGuid(std::string_view text) {
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    text.remove_prefix(2);
  }
  if (text.empty() || text.size() > kMaxDigits) return std::nullopt;
  u_int64_t guid = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, guid, 16);
  if (error != std::errc{} || rest != end) return std::nullopt;
  return guid;
}

std::set<u_int64_t> WarnOfMissing(const std::set<u_int64_t>& chosen, const IBFabric& fabric) {
  return Found(chosen, fabric, true);
}

std::set<u_int64_t> WarnOfUnknown(const std::set<u_int64_t>& chosen, const IBFabric& fabric) {
  return Found(chosen, fabric, false);
}

}  // namespace fabscan
