#ifndef FABSCAN_CLI_FILE_SYSTEM_H
#define FABSCAN_CLI_FILE_SYSTEM_H

#include <string>

namespace fabscan {

/// The directory that the file `path` is in, and its name there.
std::string DirectoryOf(const std::string& path);
std::string NameOf(const std::string& path);

// Each returns 0 or errno.

/// Makes what was written to `path`, a file or a directory, survive a loss of power.
int Synchronise(const std::string& path);
/// The same for everything that was written to the file system that `path` is on.
int SynchroniseFileSystem(const std::string& path);
/// Gives `path` the permissions of the file `other`, if that exists.
int CopyMode(const std::string& path, const std::string& other);

}  // namespace fabscan

#endif
