#ifndef FABSCAN_CLI_STAGED_OUTPUT_H
#define FABSCAN_CLI_STAGED_OUTPUT_H

#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "private_folder.h"
#include "standard_streams.h"

namespace fabscan {

class Progress;

/// An output file that appears whole or not at all.
///
/// It is written under its own name in a private folder `.fabscan-XXXXXX` beside its place, and
/// `Commit` moves it there. Several that go to one folder share one. Until then what stands in its
/// place is untouched; the folder is gone afterwards, whether `Commit` was reached or not, and also
/// when SIGINT, SIGTERM or SIGHUP ends the program.
///
///     StagedOutput output(path, force);
///     WriteSnapshot(output.stream(), fabscan, header);
///     output.Commit();
///
/// Every member throws CommandError, with path, cause and what to do.
class StagedOutput {
 public:
  /// `path` "-" is standard output. Refuses a file that exists unless `force`, anything that is no
  /// file in any case, and a folder that is missing or cannot be written.
  StagedOutput(const std::string& path, bool force);
  /// One for each path, for `CommitAll`.
  static std::vector<std::unique_ptr<StagedOutput>> Several(const std::vector<std::string>& paths,
                                                            bool force);
  ~StagedOutput() = default;
  StagedOutput(const StagedOutput&) = delete;
  StagedOutput& operator=(const StagedOutput&) = delete;

  /// Whether there is a private folder; else what is written goes out at once.
  bool isStaged() const { return !staged_path_.empty(); }
  /// The private folder, for a writer that opens the file itself; it uses the file's own name.
  const std::string& folder() const { return folder_->path(); }
  /// Where the file is until `Commit`.
  const std::string& stagedPath() const { return staged_path_; }
  /// Where the file goes.
  const std::string& path() const { return path_; }

  /// The file, opened for writing when first asked for; or standard output.
  std::ostream& stream();

  /// Moves the file into its place once all of it is on disk. Without `force` a file that came to
  /// be there in the meantime is kept, and that is an error.
  void Commit();
  /// Commits all of them or, where one fails, none: then what was in their places is there again.
  static void CommitAll(const std::vector<std::unique_ptr<StagedOutput>>& outputs);

 private:
  StagedOutput(const std::string& path, bool force, const StagedOutput* before);

  bool isStandardOutput() const { return IsStandardStream(path_); }
  void refuseTarget() const;
  void makeFolder(const StagedOutput* before);
  void finishStream();
  void putOnDisk();
  void moveIntoPlace();
  void exchangeWithTarget();
  void takeBack();
  static void PutAllOnDisk(const std::vector<std::unique_ptr<StagedOutput>>& outputs);
  static void MoveAllIntoPlace(const std::vector<std::unique_ptr<StagedOutput>>& outputs,
                               Progress& progress);

  std::string path_;
  std::string target_;  // `path_`, with a symbolic link followed
  bool force_;
  std::shared_ptr<PrivateFolder> folder_ = std::make_shared<PrivateFolder>();
  std::string staged_path_;
  bool exchanged_ = false;  // what was in the file's place is in the folder
  std::ofstream file_;
};

}  // namespace fabscan

#endif
