#ifndef FABSCAN_MODEL_HARMLESS_NAME_H
#define FABSCAN_MODEL_HARMLESS_NAME_H

#include <string>
#include <string_view>

namespace fabscan {

/// Begins every escaped byte of a harmless name; a name without it is exactly the device's name.
inline constexpr char kEscapeMark = '%';

/// Whether a character is invisible or changes how others are displayed: by its Unicode properties
/// General_Category (Cc, Cf, Zl, Zp) and Default_Ignorable_Code_Point.
bool IsDeceptive(char32_t code);

/// A device's name in a readable form that is safe anywhere in C++ source: in a comment, in a
/// string, or in a directive with an unclosed quote. It does not change how the compiler reads the
/// rest.
///
/// Hazardous bytes become `%XX` (two upper-case hexadecimal digits):
/// - control characters, backslashes and double quotes;
/// - the `*` of a comment opener and the second `?` of a pair (trigraphs);
/// - bytes that are not UTF-8, and invisible or direction-changing characters;
/// - a `%` that would otherwise read as the start of such a form.
/// All other names, including every ordinary one, are unchanged. `OriginalName` is the inverse:
/// `OriginalName(HarmlessName(name)) == name` for every sequence of bytes.
std::string HarmlessName(std::string_view device_name);

/// Recovers the device's bytes from the result of `HarmlessName`.
std::string OriginalName(std::string_view harmless_name);

}  // namespace fabscan

#endif
