#ifndef FABSCAN_CLI_STANDARD_STREAMS_H
#define FABSCAN_CLI_STANDARD_STREAMS_H

#include <optional>
#include <string>

namespace fabscan {

/// Opens standard input, output and error if the caller closed them, so that no other file gets
/// their descriptors. Reading from and writing to them still fails. Must be called first.
void OpenClosedStandardStreams();

/// Whether a path on the command line means standard input or standard output.
inline bool IsStandardStream(const std::string& path) { return path == "-"; }

/// The file descriptor that an output path means, such as 1 for `-` and `/dev/stdout`, 63 for
/// `/dev/fd/63`.
std::optional<int> OpenFileNamed(const std::string& path);
inline bool IsStandardOutput(const std::string& path) { return OpenFileNamed(path) == 1; }

/// Must be called before standard input is read. Throws CommandError on the second call, because
/// the input is consumed.
void TakeStandardInput();

/// `path`, or the name of the stream, safe for a terminal.
std::string InputName(const std::string& path);
std::string OutputName(const std::string& path);

}  // namespace fabscan

#endif
