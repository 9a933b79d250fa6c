// write-reference DIRECTORY: writes the manual pages and shell completions from the definitions of
// the command line.

#include <fmt/format.h>

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "cli/command_line.h"
#include "packaging/reference/completions.h"
#include "packaging/reference/manual_page.h"
#include "packaging/reference/options.h"

namespace {

void Write(const std::filesystem::path& path, const std::string& text) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error(fmt::format("{}: cannot write", path.string()));
}

void WriteReference(const std::filesystem::path& folder) {
  const fabscan::CommandLine line;
  Write(folder / "man1/fabscan.1", fabscan::ManualPage(line));
  for (const CLI::App* subcommand : fabscan::SubcommandsOf(line.app)) {
    Write(folder / fmt::format("man1/fabscan-{}.1", subcommand->get_name()),
          fabscan::ManualPage(*subcommand));
  }
  Write(folder / "completions/fabscan", fabscan::BashCompletion(line.app));
  Write(folder / "completions/_fabscan", fabscan::ZshCompletion(line.app));
  Write(folder / "completions/fabscan.fish", fabscan::FishCompletion(line.app));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "write-reference: expected one argument, the directory\n";
    return 2;
  }
  try {
    WriteReference(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "write-reference: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
