#include <gmock/gmock.h>
#include <infiniband/fabscan/fabscan.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace {

using testing::HasSubstr;

constexpr auto kFlags = OutputControl::OutputControl_Flag_CustomFileName;

class FacadeTest : public testing::Test {
 protected:
  FacadeTest() { fabscan_.setOutputFolder(folder_); }
  ~FacadeTest() override {
    ::chmod(folder_.c_str(), S_IRWXU);
    if (std::system(("rm -rf '" + folder_ + "'").c_str()) != 0) ADD_FAILURE() << folder_;
  }

  int Open(const std::string& name, bool append = false, const char* comment = nullptr) {
    return fabscan_.OpenFile("test file", {name, kFlags}, out_, append, comment);
  }
  std::string Content(const std::string& name) const {
    std::ifstream file(folder_ + '/' + name);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static std::string MakeFolder() {
    std::string name = testing::TempDir() + "facade-XXXXXX";
    return ::mkdtemp(name.data());
  }

  std::string folder_ = MakeFolder();
  Fabscan fabscan_;
  std::ofstream out_;
};

TEST_F(FacadeTest, WritesTheFileToTheOutputDirectory) {
  ASSERT_EQ(Open("a.cpp"), 0);
  EXPECT_EQ(fabscan_.outputPath(), folder_ + "/a.cpp");
  out_ << "text\n";
  EXPECT_EQ(fabscan_.CloseFile(out_, "//"), 0);
  EXPECT_EQ(Content("a.cpp"), "text\n");
  EXPECT_EQ(fabscan_.lastError(), "");
}

TEST_F(FacadeTest, WritesToTheOutputFileWhateverTheName) {
  fabscan_.setOutputFile(folder_ + "/other");
  ASSERT_EQ(Open("a.cpp"), 0);
  EXPECT_EQ(fabscan_.outputPath(), folder_ + "/other");
  out_ << "text\n";
  EXPECT_EQ(fabscan_.CloseFile(out_, "//"), 0);
  EXPECT_EQ(Content("other"), "text\n");
  fabscan_.setOutputFile("");
  ASSERT_EQ(Open("a.cpp"), 0);
  EXPECT_EQ(fabscan_.outputPath(), folder_ + "/a.cpp");
}

TEST_F(FacadeTest, TruncatesAnExistingFileUnlessAppending) {
  for (const bool append : {false, false, true}) {
    ASSERT_EQ(Open("a.cpp", append, "//"), 0);
    out_ << "text\n";
    ASSERT_EQ(fabscan_.CloseFile(out_, "//"), 0);
  }
  EXPECT_EQ(Content("a.cpp"), "// test file\ntext\n// test file\ntext\n");
}

TEST_F(FacadeTest, ReportsPathAndCauseIfTheDirectoryIsMissing) {
  fabscan_.setOutputFolder(folder_ + "/missing");
  EXPECT_EQ(Open("a.cpp"), Fabscan::kFileFailed);
  EXPECT_FALSE(out_.is_open());
  EXPECT_EQ(fabscan_.lastError(),
            folder_ + "/missing/a.cpp: cannot open (test file): " + "No such file or directory");
}

TEST_F(FacadeTest, ReportsTheCauseIfTheFileCannotBeWritten) {
  ASSERT_EQ(::mkdir((folder_ + "/a.cpp").c_str(), S_IRWXU), 0);
  EXPECT_EQ(Open("a.cpp"), Fabscan::kFileFailed);
  EXPECT_THAT(fabscan_.lastError(), HasSubstr("Is a directory"));
}

TEST_F(FacadeTest, ReportsTheCauseIfTheDirectoryCannotBeWritten) {
  ::chmod(folder_.c_str(), S_IRUSR | S_IXUSR);
  // Root can write everywhere, so temporarily become another user.
  constexpr uid_t kNobody = 65534;
  const bool root = ::geteuid() == 0;
  ASSERT_EQ(root ? ::seteuid(kNobody) : 0, 0);
  const int status = Open("a.cpp");
  ASSERT_EQ(root ? ::seteuid(0) : 0, 0);
  EXPECT_EQ(status, Fabscan::kFileFailed);
  EXPECT_THAT(fabscan_.lastError(), HasSubstr("Permission denied"));
}

TEST_F(FacadeTest, RefusesAPathOutsideTheDirectory) {
  for (const char* name : {"", "../a.cpp", "b/a.cpp"}) {
    EXPECT_EQ(Open(name), Fabscan::kFileFailed) << name;
    EXPECT_THAT(fabscan_.lastError(), HasSubstr("Invalid argument"));
    EXPECT_FALSE(out_.is_open());
  }
}

TEST_F(FacadeTest, ClosingReportsAFullDisk) {
  fabscan_.setOutputFolder("/dev");
  ASSERT_EQ(Open("full"), 0);
  out_ << "text\n";
  EXPECT_EQ(fabscan_.CloseFile(out_, "//"), Fabscan::kFileFailed);
  EXPECT_EQ(fabscan_.lastError(), "/dev/full: cannot write (test file): No space left on device");
  EXPECT_FALSE(out_.is_open());
}

TEST_F(FacadeTest, ClosingReportsAnEarlierFailedWrite) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  rlimit limited = before;
  limited.rlim_cur = 100'000;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
  ASSERT_EQ(Open("a.cpp"), 0);
  for (int i = 0; i < 50'000; ++i) out_ << "line " << i << '\n';
  const int status = fabscan_.CloseFile(out_, "//");
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(status, Fabscan::kFileFailed);
  EXPECT_THAT(fabscan_.lastError(), HasSubstr("a.cpp: cannot write (test file): File too large"));
}

TEST_F(FacadeTest, ALaterSuccessClearsTheMessage) {
  ASSERT_NE(Open(""), 0);
  ASSERT_EQ(Open("a.cpp"), 0);
  EXPECT_EQ(fabscan_.lastError(), "");
}

}  // namespace
