#ifndef FABSCAN_CLI_MODEL_FILES_H
#define FABSCAN_CLI_MODEL_FILES_H

#include <string>
#include <vector>

#include "cli/dump/dump_file.h"
#include "cli/dump/model_names.h"
#include "cli/terminal/terminal.h"

namespace fabscan {

/// The generated file of one device model.
struct ModelFile {
  NamedModel named;
  std::string path;  // of the file, or of the directory that it is in
  DumpedFile dumped;
};

/// For people: one row per file, then the numbers of files and nodes. `head`: the column head of
/// the paths.
std::string FilesText(const char* head, const std::vector<ModelFile>& files, Variant variant,
                      const Terminal& terminal);

std::vector<SourceEdit> EditsOf(const std::vector<ModelFile>& files);
CompileFaults FaultsOf(const std::vector<ModelFile>& files);
/// `3 of 10 files do not compile as written`.
std::string FaultyText(const std::vector<ModelFile>& files);

}  // namespace fabscan

#endif
