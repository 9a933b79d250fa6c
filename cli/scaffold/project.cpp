#include "cli/scaffold/project.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "cli/dump/class_prefix.h"
#include "cli/files/staged_output.h"
#include "cli/scaffold/project_template.h"
#include "cli/terminal/progress.h"
#include "fabscan/fabscan_sim_info_dump.h"
#include "simulator/verification/simulator_sources.h"

namespace fabscan {

namespace {

namespace fs = std::filesystem;

/// The last port that a simulated node can have.
constexpr unsigned kLastPort = 254;

bool IsSimulatorHeader(std::string_view path) {
  return path.substr(0, 5) == "core/" || path.substr(0, 8) == "include/";
}

/// The files of a project in the order in which they are written; generated files come last.
class ProjectFiles {
 public:
  ProjectFiles(Fabscan& fabscan, const std::vector<NamedModel>& devices) {
    const SimInfoDumpCPP generator(fabscan);
    std::vector<ProjectDevice> described;
    for (const NamedModel& device : devices) {
      const IBNode& node = *device.model.representative;
      described.push_back({device.prefix, LowerCasePrefix(device.prefix),
                           generator.GetDumpedNodeType(node), node.name,
                           std::min<unsigned>(node.numPorts, kLastPort)});
    }
    for (const char* name : {"CMakeLists.txt", "main.cpp"}) {
      const std::string_view text = SimulatorSourceText(std::string("project/") + name + ".in");
      add(name, FillTemplate(text, described));
    }
    for (const SimulatorSource* source = kSimulatorSources; source->path != nullptr; ++source) {
      if (IsSimulatorHeader(source->path)) add(source->path, std::string(source->text));
    }
    for (const ProjectDevice& device : described) {
      const fs::path directory = fs::path("devices") / device.directory;
      add(directory / (device.directory + ".h"),
          DeviceSource("devices/example/example.h", device.prefix));
      add(directory / "CMakeLists.txt",
          DeviceSource("devices/example/CMakeLists.txt", device.prefix));
    }
    for (const ProjectDevice& device : described) {
      paths_.push_back(fs::path("devices") / device.directory / GeneratedFileName(device.prefix));
    }
  }

  /// Below `directory`.
  std::vector<std::string> paths(const fs::path& directory) const {
    std::vector<std::string> paths;
    for (const fs::path& path : paths_) paths.push_back(directory / path);
    return paths;
  }
  /// All but the generated files.
  const std::vector<std::string>& texts() const { return texts_; }

 private:
  void add(const fs::path& path, std::string text) {
    paths_.push_back(path);
    texts_.push_back(std::move(text));
  }

  std::vector<fs::path> paths_;
  std::vector<std::string> texts_;
};

}  // namespace

void WriteProject(Fabscan& fabscan, const std::vector<NamedModel>& devices, Variant variant,
                  const std::string& directory, bool force,
                  const std::function<void(const std::vector<ModelFile>& files)>& report) {
  const ProjectFiles project(fabscan, devices);
  const std::vector<std::string> paths = project.paths(directory);
  const std::vector<std::unique_ptr<StagedOutput>> outputs = StagedOutput::Several(paths, force);

  const std::vector<std::string>& texts = project.texts();
  for (std::size_t i = 0; i < texts.size(); ++i) outputs[i]->stream() << texts[i];
  std::vector<ModelFile> files;
  Progress progress;
  for (std::size_t i = 0; i < devices.size(); ++i) {
    progress.Show("devices written", i, devices.size());
    const std::size_t place = texts.size() + i;
    files.push_back(
        {devices[i], fs::path(paths[place]).parent_path().string(),
         WriteDumpFile(fabscan, devices[i].prefix, {devices[i].model.representative->guid}, variant,
                       *outputs[place])});
  }
  progress.Show("devices written", devices.size(), devices.size());
  progress.Finish();
  report(files);
  StagedOutput::CommitAll(outputs);
}

}  // namespace fabscan
