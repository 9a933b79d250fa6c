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
  kWrongUsage = 2,  // invalid arguments
  kIncomplete = 3,  // written, but incomplete or not compilable
};

/// Ends a subcommand with an exit status and one line that `main` writes to standard error.
class CommandError : public std::runtime_error {
 public:
  explicit CommandError(const std::string& message, ExitStatus status = kFailed)
      : std::runtime_error(message), status_(status) {}
  ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

/// Declares a subcommand's options on `app` and returns the action to run after parsing.
using AddCommand = std::function<ExitStatus()> (*)(CLI::App& app);

/// One row of the table of subcommands.
struct Command {
  const char* name;
  const char* summary;
  AddCommand add;
};

}  // namespace fabscan

#endif
