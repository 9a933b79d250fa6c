// What every emitter does with the stream it is given, whatever its state.

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <locale>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <typeinfo>

#include "testing/every_emitter.h"
#include "testing/grouped_digits.h"

namespace fabscan {
namespace {

using generator::GeneratedFunction;
using generator::kGeneratedFunctions;

class StreamTest : public ::testing::TestWithParam<GeneratedFunction> {
 protected:
  void Emit(std::ostream& out) {
    const SimInfoDumpCPP dump(fabric.fabscan);
    (dump.*GetParam().emitter)(out, fabric.NodeOf(GetParam()));
  }
  std::string Plain() { return fabric.BodyOf(GetParam()); }

  FullFabric fabric;
};

INSTANTIATE_TEST_SUITE_P(EveryEmitter, StreamTest, ::testing::ValuesIn(kGeneratedFunctions),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(StreamTest, HasABlockToWrite) {
  const std::string text = Plain();
  EXPECT_NE(text.find("mad_buffer"), std::string::npos) << text;
  EXPECT_EQ(text.find("#error"), std::string::npos) << text;
  EXPECT_NE(text.back(), '\n');
}

TEST_P(StreamTest, NumbersDoNotDependOnTheLocale) {
  const std::string plain = Plain();
  std::ostringstream out;
  out.imbue(GroupedDigits());
  Emit(out);
  EXPECT_EQ(out.str(), plain);

  const WithGroupedDigits everywhere;
  EXPECT_EQ(Plain(), plain);
}

TEST_P(StreamTest, FlagsLeftOnTheStreamHaveNoSayAndStay) {
  const std::string plain = Plain();
  std::ostringstream out;
  out << std::hex << std::showbase << std::uppercase << std::left << std::showpos << std::boolalpha
      << std::setfill('*');
  out.width(30);
  out.precision(3);
  const std::ios::fmtflags flags = out.flags();
  Emit(out);
  EXPECT_EQ(out.str(), plain);
  EXPECT_EQ(out.flags(), flags);
  EXPECT_EQ(out.fill(), '*');
  EXPECT_EQ(out.width(), 30);
  EXPECT_EQ(out.precision(), 3);
}

TEST_P(StreamTest, ADecimalStreamComesBackDecimal) {
  std::ostringstream out;
  Emit(out);
  EXPECT_EQ(out.flags(), std::ios::dec | std::ios::skipws);
  EXPECT_EQ(out.fill(), ' ');
  EXPECT_EQ(out.width(), 0);
  out.str("");
  out << 255;
  EXPECT_EQ(out.str(), "255");
}

TEST_P(StreamTest, AnUnbufferedStreamGetsTheSame) {
  std::ostringstream out;
  out << std::unitbuf;
  Emit(out);
  EXPECT_EQ(out.str(), Plain());
  EXPECT_NE(out.flags() & std::ios::unitbuf, 0);
}

/// Takes so many bytes, then throws.
class FullBuffer : public std::stringbuf {
 public:
  explicit FullBuffer(std::size_t room) : room_(static_cast<std::streamsize>(room)) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    const std::streamsize part = std::min(size, room_);
    std::stringbuf::xsputn(text, part);
    room_ -= part;
    if (part < size) throw std::length_error("full");
    return size;
  }

 private:
  std::streamsize room_;
};

TEST_P(StreamTest, ExceptionsOfTheStreamPassThrough) {
  const std::string plain = Plain();
  for (const std::size_t room :
       {std::size_t{0}, std::size_t{1}, plain.size() / 2, plain.size() - 1}) {
    FullBuffer buffer(room);
    std::ostream out(&buffer);
    out.exceptions(std::ios::badbit);
    EXPECT_THROW(Emit(out), std::length_error) << room;
    EXPECT_EQ(buffer.str(), plain.substr(0, room));
  }
}

TEST_P(StreamTest, AStreamThatFailsQuietlyIsLeftFailed) {
  FullBuffer buffer(20);
  std::ostream out(&buffer);
  Emit(out);
  EXPECT_TRUE(out.bad());
  EXPECT_EQ(buffer.str(), Plain().substr(0, 20));
}

TEST_P(StreamTest, AStreamThatHasFailedGetsNothing) {
  std::ostringstream out;
  out.setstate(std::ios::failbit);
  Emit(out);
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(out.rdstate(), std::ios::failbit);
}

/// A stream that was never given its facets: the library's constructor for iostream halves.
class FacetlessStream : public std::ostream {
 public:
  FacetlessStream(std::streambuf* buffer, std::iostream& other) : std::ostream(other) {
    rdbuf(buffer);
  }
};

TEST_P(StreamTest, AStreamWithoutCharacterTypesThrowsWhereALineEnds) {
  const std::string plain = Plain();
  std::iostream other(nullptr);
  std::stringbuf buffer;
  FacetlessStream out(&buffer, other);
  EXPECT_THROW(Emit(out), std::bad_cast);
  EXPECT_EQ(buffer.str(), plain.substr(0, plain.find('\n')));
}

TEST(Stream, WithoutCharacterTypesThrowsWhereALineOfTheFrameEnds) {
  FabricBuilder fabric;
  const SimInfoDumpCPP dump(fabric.fabscan);
  std::iostream other(nullptr);
  std::stringbuf buffer;
  FacetlessStream out(&buffer, other);
  EXPECT_THROW(dump.PrintCopyright(out), std::bad_cast);
  EXPECT_EQ(buffer.str(), "/*");
  buffer.str("");
  EXPECT_THROW(dump.PrintIncludes(out, "x"), std::bad_cast);
  EXPECT_EQ(buffer.str(), "#include \"x.h\"");
  buffer.str("");
  dump.GenerateRouterInfo(out, fabric.Switch("S1"));  // one line, which the caller ends
  EXPECT_EQ(buffer.str(), "// The node=S1 is not a router");
}

/// Notes how much was written whenever it is flushed.
class NotingBuffer : public std::stringbuf {
 public:
  std::string flushed;

 protected:
  int sync() override {
    flushed += std::to_string(str().size()) + ' ';
    return 0;
  }
};

TEST_P(StreamTest, IsFlushedOnlyBeforeEachRecordOfTheReductionPortInfo) {
  NotingBuffer buffer;
  std::ostream out(&buffer);
  Emit(out);
  std::string expected;
  if (GetParam().name == "setWrenReductionPortInfo") {
    const std::string text = buffer.str();
    const std::string record = "            mad_buffer.capability_mask";
    for (std::size_t at = text.find(record); at != std::string::npos;
         at = text.find(record, at + 1)) {
      expected += std::to_string(at) + ' ';
    }
    EXPECT_EQ(std::count(expected.begin(), expected.end(), ' '), 2);
  }
  EXPECT_EQ(buffer.flushed, expected);
}

}  // namespace
}  // namespace fabscan
