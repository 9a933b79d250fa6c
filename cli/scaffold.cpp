#include <fmt/format.h>
#include <simulator_sources.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <string>

#include "class_prefix.h"
#include "command.h"
#include "staged_output.h"

namespace fabscan {

namespace {

struct ScaffoldOptions {
  std::string prefix;
  std::string output_dir;
  bool force = false;
};

ExitStatus Scaffold(const ScaffoldOptions& options) {
  CheckClassPrefix(options.prefix);
  const std::filesystem::path folder(options.output_dir);
  // Both before either is written, so that one that exists stops the other.
  StagedOutput header(folder / (LowerCasePrefix(options.prefix) + ".h"), options.force);
  StagedOutput build(folder / "CMakeLists.txt", options.force);
  header.stream() << DeviceSource("devices/example/example.h", options.prefix);
  build.stream() << DeviceSource("devices/example/CMakeLists.txt", options.prefix);
  header.Commit();
  build.Commit();
  fmt::print("{}\n{}\n", header.path(), build.path());
  return kDone;
}

}  // namespace

std::function<ExitStatus()> AddScaffold(CLI::App& app) {
  const auto options = std::make_shared<ScaffoldOptions>();
  app.add_option("--prefix", options->prefix, "The class that holds the simulated devices")
      ->required()
      ->type_name("NAME");
  app.add_option("--output-dir", options->output_dir, "Where the files go; the working folder")
      ->type_name("DIR");
  app.add_flag("--force", options->force, "Replace files that exist");
  app.footer(
      "Writes NAME.h, in lower case, and CMakeLists.txt. They stand beside the file that "
      "'fabscan dump' writes for the same prefix, and build it with the installed simulator.\n"
      "Example: what mydev_generated.cpp needs, in the same folder\n"
      "  fabscan scaffold --prefix MyDev --output-dir devices/mydev");
  return [options] { return Scaffold(*options); };
}

}  // namespace fabscan
