#ifndef FABSCAN_CLI_FILE_MOVES_H
#define FABSCAN_CLI_FILE_MOVES_H

#include <string>

namespace fabscan {

/// The directory that the file `path` is in, and its name there.
std::string DirectoryOf(const std::string& path);
std::string NameOf(const std::string& path);

// Each returns 0 or errno.

/// Makes what was written to `path`, a file or a directory, survive a loss of power.
int Synchronise(const std::string& path);
/// Gives `path` the permissions of the file `other`, if that exists.
int CopyMode(const std::string& path, const std::string& other);
/// Moves `from` to `to` unless there is something.
int MoveWithoutReplacing(const std::string& from, const std::string& to);
/// Exchanges the two files; where that fails, both are where they were.
int Exchange(const std::string& one, const std::string& other);

}  // namespace fabscan

#endif
