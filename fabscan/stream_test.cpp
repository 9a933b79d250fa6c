// What the emitters do with the stream they are given, whatever its state.

#include <gtest/gtest.h>

#include <iomanip>
#include <locale>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <typeinfo>

#include "testing/fabric_builder.h"

namespace fabscan {
namespace {

/// A switch whose every emitter writes numbers, of all widths.
class StreamTest : public ::testing::Test {
 protected:
  StreamTest() : node(fabric.Switch("S1", 12)) {
    fabric.Support(node, {0, 2, 9, 12, 13, 44, 55});
    fabric.fabscan.capability_module.put(node, true, {{0xffffffff, 0, 0, 0}});
    fabric.Put<SMP_NodeInfo>(node).VendorID = 0xffffffff;
    fabric.Put<CC_EnhancedCongestionInfo>(node) = {65, 66, 0x123456789abcdef0};
    fabric.Put<CC_CongestionSwitchGeneralSettings>(node).cap_total_buffer_size = 1234567;
    fabric.Put<IB_ClassPortInfo>(node).RedirectQKey = 12345678;
    auto& store = fabric.fabscan.fabric_extended_info;
    for (IBPort* port : node.Ports) {
      fabric.Put<SMP_PortInfo>(*port).CapMsk = 0x12345678;
      fabric.Put<SMP_TarnExtPortInfo>(*port).CapabilityMask = 43210;
      fabric.Put<WrenReductionPortInfo>(*port).capability_mask = 7654321;
      store.putMonitors(*port, 0);
      store.putMonitors(*port, 1);
      store.putCounters(*port, 7).dropped_pkt = 1234567890123456789;
      fabric.Put<WrenPushReductionCounters>(*port).mlid = 49153;
    }
    node.Ports[11]->setSpecialPort(true);
  }

  std::string AllEmitters(std::ostream& out, std::stringbuf& buffer) {
    const SimInfoDumpCPP dump(fabric.fabscan);
    dump.GenerateNodeInfo(out, node);
    dump.GeneratePortInfo(out, node);
    dump.GenerateGMPCapabilityMask(out, node);
    dump.GenerateExtendedPortInfo(out, node);
    dump.GenerateEnhancedCongestionInfo(out, node);
    dump.GenerateCongestionSwitchGeneralSettings(out, node);
    dump.GenerateVSReductionManagerClassPortInfo(out, node);
    dump.GenerateWrenReductionPortInfo(out, node);
    dump.GenerateWrenReductionCounters(out, node);
    dump.GenerateWrenPushReductionCounters(out, node);
    return buffer.str();
  }

  std::string Plain() {
    std::stringbuf buffer;
    std::ostream out(&buffer);
    return AllEmitters(out, buffer);
  }

  FabricBuilder fabric;
  IBNode& node;
};

/// Groups digits in threes, and says "yes" for true.
class Grouped : public std::numpunct<char> {
 protected:
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST_F(StreamTest, NumbersDoNotDependOnTheLocale) {
  const std::string plain = Plain();
  const std::locale grouped(std::locale::classic(), new Grouped);

  std::stringbuf buffer;
  std::ostream out(&buffer);
  out.imbue(grouped);
  EXPECT_EQ(AllEmitters(out, buffer), plain);

  const std::locale before = std::locale::global(grouped);
  EXPECT_EQ(Plain(), plain);
  std::locale::global(before);
}

TEST_F(StreamTest, FlagsLeftOnTheStreamHaveNoSayAndStay) {
  const std::string plain = Plain();
  std::stringbuf buffer;
  std::ostream out(&buffer);
  out << std::hex << std::showbase << std::uppercase << std::left << std::showpos
      << std::setfill('*');
  out.width(30);
  out.precision(3);
  const std::ios::fmtflags flags = out.flags();
  EXPECT_EQ(AllEmitters(out, buffer), plain);
  EXPECT_EQ(out.flags(), flags);
  EXPECT_EQ(out.fill(), '*');
  EXPECT_EQ(out.width(), 30);
  EXPECT_EQ(out.precision(), 3);
}

TEST_F(StreamTest, ADecimalStreamComesBackDecimal) {
  std::stringbuf buffer;
  std::ostream out(&buffer);
  AllEmitters(out, buffer);
  EXPECT_EQ(out.flags(), std::ios::dec | std::ios::skipws);
  EXPECT_EQ(out.fill(), ' ');
  EXPECT_EQ(out.width(), 0);
  buffer.str("");
  out << 255;
  EXPECT_EQ(buffer.str(), "255");
}

TEST_F(StreamTest, FlushesOnlyBeforeEachRecordOfTheReductionPortInfo) {
  struct : std::stringbuf {
    int sync() override {
      flushed += std::to_string(str().size()) + ' ';
      return 0;
    }
    std::string flushed;
  } buffer;
  std::ostream out(&buffer);
  const SimInfoDumpCPP dump(fabric.fabscan);
  dump.GenerateWrenReductionPortInfo(out, node);
  std::string expected;
  const std::string text = buffer.str();
  const std::string record = "            mad_buffer.capability_mask";
  for (std::size_t at = text.find(record); at != std::string::npos;
       at = text.find(record, at + 1)) {
    expected += std::to_string(at) + ' ';
  }
  EXPECT_EQ(buffer.flushed, expected);
  EXPECT_EQ(std::count(expected.begin(), expected.end(), ' '), 2);

  buffer.flushed.clear();
  dump.GenerateNodeInfo(out, node);
  dump.GeneratePortInfo(out, node);
  dump.GenerateExtendedPortInfo(out, node);
  dump.GenerateWrenReductionCounters(out, node);
  dump.GenerateWrenPushReductionCounters(out, node);
  EXPECT_EQ(buffer.flushed, "");
}

/// Takes so many bytes, then throws.
class FullBuffer : public std::stringbuf {
 public:
  explicit FullBuffer(std::streamsize room) : room_(room) {}

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

TEST_F(StreamTest, ExceptionsOfTheStreamPassThrough) {
  const SimInfoDumpCPP dump(fabric.fabscan);
  FullBuffer buffer(100);
  std::ostream out(&buffer);
  out.exceptions(std::ios::badbit);
  EXPECT_THROW(dump.GeneratePortInfo(out, node), std::length_error);
  EXPECT_EQ(buffer.str().substr(0, 40), "    for (size_t i = 0; i < m_node->nodeP");
}

TEST_F(StreamTest, AStreamThatFailsQuietlyIsLeftFailed) {
  const SimInfoDumpCPP dump(fabric.fabscan);
  FullBuffer buffer(100);
  std::ostream out(&buffer);
  dump.GeneratePortInfo(out, node);
  EXPECT_TRUE(out.bad());
}

/// A stream that was never given its facets: the library's constructor for iostream halves.
class FacetlessStream : public std::ostream {
 public:
  FacetlessStream(std::streambuf* buffer, std::iostream& other) : std::ostream(other) {
    rdbuf(buffer);
  }
};

TEST_F(StreamTest, AStreamWithoutCharacterTypesThrowsWhereALineEnds) {
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
  EXPECT_THROW(dump.GenerateNodeInfo(out, node), std::bad_cast);
  EXPECT_EQ(buffer.str(), "    SMP_NodeInfo mad_buffer = {0};");
  buffer.str("");
  dump.GenerateRouterInfo(out, node);  // one line, which the caller ends
  EXPECT_EQ(buffer.str(), "// The node=S1 is not a router");
}

}  // namespace
}  // namespace fabscan
