#ifndef FABSCAN_CLI_PROJECT_H
#define FABSCAN_CLI_PROJECT_H

#include <infiniband/fabscan/fabscan.h>

#include <functional>
#include <string>
#include <vector>

#include "cli/dump/dump_file.h"
#include "cli/dump/model_files.h"
#include "cli/dump/model_names.h"

namespace fabscan {

/// Writes a project that builds simulated devices and needs only a compiler and CMake:
///
///     CMakeLists.txt, main.cpp    builds everything, and a program that creates each device
///     core/, include/             the reference simulator
///     devices/NAME/               for each device: generated file, header, build lines
///
/// `devices` must have prefixes that are distinct even in lower case. `report` prints what was
/// written, before the files are moved into place. If it throws CommandError, earlier files are
/// unchanged.
void WriteProject(Fabscan& fabscan, const std::vector<NamedModel>& devices, Variant variant,
                  const std::string& directory, bool force,
                  const std::function<void(const std::vector<ModelFile>& files)>& report);

}  // namespace fabscan

#endif
