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

/// An output: a file that appears complete or not at all, or a stream.
///
/// A file is written as `.fabscan-PROCESS-NUMBER` in the target directory, and `Commit` moves it
/// into place. Until then an earlier file is unchanged. The temporary file is removed afterwards,
/// with or without `Commit`, and also when a signal ends the program. The new file gets the
/// permissions of the one that it replaces.
///
/// Standard output (`-`), an open file such as `/dev/fd/3`, a pipe, a terminal and a character
/// device are written directly.
///
///     StagedOutput output(path, force);
///     WriteSnapshot(output.stream(), fabscan, header);
///     std::cout << summary;
///     output.Commit();
///
/// Every member throws CommandError with path, cause and remedy, or ClosedPipe.
class StagedOutput {
 public:
  /// Creates the directory if missing; removes it again without a commit. Refuses an existing file
  /// unless `force`, a path that is a directory, and a directory that cannot be written.
  StagedOutput(const std::string& path, bool force)
      : StagedOutput(path, force, std::make_shared<NewDirectories>()) {}
  /// One for each path, for `CommitAll`.
  static std::vector<std::unique_ptr<StagedOutput>> Several(const std::vector<std::string>& paths,
                                                            bool force);
  ~StagedOutput() = default;
  StagedOutput(const StagedOutput&) = delete;
  StagedOutput& operator=(const StagedOutput&) = delete;

  /// Whether the output is a file; other outputs are written directly.
  bool IsStaged() const { return !is_stream_; }
  /// The temporary path until `Commit`, for a writer that opens the file itself.
  const std::string& StagedPath() const { return staged_.path(); }
  /// The path as specified.
  const std::string& path() const { return path_; }

  /// The file, opened for writing on the first call, or the stream.
  std::ostream& stream();

  /// Ends writing, as `Commit` does too. Call it before reporting what was written.
  void Finish();
  /// Finishes, synchronises the file to disk, flushes standard output, and moves the file into
  /// place. Print results before this call: if printing fails, the earlier file is kept. Prepare
  /// what follows it: a command that fails afterwards has replaced the earlier file. Without
  /// `force`, a file that was created in the meantime is kept, and this is an error.
  void Commit();
  /// Commits all outputs, after all are on disk. If one cannot be moved, the ones before it are in
  /// place, and the message names them.
  static void CommitAll(const std::vector<std::unique_ptr<StagedOutput>>& outputs);

 private:
  StagedOutput(const std::string& path, bool force, std::shared_ptr<NewDirectories> directories);

  bool OpenStream();
  void RefuseTarget() const;
  void PrepareMove();
  int MoveIntoPlace();
  std::string MoveErrorText(int error_number) const;

  std::string path_;
  std::string target_;  // `path_`, with a symbolic link followed
  bool force_;
  bool is_stream_ = false;
  std::shared_ptr<NewDirectories> directories_;  // shared by the outputs of Several
  TemporaryFile staged_;
  std::unique_ptr<OutputFile> file_;  // none for standard output
};

}  // namespace fabscan

#endif
