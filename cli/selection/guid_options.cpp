#include "cli/selection/guid_options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>

#include "cli/command.h"
#include "cli/files/option_file.h"
#include "cli/files/standard_streams.h"
#include "cli/output/shell_word.h"

namespace fabscan {

namespace {

constexpr std::size_t kMaxDigits = 16;
constexpr std::size_t kMaxFileBytes = std::size_t{64} << 20U;

std::string MalformedText(std::string_view text) {
  return fmt::format(
      "'{}' is not a valid GUID; expected 1 to 16 hexadecimal digits, with or without 0x or colons",
      text);
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool HasHexPrefix(std::string_view text) {
  return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

/// The prefixes by which ibnetdiscover marks switches, adapters and routers.
bool HasNodePrefix(std::string_view text) {
  return text.size() > 2 && text[1] == '-' && (text[0] == 'S' || text[0] == 'H' || text[0] == 'R');
}

/// The digits of four groups of four or eight groups of two; `text` if it has no colon.
std::optional<std::string> WithoutColons(std::string_view text) {
  const std::size_t group = text.find(':');
  if (group == std::string_view::npos) return std::string(text);
  if (group != 2 && group != 4) return std::nullopt;
  std::string digits;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool at_colon = i % (group + 1) == group;
    if (at_colon != (text[i] == ':')) return std::nullopt;
    if (!at_colon) digits += text[i];
  }
  return digits.size() == kMaxDigits && text.back() != ':' ? std::optional(digits) : std::nullopt;
}

void ReadGuidFile(const std::string& path, std::set<u_int64_t>& guids) {
  const std::string content = ReadOptionFile({path, "the GUIDs", "--guid-file", kMaxFileBytes});
  unsigned long number = 0;
  for (std::string_view rest = content; !rest.empty();) {
    ++number;
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    const std::string_view text = Trimmed(line.substr(0, line.find('#')));
    if (text.empty()) continue;
    const std::optional<u_int64_t> guid = ParseGuid(text);
    if (!guid) {
      throw CommandError(fmt::format("{}:{}: {}", InputName(path), number, MalformedText(text)),
                         kWrongUsage);
    }
    guids.insert(*guid);
  }
  if (guids.empty()) {
    throw CommandError(fmt::format("{}: contains no GUID; write one per line", InputName(path)),
                       kWrongUsage);
  }
}

}  // namespace

void GuidOptions::AddTo(CLI::App& app) {
  app.add_option("--guid", guids_, "Select a node by GUID (repeatable)")
      ->type_name("GUID")
      ->allow_extra_args(false);
  app.add_option("--guid-file", file_,
                 "Select the nodes whose GUIDs are in a file: one per line, # comments; - is "
                 "standard input")
      ->type_name("FILE");
}

std::string GuidOptions::Words() const {
  std::string words;
  for (const std::string& guid : guids_) words += " --guid " + ShellWord(guid);
  if (!file_.empty()) words += " --guid-file " + ShellWord(file_);
  return words;
}

std::vector<std::string_view> GuidOptions::OptionNames() const {
  std::vector<std::string_view> names;
  if (!guids_.empty()) names.emplace_back("--guid");
  if (!file_.empty()) names.emplace_back("--guid-file");
  return names;
}

std::set<u_int64_t> GuidOptions::Read() const {
  std::set<u_int64_t> guids;
  for (const std::string& text : guids_) {
    const std::optional<u_int64_t> guid = ParseGuid(text);
    if (!guid) {
      throw CommandError("--guid: " + MalformedText(text), kWrongUsage);
    }
    guids.insert(*guid);
  }
  if (!file_.empty()) ReadGuidFile(file_, guids);
  return guids;
}

std::optional<u_int64_t> ParseGuid(std::string_view text) {
  if (HasNodePrefix(text) || HasHexPrefix(text)) text.remove_prefix(2);
  const std::optional<std::string> digits = WithoutColons(text);
  if (!digits || digits->empty() || digits->size() > kMaxDigits) return std::nullopt;
  u_int64_t guid = 0;
  const char* const end = digits->data() + digits->size();
  const auto [rest, error] = std::from_chars(digits->data(), end, guid, 16);
  if (error != std::errc{} || rest != end) return std::nullopt;
  return guid;
}

}  // namespace fabscan
