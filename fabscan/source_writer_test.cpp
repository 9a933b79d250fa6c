#include "source_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <locale>
#include <sstream>
#include <streambuf>
#include <string>

#include "testing/written.h"

namespace fabscan::generator {
namespace {

constexpr u_int64_t kMost = std::numeric_limits<u_int64_t>::max();

TEST(SourceWriter, WritesHexWithoutLeadingZeros) {
  struct Row {
    u_int64_t value;
    const char* text;
  };
  const Row rows[] = {{0, "0"},
                      {1, "1"},
                      {9, "9"},
                      {10, "a"},
                      {15, "f"},
                      {16, "10"},
                      {0x2c9, "2c9"},
                      {0xffff, "ffff"},
                      {0x80000000, "80000000"},
                      {0xffffffff, "ffffffff"},
                      {0x100000000, "100000000"},
                      {0x0123456789abcdef, "123456789abcdef"},
                      {0x8000000000000000, "8000000000000000"},
                      {0xfedcba9876543210, "fedcba9876543210"},
                      {kMost, "ffffffffffffffff"}};
  for (const Row& row : rows) {
    EXPECT_EQ(Written([&](SourceWriter& writer) { writer.Hex(row.value); }), row.text);
  }
}

TEST(SourceWriter, WritesEveryDigitInEveryPlace) {
  for (unsigned place = 0; place < 16; ++place) {
    for (unsigned digit = 0; digit < 16; ++digit) {
      std::string all(16, '0');
      all[15 - place] = "0123456789abcdef"[digit];
      const u_int64_t value = u_int64_t{digit} << (4 * place);
      EXPECT_EQ(Written([&](SourceWriter& writer) { writer.Append(GuidValue{value}, 0); }), all);
      const std::string bare = digit == 0 ? "0" : all.substr(15 - place);
      EXPECT_EQ(Written([&](SourceWriter& writer) { writer.Hex(value); }), bare);
    }
  }
}

TEST(SourceWriter, WritesDecimals) {
  EXPECT_EQ(Written([](SourceWriter& writer) {
              writer.Decimal(0).Text(" ").Decimal(255).Text(" ").Decimal(4294967295U);
            }),
            "0 255 4294967295");
  EXPECT_EQ(Written([](SourceWriter& writer) {
              writer.SignedDecimal(-1).Text(" ").SignedDecimal(0).Text(" ");
              writer.SignedDecimal(std::numeric_limits<int>::min());
            }),
            "-1 0 -2147483648");
}

TEST(SourceWriter, IndentsByAnyNumberOfBlanks) {
  constexpr int kCapacity = static_cast<int>(SourceWriter::kCapacity);
  for (const int blanks :
       {0, 1, 4, 12, 16, 17, kCapacity - 1, kCapacity, kCapacity + 1, 5 * kCapacity + 3}) {
    EXPECT_EQ(Written([&](SourceWriter& writer) { writer.Text("a").Indent(blanks).Text("b"); }),
              'a' + std::string(static_cast<std::size_t>(blanks), ' ') + 'b')
        << blanks;
    EXPECT_EQ(Written([&](SourceWriter& writer) { writer.Line(blanks).Text("b"); }),
              '\n' + std::string(static_cast<std::size_t>(blanks), ' ') + 'b')
        << blanks;
  }
}

TEST(SourceWriter, IndentsByNothingWhereTheNumberIsNegative) {
  for (const int blanks : {-1, -4, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(Written([&](SourceWriter& writer) { writer.Text("a").Indent(blanks).Text("b"); }),
              "ab");
    EXPECT_EQ(Written([&](SourceWriter& writer) { writer.Text("a").Line(blanks).Text("b"); }),
              "a\nb");
  }
}

/// A value with a bound, which uses everything that both kinds of writers have.
struct Everything {
  static constexpr std::size_t kMostBytes = 300;
  static constexpr int kDepth = 16;

  template <class Writer>
  void Write(Writer& to, int /*indent*/) const {
    to.Text("text").Text({}).Line(0).Indent(1).Hex(0).Line(16).Hex(kMost).Text(" ");
    to.Decimal(0).Text(" ").Decimal(9).Text(" ").Decimal(10).Text(" ").Decimal(99).Text(" ");
    to.Decimal(100).Text(" ").Decimal(4294967295U).EndLine();
  }
};

// The functions that write unchecked write what the checked ones do.
TEST(SourceWriter, WritesTheSameCheckedAndUnchecked) {
  const std::string expected =
      "text\n 0\n" + std::string(16, ' ') + "ffffffffffffffff 0 9 10 99 100 4294967295\n";
  const Everything everything;
  EXPECT_EQ(Written([&](SourceWriter& writer) { everything.Write(writer, 0); }), expected);
  EXPECT_EQ(Written([&](SourceWriter& writer) { writer.Append(everything, 0); }), expected);
}

/// Keeps the length of the longest chunk that it gets.
class Chunks : public std::stringbuf {
 public:
  std::streamsize longest = 0;

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    longest = std::max(longest, size);
    return std::stringbuf::xsputn(text, size);
  }
};

/// A writer, and bytes behind its buffer that are not its own.
struct Guarded {
  explicit Guarded(std::ostream& out) : writer(out) { guard.fill('#'); }
  SourceWriter writer;
  std::array<char, 64> guard;
};

/// What `write` writes stays within the writer's buffer, however little of it is left.
template <class Write>
void ExpectWithinBuffer(Write write) {
  const std::string expected = Written([&](SourceWriter& writer) { write(writer); });
  for (std::size_t left = 0; left <= 400; ++left) {
    const std::string before(SourceWriter::kCapacity - left, 'a');
    Chunks chunks;
    std::ostream out(&chunks);
    {
      Guarded guarded(out);
      guarded.writer.Text(before);
      write(guarded.writer);
      EXPECT_EQ(std::count(guarded.guard.begin(), guarded.guard.end(), '#'), 64) << left;
    }
    EXPECT_LE(chunks.longest, std::streamsize{SourceWriter::kCapacity}) << left;
    EXPECT_EQ(chunks.str(), before + expected) << left;
  }
}

TEST(SourceWriter, StaysWithinItsBuffer) {
  ExpectWithinBuffer([](SourceWriter& to) { to.Text("text"); });
  ExpectWithinBuffer([](SourceWriter& to) { to.Indent(1); });
  ExpectWithinBuffer([](SourceWriter& to) { to.Indent(16); });
  ExpectWithinBuffer([](SourceWriter& to) { to.Hex(0); });
  ExpectWithinBuffer([](SourceWriter& to) { to.Hex(kMost); });
  ExpectWithinBuffer([](SourceWriter& to) { to.Decimal(4294967295U); });
  ExpectWithinBuffer([](SourceWriter& to) { to.EndLine(); });
  ExpectWithinBuffer([](SourceWriter& to) { to.Line(4); });
  ExpectWithinBuffer([](SourceWriter& to) { to.Append(Everything(), 0); });
}

TEST(SourceWriter, TakesTextsOfAnyLengthAtAnyPlace) {
  constexpr std::size_t kCapacity = SourceWriter::kCapacity;
  for (const std::size_t before : {std::size_t{0}, std::size_t{1}, kCapacity - 1, kCapacity}) {
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{1}, kCapacity - 1, kCapacity, kCapacity + 1, 3 * kCapacity}) {
      const std::string first(before, 'a');
      const std::string second(length, 'b');
      EXPECT_EQ(Written([&](SourceWriter& writer) {
                  writer.Text(first).Text(second).Hex(kMost).Text("c").EndLine().Indent(2);
                }),
                first + second + "ffffffffffffffffc\n  ");
    }
  }
}

TEST(SourceWriter, KeepsZeroBytesInATextAndTakesAnEmptyOne) {
  EXPECT_EQ(Written([](SourceWriter& writer) {
              writer.Text({}).Text({"a\0b", 3});
            }),
            std::string("a\0b", 3));
}

TEST(SourceWriter, WritesManyNumbersPastItsCapacity) {
  std::string expected;
  const std::string written = Written([&](SourceWriter& writer) {
    for (unsigned i = 0; i < 10'000; ++i) {
      writer.Decimal(i).EndLine();
      expected += std::to_string(i) + '\n';
    }
  });
  EXPECT_EQ(written, expected);
}

TEST(SourceWriter, FlushesInOrder) {
  std::ostringstream out;
  SourceWriter writer(out);
  writer.Text("a");
  EXPECT_EQ(out.str(), "");
  writer.EndLine().Flush();
  EXPECT_EQ(out.str(), "a\n");
  writer.Text("b");
  EXPECT_EQ(out.str(), "a\n");
}

TEST(SourceWriter, EndsLinesWithTheStreamsOwnLineEnd) {
  struct Marked : std::ctype<char> {
    char do_widen(char c) const override { return c == '\n' ? '|' : c; }
    const char* do_widen(const char* begin, const char* end, char* to) const override {
      for (; begin != end; ++begin) *to++ = do_widen(*begin);
      return end;
    }
  };
  std::ostringstream out;
  out.imbue(std::locale(std::locale::classic(), new Marked));
  {
    SourceWriter writer(out);
    writer.Text("a").EndLine().Line(1);
  }
  EXPECT_EQ(out.str(), "a|| ");
}

TEST(SourceWriter, KeepsWhatWasWrittenBeforeAnExceptionOfItsCaller) {
  std::ostringstream out;
  EXPECT_THROW(
      {
        SourceWriter writer(out);
        writer.Text("before").EndLine();
        throw 1;
      },
      int);
  EXPECT_EQ(out.str(), "before\n");
}

TEST(SourceWriter, TellsOfItsStreamAsUsualWhileAnotherExceptionIsOnItsWay) {
  struct : std::streambuf {
  } refusing;
  struct WritesInTheEnd {
    std::ostream& out;
    ~WritesInTheEnd() { SourceWriter(out).Text("a"); }
  };
  std::ostream out(&refusing);
  EXPECT_THROW(
      {
        const WritesInTheEnd last{out};
        throw 1;
      },
      int);
  EXPECT_TRUE(out.bad());
}

/// Fails the first time, and takes everything from then on.
class FailingOnce : public std::streambuf {
 public:
  std::string taken;

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    if (!failed_) {
      failed_ = true;
      return 0;
    }
    taken.append(text, static_cast<std::size_t>(size));
    return size;
  }

 private:
  bool failed_ = false;
};

TEST(SourceWriter, WritesNothingTwiceAfterItsStreamHasThrown) {
  FailingOnce buffer;
  std::ostream out(&buffer);
  out.exceptions(std::ios::badbit);
  EXPECT_THROW(SourceWriter(out).Text("a").Flush(), std::ios::failure);
  EXPECT_EQ(buffer.taken, "");
}

TEST(SourceWriter, WritesNothingTwiceAfterItsChunkedStreamHasThrown) {
  FailingOnce buffer;
  std::ostream file(&buffer);
  ChunkedBuffer chunks(file);
  std::ostream out(&chunks);
  out.exceptions(std::ios::badbit);
  EXPECT_THROW(SourceWriter(out).Text(std::string(2'000'000, 'a')), std::ios::failure);
  file.clear();
  EXPECT_TRUE(chunks.Flush());
  // What exceeded the chunk that was lost.
  EXPECT_EQ(buffer.taken, std::string(ChunkedBuffer::kSlack, 'a'));
}

TEST(SourceWriter, PassesOnWhatTheFileBehindAChunkedStreamThrows) {
  struct : std::streambuf {
    std::streamsize xsputn(const char* /*text*/, std::streamsize /*size*/) override { throw 7; }
  } throwing;
  std::ostream file(&throwing);
  file.exceptions(std::ios::badbit);
  ChunkedBuffer chunks(file);
  std::ostream out(&chunks);
  EXPECT_THROW(SourceWriter(out).Text(std::string(2'000'000, 'a')), int);
}

TEST(SourceWriter, LeavesAStreamAloneWhenItHasNothingToWrite) {
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  { const SourceWriter writer(out); }
  EXPECT_EQ(out.rdstate(), std::ios::badbit);
}

TEST(SourceWriter, PassesOnWhatItsStreamThrowsInTheEnd) {
  struct : std::streambuf {
  } refusing;
  std::ostream out(&refusing);
  const auto write = [&] { SourceWriter(out).Text("a"); };
  EXPECT_NO_THROW(write());
  EXPECT_TRUE(out.bad());
  out.clear();
  out.exceptions(std::ios::badbit);
  EXPECT_THROW(write(), std::ios::failure);
}

}  // namespace
}  // namespace fabscan::generator
