#ifndef FABSCAN_CLI_STAGED_OUTPUT_H
#define FABSCAN_CLI_STAGED_OUTPUT_H

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/files/directories.h"
#include "cli/files/output_file.h"
#include "cli/files/standard_streams.h"
#include "cli/files/temporary_files.h"

namespace fabscan {

/// An output: a file that appears whole or not at all, or a stream.
///
/// A file is written as `.fabscan-PROCESS-NUMBER` beside its place, and `Commit` moves it there.
/// Until then what is in its place is untouched; the temporary file is gone afterwards, whether
/// `Commit` was reached or not, and also when a signal ends the program. A file that is replaced
/// leaves its permissions to the new one.
///
/// Standard output (`-`), an open file such as `/dev/fd/3`, a pipe, a terminal and a character
/// device are written directly.
///
///     StagedOutput output(path, force);
///     WriteSnapshot(output.stream(), fabscan, header);
///     std::cout << summary;
///     output.Commit();
///
/// Every member throws CommandError, with path, cause and remedy; or ClosedPipe.
class StagedOutput {
 public:
  /// Creates the directory if it is missing; unless committed, it is removed again. Refuses a file
  /// that exists unless `force`, a directory in any case, and a directory that cannot be written.
  StagedOutput(const std::string& path, bool force)
      : StagedOutput(path, force, std::make_shared<NewDirectories>()) {}
  /// One for each path, for `CommitAll`.
  static std::vector<std::unique_ptr<StagedOutput>> Several(const std::vector<std::string>& paths,
                                                            bool force);
  ~StagedOutput() = default;
  StagedOutput(const StagedOutput&) = delete;
  StagedOutput& operator=(const StagedOutput&) = delete;

  /// Whether the output is a file; otherwise what is written goes out at once.
  bool isStaged() const { return !is_stream_; }
  /// The path of the file until `Commit`, for a writer that opens it itself.
  const std::string& stagedPath() const { return staged_.path(); }
  /// The path as it was given.
  const std::string& path() const { return path_; }

  /// The file, opened for writing when first asked for; or the stream.
  std::ostream& stream();

  /// Ends writing. `Commit` does it, too; a command calls it first to report only what was written.
  void Finish();
  /// Finishes, and moves the file into its place once all of it is on disk and everything printed
  /// has reached standard output: a command prints its results first, so that a failure to print
  /// them leaves the earlier file. Without `force` a file that came to be there in the meantime is
  /// kept, and that is an error.
  void Commit();
  /// Commits them one by one, once all are on disk. If one fails, those before it are in place, and
  /// the message says how many.
  static void CommitAll(const std::vector<std::unique_ptr<StagedOutput>>& outputs);

 private:
  StagedOutput(const std::string& path, bool force, std::shared_ptr<NewDirectories> directories);

  bool openStream();
  void refuseTarget() const;
  void moveIntoPlace();

  std::string path_;
  std::string target_;  // `path_`, with a symbolic link followed
  bool force_;
  bool is_stream_ = false;
  std::shared_ptr<NewDirectories> directories_;  // which the others of Several need, too
  TemporaryFile staged_;
  std::unique_ptr<OutputFile> file_;  // none for standard output
};

}  // namespace fabscan

#endif
