#ifndef INFINIBAND_FABSCAN_H
#define INFINIBAND_FABSCAN_H

#include <infiniband/fabscan/fabscan_capability_module.h>
#include <infiniband/fabscan/fabscan_tessel_extended_info.h>
#include <infiniband/fabscan/fabscan_types.h>
#include <infiniband/tessel/Fabric.h>
#include <infiniband/tessel/OutputControl.h>

#include <fstream>
#include <string>

/// The facade of the tool: the discovered fabric, the collected records, and the output files.
class Fabscan {
 public:
  /// The result of `OpenFile` and `CloseFile` on failure.
  static constexpr int kFileFailed = 1;

  IBFabric discovered_fabric;
  TesselExtendedInfo fabric_extended_info;
  CapabilityModule capability_module;

  /// Clears fabric, store and capabilities, and keeps their memory for another fabric.
  void clear() {
    discovered_fabric.clear();
    fabric_extended_info.clear();
    capability_module.clear();
  }

  /// The directory for output files (default: current directory).
  void setOutputFolder(std::string folder) { output_folder_ = std::move(folder); }
  /// The path of the next files, for any name; empty to use their names in the output directory.
  void setOutputFile(std::string path) { output_file_ = std::move(path); }

  /// Opens `out` on the file that `identity` names, in the output directory, and truncates it.
  /// `description` names the file in error messages. `append` keeps the contents of the file. If
  /// `comment` is not null, it is the prefix of a first line that describes the file.
  /// Returns 0, or `kFileFailed` and sets `lastError`.
  int OpenFile(const std::string& description, const OutputControl::Identity& identity,
               std::ofstream& out, bool append, const char* comment);
  /// Flushes and closes `out`. Returns 0, or `kFileFailed` and sets `lastError` if any write since
  /// `OpenFile` failed. `comment` is not used.
  int CloseFile(std::ofstream& out, const char* comment);

  /// Path and cause of the last failure of `OpenFile` or `CloseFile`; empty if there was none.
  const std::string& lastError() const { return last_error_; }
  /// Path of the file in the last call of `OpenFile`.
  const std::string& outputPath() const { return output_path_; }

 private:
  int fail(const std::string& action, int error_number);

  std::string output_folder_;
  std::string output_file_;
  std::string output_path_;
  std::string description_;
  std::string last_error_;
};

#endif
