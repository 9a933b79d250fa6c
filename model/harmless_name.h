#ifndef FABSCAN_MODEL_HARMLESS_NAME_H
#define FABSCAN_MODEL_HARMLESS_NAME_H

#include <string>
#include <string_view>

namespace fabscan {

/// What every escaped byte of a harmless name begins with; one without it is as the device gave it.
inline constexpr char kEscapeMark = '%';

/// A device's name in a form that can stand anywhere in C++ source, be it in a comment, in a string
/// or in a directive whose quote is never closed, without changing what the compiler sees of the
/// rest, and that shows a reader what it is.
///
/// Bytes that could do harm become `%XX` (two upper-case hexadecimal digits):
/// - control characters, backslashes and double quotes;
/// - the `*` of a comment opener and the second `?` of a pair (trigraphs);
/// - bytes that are not UTF-8, and invisible or direction-changing characters;
/// - a `%` that would otherwise read as the start of such a form.
/// Every other name, so every ordinary one, stays as it is. `OriginalName` takes it back:
/// `OriginalName(HarmlessName(name)) == name` for every sequence of bytes.
std::string HarmlessName(std::string_view device_name);

/// The bytes that the device gave, from the form that `HarmlessName` made.
std::string OriginalName(std::string_view harmless_name);

}  // namespace fabscan

#endif
