#include "cli/terminal/progress.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace fabscan {
namespace {

TEST(ProgressTextTest, HasTotalPaceAndEstimate) {
  EXPECT_EQ(ProgressText("nodes verified", 30, 120, Unit::kItems, 10),
            "nodes verified: 30 of 120, 3.0/s, about 30 s left");
  EXPECT_EQ(ProgressText("nodes generated", 2000, 42000, Unit::kItems, 1),
            "nodes generated: 2000 of 42000, 2000/s, about 20 s left");
  EXPECT_EQ(ProgressText("reading f", 50'000'000, 1'200'000'000, Unit::kBytes, 2),
            "reading f: 0.1 of 1.2 GB, 25.0 MB/s, about 46 s left");
}

TEST(ProgressTextTest, JudgesNoPaceFromAMoment) {
  EXPECT_EQ(ProgressText("nodes", 1, 10, Unit::kItems, 0.1), "nodes: 1 of 10");
  EXPECT_EQ(ProgressText("nodes", 0, 10, Unit::kItems, 0.7), "nodes: 0 of 10");
  EXPECT_EQ(ProgressText("nodes", 0, 10, Unit::kItems, 7), "nodes: 0 of 10, 7 s");
}

TEST(ProgressTextTest, LeavesAwayWhatIsNotKnown) {
  EXPECT_EQ(ProgressText("reading standard input", 1500, 0, Unit::kBytes, 3),
            "reading standard input: 1.5 kB, 0.5 kB/s");
  EXPECT_EQ(ProgressText("nodes", 10, 10, Unit::kItems, 5), "nodes: 10 of 10, 2.0/s");
  EXPECT_EQ(ProgressText("scanning", 0, 0, Unit::kItems, 12), "scanning, 12 s");
}

TEST(ProgressTextTest, LongTimesReadWell) {
  EXPECT_EQ(ProgressText("nodes", 1, 31, Unit::kItems, 20),
            "nodes: 1 of 31, 0.1/s, about 10 min left");
  EXPECT_EQ(ProgressText("nodes", 1, 1001, Unit::kItems, 18),
            "nodes: 1 of 1001, 0.1/s, about 5.0 h left");
}

TEST(ProgressTextTest, NamesCannotMoveTheCursor) {
  EXPECT_EQ(ProgressText("reading a\x1b[2J", 0, 0, Unit::kItems, 1), "reading a\\x1b[2J, 1 s");
}

/// Redirects standard error to a terminal while this object exists.
class OnTerminal {
 public:
  OnTerminal()
      : ours_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)), before_(::dup(STDERR_FILENO)) {
    if (::grantpt(ours_) != 0 || ::unlockpt(ours_) != 0) throw std::runtime_error("no terminal");
    const int its = ::open(::ptsname(ours_), O_RDWR | O_NOCTTY);
    ::dup2(its, STDERR_FILENO);
    ::close(its);
    ::setenv("TERM", "xterm", 1);
  }
  ~OnTerminal() {
    ::dup2(before_, STDERR_FILENO);
    ::close(before_);
    ::close(ours_);
  }
  OnTerminal(const OnTerminal&) = delete;
  OnTerminal& operator=(const OnTerminal&) = delete;

  std::string Written() const {
    std::string written;
    char part[4096];
    for (ssize_t size; (size = ::read(ours_, part, sizeof part)) > 0;) {
      written.append(part, static_cast<std::size_t>(size));
    }
    return written;
  }

 private:
  int ours_;
  int before_;
};

TEST(ProgressTest, WatchesWhatCannotTellByItself) {
  const OnTerminal terminal;
  std::atomic<std::size_t> done{0};
  Progress progress;
  progress.Watch(
      "nodes generated", 40, [&done] { return done.load(); },
      [&done] {
        for (; done < 40; ++done) std::this_thread::sleep_for(std::chrono::milliseconds(50));
      });
  progress.Finish();
  const std::string written = terminal.Written();
  EXPECT_NE(written.find("\r\x1b[Knodes generated: 2"), std::string::npos) << written;
  EXPECT_NE(written.find(" of 40, "), std::string::npos) << written;
  EXPECT_NE(written.find("/s, about 1 s left"), std::string::npos) << written;
  EXPECT_EQ(written.substr(written.size() - 4), "\r\x1b[K");
}

TEST(ProgressTest, AWatchedTaskMayFail) {
  const OnTerminal terminal;
  Progress progress;
  EXPECT_THROW(progress.Watch("putting it on disk", [] { throw std::runtime_error("full"); }),
               std::runtime_error);
}

}  // namespace
}  // namespace fabscan
