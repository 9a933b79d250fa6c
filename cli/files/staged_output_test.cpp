#include "cli/files/staged_output.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/output/closed_pipe.h"
#include "cli/terminal/termination.h"

namespace fabscan {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class StagedOutputTest : public testing::Test {
 protected:
  ~StagedOutputTest() override { fs::remove_all(folder_); }

  void Put(const std::string& name, const std::string& content) const {
    std::ofstream(folder_ / name) << content;
  }
  std::string Content(const std::string& name) const {
    std::ifstream file(folder_ / name);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::size_t EntryCount() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }
  /// The message if creating, writing or committing fails; otherwise empty.
  static std::string Error(const std::string& path, bool force) {
    try {
      StagedOutput output(path, force);
      output.stream() << "new\n";
      output.Commit();
    } catch (const CommandError& error) {
      EXPECT_EQ(error.status(), kFailed);
      return error.what();
    }
    return "";
  }
  static fs::path MakeFolder() {
    std::string name = testing::TempDir() + "staged-XXXXXX";
    return ::mkdtemp(name.data());
  }

  const fs::path folder_ = MakeFolder();
  const std::string path_ = folder_ / "out";
};

TEST_F(StagedOutputTest, TheFileAppearsWithCommit) {
  {
    StagedOutput output(path_, false);
    EXPECT_EQ(fs::path(output.StagedPath()).parent_path(), folder_);
    EXPECT_EQ(fs::path(output.StagedPath()).filename().string().rfind(".fabscan-", 0), 0U);
    output.stream() << "new\n";
    EXPECT_FALSE(fs::exists(path_));
    output.Commit();
    EXPECT_EQ(Content("out"), "new\n");
    EXPECT_EQ(EntryCount(), 1U);
  }
  EXPECT_EQ(EntryCount(), 1U);
}

TEST_F(StagedOutputTest, WithoutCommitNothingIsLeft) {
  Put("out", "old\n");
  {
    StagedOutput output(path_, true);
    output.stream() << "new\n" << std::flush;
  }
  EXPECT_EQ(Content("out"), "old\n");
  EXPECT_EQ(EntryCount(), 1U);
}

TEST_F(StagedOutputTest, AnotherWriterMayMakeTheFile) {
  StagedOutput output(path_, false);
  std::ofstream(output.StagedPath()) << "by another\n";
  output.Commit();
  EXPECT_EQ(Content("out"), "by another\n");
}

TEST_F(StagedOutputTest, KeepsAFileThatExistsUnlessForced) {
  Put("out", "old\n");
  EXPECT_EQ(Error(path_, false), path_ + ": exists; --force replaces it");
  EXPECT_EQ(Content("out"), "old\n");
  EXPECT_EQ(Error(path_, true), "");
  EXPECT_EQ(Content("out"), "new\n");
  EXPECT_EQ(EntryCount(), 1U);
}

TEST_F(StagedOutputTest, KeepsAFileThatCameInTheMeantime) {
  StagedOutput output(path_, false);
  output.stream() << "new\n";
  Put("out", "theirs\n");
  try {
    output.Commit();
    FAIL();
  } catch (const CommandError& error) {
    EXPECT_EQ(error.what(), path_ + ": cannot create: File exists; --force replaces it");
  }
  EXPECT_EQ(Content("out"), "theirs\n");
}

TEST_F(StagedOutputTest, FollowsALinkToTheFile) {
  Put("real", "old\n");
  fs::create_symlink("real", folder_ / "out");
  EXPECT_EQ(Error(path_, true), "");
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_EQ(Content("real"), "new\n");
}

TEST_F(StagedOutputTest, AnotherWriterKnowsTheLinkAlone) {
  Put("real", "old\n");
  fs::create_symlink("real", folder_ / "out");
  {
    StagedOutput output(path_, true);
    std::ofstream(output.StagedPath()) << "by another\n";
    output.Commit();
  }
  EXPECT_EQ(Content("real"), "by another\n");
  EXPECT_EQ(EntryCount(), 2U);
}

TEST_F(StagedOutputTest, TheUmaskDecidesThePermissions) {
  const mode_t before = ::umask(027);
  EXPECT_EQ(Error(path_, false), "");
  ::umask(before);
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms(0640));
}

TEST_F(StagedOutputTest, TakesNoFileOfAnotherRun) {
  const std::string name = ".fabscan-" + std::to_string(::getpid()) + '-';
  unsigned next = 0;
  {
    StagedOutput output(path_, false);
    const std::string staged = fs::path(output.StagedPath()).filename();
    next = static_cast<unsigned>(std::stoul(staged.substr(name.size()))) + 1;
  }
  const std::string taken = name + std::to_string(next);
  Put(taken, "theirs\n");
  EXPECT_EQ(Error(path_, false), "");
  EXPECT_EQ(Content(taken), "theirs\n");
}

TEST_F(StagedOutputTest, RefusesALinkThatLeadsNowhere) {
  fs::create_symlink("missing", folder_ / "out");
  EXPECT_EQ(Error(path_, true), path_ +
                                    ": cannot follow the link: No such file or directory; write "
                                    "elsewhere");
  EXPECT_EQ(EntryCount(), 1U);
}

TEST_F(StagedOutputTest, RefusesDirectories) {
  fs::create_directory(path_);
  for (const std::string& path : {path_, path_ + "/", (folder_ / "..").string()}) {
    EXPECT_EQ(Error(path, true), path + ": is a directory; specify a file in it");
  }
}

TEST_F(StagedOutputTest, CreatesTheDirectory) {
  {
    StagedOutput output(folder_ / "new/deep/out", false);
    EXPECT_TRUE(fs::exists(folder_ / "new/deep"));
  }
  EXPECT_EQ(EntryCount(), 0U) << "without a commit it goes again";
  EXPECT_EQ(Error(folder_ / "new/deep/out", false), "");
  EXPECT_EQ(Content("new/deep/out"), "new\n");
}

TEST_F(StagedOutputTest, RefusesAFileInPlaceOfTheDirectory) {
  Put("file", "");
  EXPECT_EQ(Error(folder_ / "file/out", false),
            (folder_ / "file").string() + ": is not a directory; use another path");
}

TEST_F(StagedOutputTest, KeepsThePermissionsOfAFileThatItReplaces) {
  for (const auto mode : {fs::perms::owner_read | fs::perms::owner_write, fs::perms(0664)}) {
    Put("out", "old\n");
    fs::permissions(path_, mode);
    EXPECT_EQ(Error(path_, true), "");
    EXPECT_EQ(fs::status(path_).permissions(), mode);
    EXPECT_EQ(Content("out"), "new\n");
  }
}

TEST_F(StagedOutputTest, WritesToAPipeDirectly) {
  ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
  const int reader = ::open(path_.c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(Error(path_, false), "");
  char read[8] = {};
  EXPECT_EQ(::read(reader, read, sizeof read), 4);
  EXPECT_STREQ(read, "new\n");
  EXPECT_EQ(::read(reader, read, sizeof read), 0) << "closed";
  ::close(reader);
  EXPECT_EQ(EntryCount(), 1U);
}

TEST_F(StagedOutputTest, WritesToAnOpenFileDirectly) {
  Put("out", "");
  const int file = ::open(path_.c_str(), O_WRONLY);
  const std::string name = "/dev/fd/" + std::to_string(file);
  EXPECT_EQ(Error(name, false), "");
  EXPECT_EQ(Error(name, false), "");
  ::close(file);
  EXPECT_EQ(Content("out"), "new\nnew\n");
  EXPECT_EQ(Error(name, false), name + ": cannot write: Bad file descriptor; write elsewhere");
}

TEST_F(StagedOutputTest, NamesTheCauseOfAFailedWrite) {
  EXPECT_EQ(Error("/dev/full", false),
            "/dev/full: cannot write: No space left on device; free some space, or write "
            "elsewhere");
  EXPECT_EQ(Error("/dev/null", false), "");
}

TEST_F(StagedOutputTest, AClosedPipeIsNoErrorToReport) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  ::close(ends[0]);
  const auto before = std::signal(SIGPIPE, SIG_IGN);  // not set by the command
  StagedOutput output("/dev/fd/" + std::to_string(ends[1]), false);
  ::close(ends[1]);
  output.stream() << "new\n";
  EXPECT_THROW(output.Commit(), ClosedPipe);
  std::signal(SIGPIPE, before);
}

TEST_F(StagedOutputTest, TellsWhenTheFolderVanishes) {
  StagedOutput output(path_, false);
  output.stream() << "new\n";
  fs::remove_all(folder_);
  try {
    output.Commit();
    FAIL();
  } catch (const CommandError& error) {
    EXPECT_THAT(error.what(), HasSubstr("cannot write: No such file or directory"));
  }
}

TEST_F(StagedOutputTest, ASignalRemovesTheFileAndEndsTheProgram) {
  for (const int signal_number : {SIGINT, SIGTERM, SIGHUP}) {
    Put("out", "old\n");
    const pid_t child = ::fork();
    if (child == 0) {
      WatchTerminationSignals();
      StagedOutput output(path_, true);
      output.stream() << "new\n" << std::flush;
      ::kill(::getpid(), signal_number);
      ::pause();
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), signal_number);
    EXPECT_EQ(Content("out"), "old\n");
    EXPECT_EQ(EntryCount(), 1U);
  }
}

TEST_F(StagedOutputTest, ALibraryThatEndsTheProgramLeavesNoFile) {
  Put("out", "old\n");
  const pid_t child = ::fork();
  if (child == 0) {
    WatchTerminationSignals();
    StagedOutput output(path_, true);
    output.stream() << "new\n" << std::flush;
    std::exit(3);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 3);
  EXPECT_EQ(Content("out"), "old\n");
  EXPECT_EQ(EntryCount(), 1U);
}

class SeveralOutputs : public StagedOutputTest {
 protected:
  /// `count` outputs named 0 and on, each with some text.
  std::vector<std::unique_ptr<StagedOutput>> Write(int count, bool force) const {
    std::vector<std::string> paths;
    for (int i = 0; i < count; ++i) paths.push_back(folder_ / std::to_string(i));
    auto outputs = StagedOutput::Several(paths, force);
    for (const auto& output : outputs) output->stream() << "new\n";
    return outputs;
  }
};

TEST_F(SeveralOutputs, AppearWithTheCommit) {
  Put("1", "old\n");
  StagedOutput::CommitAll(Write(3, true));
  for (const char* name : {"0", "1", "2"}) EXPECT_EQ(Content(name), "new\n");
  EXPECT_EQ(EntryCount(), 3U);
}

TEST_F(SeveralOutputs, NeedNotGoToOneFolder) {
  fs::create_directory(folder_ / "sub");
  StagedOutput::CommitAll([this] {
    auto outputs = StagedOutput::Several(
        {folder_ / "0", folder_ / "sub/0", folder_ / "sub/1", folder_ / "1"}, false);
    for (const auto& output : outputs) output->stream() << "new\n";
    return outputs;
  }());
  for (const char* name : {"0", "1", "sub/0", "sub/1"}) EXPECT_EQ(Content(name), "new\n");
  EXPECT_EQ(EntryCount(), 3U);
}

TEST_F(SeveralOutputs, NoneIsMovedIfOneHasBecomeADirectory) {
  Put("0", "old\n");
  {
    const auto outputs = Write(4, true);
    fs::create_directory(folder_ / "2");  // meanwhile
    try {
      StagedOutput::CommitAll(outputs);
      FAIL();
    } catch (const CommandError& error) {
      EXPECT_EQ(error.what(), (folder_ / "2").string() + ": is a directory; specify a file in it");
    }
  }
  EXPECT_EQ(Content("0"), "old\n");
  EXPECT_TRUE(fs::is_empty(folder_ / "2"));
  EXPECT_EQ(EntryCount(), 2U);
}

TEST_F(SeveralOutputs, NameThoseInPlaceIfOneCannotBeMoved) {
  {
    const auto outputs = Write(4, false);
    Put("2", "meanwhile\n");
    try {
      StagedOutput::CommitAll(outputs);
      FAIL();
    } catch (const CommandError& error) {
      EXPECT_EQ(error.what(), (folder_ / "2").string() +
                                  ": cannot create: File exists; --force replaces it; 2 of 4 files "
                                  "are in place: " +
                                  (folder_ / "0").string() + ", " + (folder_ / "1").string());
    }
  }
  EXPECT_EQ(Content("0"), "new\n");
  EXPECT_EQ(Content("1"), "new\n");
  EXPECT_EQ(Content("2"), "meanwhile\n");
  EXPECT_EQ(EntryCount(), 3U);
}

TEST_F(SeveralOutputs, ASignalRemovesAnyNumberOfFiles) {
  constexpr int kMany = 300;
  const pid_t child = ::fork();
  if (child == 0) {
    WatchTerminationSignals();
    auto outputs = Write(kMany, false);
    outputs.erase(outputs.begin() + 5, outputs.begin() + 10);
    ::kill(::getpid(), SIGTERM);
    ::pause();
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(EntryCount(), 0U);
}

TEST_F(StagedOutputTest, AnIgnoredSignalStaysIgnored) {
  const pid_t child = ::fork();
  if (child == 0) {
    std::signal(SIGHUP, SIG_IGN);
    WatchTerminationSignals();
    StagedOutput output(path_, false);
    output.stream() << "new\n";
    ::kill(::getpid(), SIGHUP);
    output.Commit();
    ::_exit(0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(Content("out"), "new\n");
}

}  // namespace
}  // namespace fabscan
