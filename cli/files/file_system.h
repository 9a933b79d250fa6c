#ifndef FABSCAN_CLI_FILE_SYSTEM_H
#define FABSCAN_CLI_FILE_SYSTEM_H

#include <string>

namespace fabscan {

/// The directory that the file `path` is in, and its name there.
std::string DirectoryOf(const std::string& path);
std::string NameOf(const std::string& path);

// Each returns 0 or errno.

/// Synchronises the file or directory `path` to disk.
int Synchronise(const std::string& path);
/// Synchronises the file system of `path` to disk.
int SynchroniseFileSystem(const std::string& path);
/// Gives `path` the permissions of the file `other`, if that exists.
int CopyMode(const std::string& path, const std::string& other);

}  // namespace fabscan

#endif
