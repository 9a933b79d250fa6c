#ifndef FABSCAN_SIMULATOR_BUILDABLE_SOURCE_H
#define FABSCAN_SIMULATOR_BUILDABLE_SOURCE_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// A line of a generated file that does not compile, and its replacement.
struct SourceEdit {
  std::size_t line = 0;  // counted from 1, the same in both files
  std::string node;      // its name in the fabric
  std::string function;  // setArInfo
  std::string text;      // the line as it was generated, without its indentation
  const char* change = nullptr;
  bool is_error_line = false;  // an #error line, rather than code that does not compile
};

/// A generated file, edited so that it compiles. Lines keep their numbers.
struct BuildableSource {
  std::string text;
  std::vector<SourceEdit> edits;  // by line; the braces of one function count as one edit
};

/// Edits `generated`, a file with nodes of `fabscan`: #error lines and the pack of an undeclared
/// record become comments, the redirect GID is assigned as its two words, and branches that declare
/// the same names get braces. A file that needs no edits is returned unchanged.
BuildableSource MakeBuildable(std::string_view generated, const Fabscan& fabscan);

}  // namespace fabscan

#endif
