#ifndef FABSCAN_CLI_STANDARD_STREAMS_H
#define FABSCAN_CLI_STANDARD_STREAMS_H

#include <optional>
#include <string>

namespace fabscan {

/// Opens standard input, output and error where the caller closed them, so that no other file gets
/// their number. Reading and writing results still fails. To be called first.
void OpenClosedStandardStreams();

/// Whether a path on the command line stands for standard input or standard output.
inline bool IsStandardStream(const std::string& path) { return path == "-"; }

/// The open file that a path for output stands for, such as 1 for `-` and `/dev/stdout`, 63 for
/// `/dev/fd/63`.
std::optional<int> OpenFileNamed(const std::string& path);
inline bool IsStandardOutput(const std::string& path) { return OpenFileNamed(path) == 1; }

/// To be called before standard input is read. Throws CommandError the second time: there is
/// nothing left in it.
void TakeStandardInput();

/// `path`, or what a person calls the stream.
std::string InputName(const std::string& path);
std::string OutputName(const std::string& path);

}  // namespace fabscan

#endif
