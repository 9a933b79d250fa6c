#ifndef FABSCAN_SIMULATOR_VERIFICATION_PROCESS_H
#define FABSCAN_SIMULATOR_VERIFICATION_PROCESS_H

#include <string>
#include <vector>

namespace fabscan {

/// How a program ended.
struct ProcessEnd {
  int status = -1;      // its exit status; -1 when it did not exit by itself
  int signal = 0;       // the signal that ended it, or 0
  int start_error = 0;  // why it could not be started (an errno value), or 0
};

/// Runs `words`, a program (looked up in PATH) and its arguments, to its end, without a shell.
/// Standard output and standard error go to the files that are named; standard input is empty.
ProcessEnd RunProcess(const std::vector<std::string>& words, const std::string& output_file,
                      const std::string& error_file);

/// Kills the programs that run, with the processes that they started, and lets RunProcess neither
/// start another nor return: for a program that is about to end.
void EndProcesses();

}  // namespace fabscan

#endif
