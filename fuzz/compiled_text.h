#ifndef FABSCAN_FUZZ_COMPILED_TEXT_H
#define FABSCAN_FUZZ_COMPILED_TEXT_H

#include <string>
#include <string_view>

namespace fabscan {

/// The code that a C++ compiler sees in a source: comments are removed, a line that ends in a
/// backslash is joined to the next (also with trailing blanks or a trigraph, as in some compilers),
/// and each run of blanks and line ends becomes one blank.
std::string CompiledText(std::string_view source);

}  // namespace fabscan

#endif
