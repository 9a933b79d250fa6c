#ifndef INFINIBAND_FABSCAN_H
#define INFINIBAND_FABSCAN_H

#include <infiniband/fabscan/fabscan_capability_module.h>
#include <infiniband/fabscan/fabscan_tessel_extended_info.h>
#include <infiniband/fabscan/fabscan_types.h>
#include <infiniband/tessel/Fabric.h>
#include <infiniband/tessel/OutputControl.h>

#include <fstream>
#include <string>

/// The tool as its parts see it: the discovered fabric, what was collected from it, and where
/// output files go.
class Fabscan {
 public:
  /// What `OpenFile` and `CloseFile` return when they fail.
  static constexpr int kFileFailed = 1;

  IBFabric discovered_fabric;
  TesselExtendedInfo fabric_extended_info;
  CapabilityModule capability_module;

  /// Empties fabric, store and capabilities, and keeps their memory for another fabric.
  void clear() {
    discovered_fabric.clear();
    fabric_extended_info.clear();
    capability_module.clear();
  }

  /// The folder that output files are placed in; the working folder until set.
  void setOutputFolder(std::string folder) { output_folder_ = std::move(folder); }
  /// The path of the next files, whatever their names; empty for names in the output folder again.
  void setOutputFile(std::string path) { output_file_ = std::move(path); }

  /// Opens `out` on the file that `identity` names, in the output folder, emptied when it exists.
  /// `description` says in error messages what the file is. `append` keeps what the file holds.
  /// `comment`, where not null, is the prefix of a first line that says what the file is.
  /// Returns 0, or `kFileFailed`; then `lastError` tells why.
  int OpenFile(const std::string& description, const OutputControl::Identity& identity,
               std::ofstream& out, bool append, const char* comment);
  /// Writes out what is pending and closes `out`. Returns 0, or `kFileFailed` when anything since
  /// `OpenFile` could not be written; then `lastError` tells why. `comment` is not used.
  int CloseFile(std::ofstream& out, const char* comment);

  /// Path and cause of the latest failure of `OpenFile` or `CloseFile`; empty when there was none.
  const std::string& lastError() const { return last_error_; }
  /// Path of the file that `OpenFile` was asked for last.
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
