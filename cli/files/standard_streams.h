#ifndef FABSCAN_CLI_STANDARD_STREAMS_H
#define FABSCAN_CLI_STANDARD_STREAMS_H

#include <string>

namespace fabscan {

/// Whether a path on the command line stands for standard input or standard output.
inline bool IsStandardStream(const std::string& path) { return path == "-"; }

/// To be called before standard input is read. Throws CommandError the second time: there is
/// nothing left in it.
void TakeStandardInput();

/// `path`, or what a person calls the stream.
std::string InputName(const std::string& path);
std::string OutputName(const std::string& path);

}  // namespace fabscan

#endif
