#ifndef FABSCAN_FUZZ_COMPILED_TEXT_H
#define FABSCAN_FUZZ_COMPILED_TEXT_H

#include <string>
#include <string_view>

namespace fabscan {

/// What a C++ compiler is left with of a source: without comments, with a line that ends in a
/// backslash joined to the next (also where blanks or a trigraph are in between, as some compilers
/// do it), each run of blanks and line ends as one blank.
std::string CompiledText(std::string_view source);

}  // namespace fabscan

#endif
