#ifndef FABSCAN_CLI_PAGE_FILES_H
#define FABSCAN_CLI_PAGE_FILES_H

#include <string_view>

namespace fabscan {

/// A file of `cli/page/files/`, embedded at build time.
struct PageFile {
  const char* name;
  std::string_view text;
};

/// The name of the last row is null.
extern const PageFile kPageFiles[];

}  // namespace fabscan

#endif
