// A device's name in its harmless form contains nothing that misleads a compiler or a reader, and
// can be recovered.

#include <cstdint>
#include <string>

#include "fuzz/require.h"
#include "model/harmless_name.h"
#include "model/utf8.h"

namespace fabscan {
namespace {

bool ReordersOrHides(char32_t code) {
  return (code >= 0x200B && code <= 0x200F) || (code >= 0x2028 && code <= 0x202E) ||
         (code >= 0x2060 && code <= 0x206F) || (code >= 0xE0000 && code <= 0xE007F) ||
         code == 0xFEFF || code == 0x61C || code == 0xAD;
}

void RequireHarmless(std::string_view name) {
  Require(name.find_first_of("\\\"") == std::string_view::npos, "no backslash, no double quote");
  Require(name.find("/*") == std::string_view::npos, "no comment opener");
  Require(name.find("??") == std::string_view::npos, "no trigraph");
  while (!name.empty()) {
    const Utf8Character character = FirstCharacter(name);
    Require(character.length != 0, "UTF-8");
    Require(character.code >= 0x20 && (character.code < 0x7F || character.code > 0x9F),
            "no control character");
    Require(!ReordersOrHides(character.code), "nothing invisible");
    name.remove_prefix(character.length);
  }
}

void Check(std::string_view device_name) {
  const std::string harmless = HarmlessName(device_name);
  RequireHarmless(harmless);
  Require(OriginalName(harmless) == device_name, "the device's name comes back");
}

}  // namespace
}  // namespace fabscan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fabscan::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
