#ifndef FABSCAN_CLI_GUID_OPTIONS_H
#define FABSCAN_CLI_GUID_OPTIONS_H

#include <sys/types.h>

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "model/guid_text.h"

namespace CLI {
class App;
}

namespace fabscan {

/// The options `--guid` and `--guid-file`.
class GuidOptions {
 public:
  void AddTo(CLI::App& app);

  /// The given ones of the two.
  std::vector<std::string_view> OptionNames() const;
  /// As words of another command: ` --guid 0x… --guid-file FILE`.
  std::string Words() const;
  /// The GUIDs; empty if none are given. Throws CommandError (kWrongUsage) for a malformed GUID,
  /// with the line of the file, and for a file that contains none.
  std::set<u_int64_t> Read() const;

 private:
  std::vector<std::string> guids_;
  std::string file_;
};

/// Parses a GUID as the public tools print it; nullopt if `text` is not a valid one:
/// - 1 to 16 hexadecimal digits, with or without 0x
/// - 16 digits with colons in groups of four, or of two
/// - `S-`, `H-` or `R-` (switch, adapter, router) and up to 16 digits
std::optional<u_int64_t> ParseGuid(std::string_view text);

}  // namespace fabscan

#endif
