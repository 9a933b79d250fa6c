#ifndef FABSCAN_SIMULATOR_VERIFICATION_PROGRAM_H
#define FABSCAN_SIMULATOR_VERIFICATION_PROGRAM_H

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/runner/expectations.h"

namespace fabscan {

/// A verification that could not be completed. `what()` is one line; `details` is output of the
/// compiler or the program.
class VerificationError : public std::runtime_error {
 public:
  explicit VerificationError(const std::string& message, std::vector<std::string> details = {})
      : std::runtime_error(message), details_(std::move(details)) {}
  const std::vector<std::string>& details() const { return details_; }

 private:
  std::vector<std::string> details_;
};

/// How generated files are compiled.
struct Compiler {
  std::string command = "c++";
  std::string standard = "c++17";
};

/// The result of running a generated function.
struct FunctionResult {
  std::string name;
  std::size_t records = 0;  // attributes of the node, or of one of its ports, that it assigns
  std::size_t fields = 0;
  std::vector<std::string> differences;
};

/// A directory with the reference simulator and its compiled runner. All functions throw
/// VerificationError.
class Workspace {
 public:
  /// `folder` must exist and be empty.
  Workspace(const std::string& folder, Compiler compiler);

  /// Creates the directory of the device `prefix`, with its header, and returns its path.
  std::string AddDevice(const std::string& prefix) const;

  /// A generated node to run.
  struct Device {
    std::string prefix;
    std::string kind;  // its class: SW, RTR, HCA, AN or Unknown
    std::string text;  // the file, compilable
    simulator::UnitExpectations expectations;
  };

  /// Compiles the devices into the program `name` and runs it: prefix -> results, in the order of
  /// the functions. Thread-safe for different names and devices.
  std::map<std::string, std::vector<FunctionResult>> Run(const std::string& name,
                                                         const std::vector<Device>& devices) const;

 private:
  void compile(const std::vector<std::string>& words, const std::string& log) const;

  std::string folder_;
  Compiler compiler_;
};

}  // namespace fabscan

#endif
