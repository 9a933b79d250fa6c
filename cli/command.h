#ifndef FABSCAN_CLI_COMMAND_H
#define FABSCAN_CLI_COMMAND_H

#include <functional>
#include <stdexcept>
#include <string>

namespace CLI {
class App;
}

namespace fabscan {

/// What the command returns to the shell.
enum ExitStatus : int {
  kDone = 0,
  kFailed = 1,      // nothing usable was written
  kWrongUsage = 2,  // the call's words are off
  kIncomplete = 3,  // written, but incomplete or not compilable
};

/// Ends a subcommand: one line on standard error, which `main` writes, and an exit status.
class CommandError : public std::runtime_error {
 public:
  explicit CommandError(const std::string& message, ExitStatus status = kFailed)
      : std::runtime_error(message), status_(status) {}
  ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

/// Declares a subcommand's options on `app` and returns what runs once they are read.
using AddCommand = std::function<ExitStatus()> (*)(CLI::App& app);

/// One row of the table of subcommands.
struct Command {
  const char* name;
  const char* summary;
  AddCommand add;
};

}  // namespace fabscan

#endif
