#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/files/standard_streams.h"
#include "cli/output/closed_pipe.h"
#include "cli/output/report.h"
#include "cli/terminal/termination.h"
#include "model/suggestion.h"
#include "snapshot/snapshot.h"

namespace fabscan {

namespace {

[[noreturn]] void RefuseUnknownCommand(const std::string& word) {
  std::vector<std::string_view> names;
  for (const Command* command = kCommands; command->name != nullptr; ++command) {
    names.emplace_back(command->name);
  }
  const std::string_view nearest = NearestWord(word, names);
  throw CommandError(
      nearest.empty()
          ? fmt::format("unknown subcommand '{}'; 'fabscan --help' lists the subcommands", word)
          : fmt::format("unknown subcommand '{}'; did you mean '{}'?", word, nearest),
      kWrongUsage);
}

/// Reports the error of CLI11, with the nearest option or the help command.
[[noreturn]] void RefuseUsage(const CLI::App& app, const CLI::ParseError& found) {
  std::string call;
  std::string message = found.what();
  std::vector<const CLI::App*> commands = {&app};
  for (const CLI::App* command : app.get_subcommands()) commands.push_back(command);
  // An unexpected argument is the reason for a missing subcommand.
  const bool is_extra =
      dynamic_cast<const CLI::ExtrasError*>(&found) != nullptr || commands.size() == 1;
  for (const CLI::App* command : commands) {
    call += (call.empty() ? "" : " ") + command->get_name();
    const std::vector<std::string> unexpected = command->remaining();
    if (!is_extra || unexpected.empty()) continue;
    message = fmt::format("'{}' was not expected", unexpected.front());
    std::vector<std::string> names;
    for (const CLI::Option* option : command->get_options()) {
      names.push_back(option->get_name());
    }
    const std::string_view nearest = NearestWord(unexpected.front(), names);
    if (nearest.empty()) continue;
    throw CommandError(fmt::format("{}; did you mean '{}'?", message, nearest), kWrongUsage);
  }
  throw CommandError(fmt::format("{}; see '{} --help'", message, call), kWrongUsage);
}

/// The arguments in reverse order, as CLI11 expects them; `help SUBCOMMAND` becomes `SUBCOMMAND
/// --help`.
std::vector<std::string> Words(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  if (words.front() == "help") {
    words.front() = "--help";
    if (words.size() == 2 && words.back().front() != '-') std::swap(words.front(), words.back());
  }
  std::reverse(words.begin(), words.end());
  return words;
}

ExitStatus Run(int argc, char** argv) {
  CommandLine line;
  if (argc < 2) {
    throw CommandError("a subcommand is missing; 'fabscan --help' lists them", kWrongUsage);
  }
  const std::vector<std::string> words = Words(argc, argv);
  if (words.back()[0] != '-' && FindCommand(words.back()) == nullptr) {
    RefuseUnknownCommand(words.back());
  }
  try {
    line.app.parse(std::vector<std::string>(words));
  } catch (const CLI::Success& answer) {  // --help and --version
    line.app.exit(answer, std::cout, std::cerr);
    return kDone;
  } catch (const CLI::ParseError& found) {
    RefuseUsage(line.app, found);
  }
  return line.actions.at(line.app.get_subcommands().front())();
}

ExitStatus RunReportingErrors(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const CommandError& error) {
    PrintError(error.what());
    return error.status();
  } catch (const SnapshotError& error) {
    PrintError(error.what());
  } catch (const std::exception& error) {
    PrintError(fmt::format("unexpected failure: {}", error.what()));
  }
  return kFailed;
}

/// Returns `failure` if results did not reach standard output, for any result of the command.
ExitStatus FinishStandardOutput(ExitStatus status, ExitStatus failure) {
  try {
    RequireStandardOutput();
  } catch (const CommandError& error) {
    if (status == kFailed || status == kWrongUsage) return status;
    PrintError(error.what());
    return failure;
  }
  return status;
}

/// As for diff(1), 1 means that there are differences.
ExitStatus FailureOf(int argc, char** argv) {
  return argc > 1 && std::strcmp(argv[1], "diff") == 0 ? kWrongUsage : kFailed;
}

}  // namespace

}  // namespace fabscan

int main(int argc, char** argv) {
  fabscan::WatchTerminationSignals();
  fabscan::LetWritesFail();
  try {
    fabscan::OpenClosedStandardStreams();
    fabscan::KeepStandardOutputErrors();
    return fabscan::FinishStandardOutput(fabscan::RunReportingErrors(argc, argv),
                                         fabscan::FailureOf(argc, argv));
  } catch (const fabscan::ClosedPipe&) {
    fabscan::EndBySigpipe();
  } catch (const std::bad_alloc&) {  // in the command, or while reporting an error
    fabscan::PrintOutOfMemory();
  }
  return fabscan::FailureOf(argc, argv);
}
