#include "attribute_block.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

#include "testing/written.h"

namespace fabscan::generator {
namespace {

struct Record {
  u_int8_t narrow;
  u_int16_t middle;
  u_int32_t wide;
  u_int64_t widest;
  u_int8_t list[2];
};

constexpr Target kTarget = {"Record", "&m_node->record"};
constexpr Target kPortTarget = {"Record", "&m_node->records[i]", "for (;;) {"};
constexpr Field<Record> kSetters[] = {
    {"set_narrow(0x", [](const Record& r) -> u_int64_t { return r.narrow; }, ");"},
    {"set_widest(0x", [](const Record& r) -> u_int64_t { return r.widest; }, ");"},
};
constexpr Field<Record> kFields[] = {
    FABSCAN_FIELD(Record, widest), FABSCAN_FIELD(Record, narrow), FABSCAN_FIELD(Record, list[1]),
    FABSCAN_FIELD(Record, wide),   FABSCAN_FIELD(Record, middle),
};

/// The statements as they are written one by one, which they must equal when they are composed.
template <const auto& kTable>
std::string StatementText(int indent, const Record& record) {
  const auto statements = Statements<kTable>(record);
  const std::string checked =
      Written([&](SourceWriter& writer) { statements.Write(writer, indent); });
  EXPECT_EQ(Written([&](SourceWriter& writer) { writer.Append(statements, indent); }), checked);
  return checked;
}

TEST(AttributeBlock, OfANodeHasItsStatementsBetweenUnpackAndPack) {
  const Record record = {65, 0x4142, 0x80000000, 0x123456789abcdef0, {7, 10}};
  EXPECT_EQ(
      Written([&](SourceWriter& writer) { WriteNodeBlock<kTarget, kFields>(writer, record); }),
      R"(    Record mad_buffer = {0};
    Record_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->record));

    mad_buffer.widest = 0x123456789abcdef0;
    mad_buffer.narrow = 0x41;
    mad_buffer.list[1] = 0xa;
    mad_buffer.wide = 0x80000000;
    mad_buffer.middle = 0x4142;

    Record_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->record));)");
}

TEST(AttributeBlock, HoldsTheExtremesOfEveryWidth) {
  constexpr Record kZero = {};
  constexpr Record kAll = {0xff, 0xffff, 0xffffffff, 0xffffffffffffffff, {0xff, 0xff}};
  EXPECT_EQ(StatementText<kFields>(0, kZero), R"(
mad_buffer.widest = 0x0;
mad_buffer.narrow = 0x0;
mad_buffer.list[1] = 0x0;
mad_buffer.wide = 0x0;
mad_buffer.middle = 0x0;)");
  EXPECT_EQ(StatementText<kSetters>(0, kZero), R"(
set_narrow(0x0);
set_widest(0x0);)");
  EXPECT_EQ(StatementText<kFields>(1, kAll), R"(
 mad_buffer.widest = 0xffffffffffffffff;
 mad_buffer.narrow = 0xff;
 mad_buffer.list[1] = 0xff;
 mad_buffer.wide = 0xffffffff;
 mad_buffer.middle = 0xffff;)");
}

TEST(AttributeBlock, IndentsStatementsByAnyNumberOfBlanks) {
  const Record record = {1, 2, 3, 4, {5, 6}};
  for (const int indent : {std::numeric_limits<int>::min(), -1, 0, 15, 16, 17, 40'000}) {
    const std::string start =
        '\n' + std::string(indent > 0 ? static_cast<unsigned>(indent) : 0, ' ');
    EXPECT_EQ(StatementText<kFields>(indent, record),
              start + "mad_buffer.widest = 0x4;" + start + "mad_buffer.narrow = 0x1;" + start +
                  "mad_buffer.list[1] = 0x6;" + start + "mad_buffer.wide = 0x3;" + start +
                  "mad_buffer.middle = 0x2;")
        << indent;
  }
}

TEST(AttributeBlock, StaysWholeWhereverTheWritersBufferEnds) {
  const Record record = {1, 2, 3, 4, {5, 6}};
  const std::string block =
      Written([&](SourceWriter& writer) { WriteNodeBlock<kTarget, kFields>(writer, record); });
  for (std::size_t room = 0; room < block.size() + 64; ++room) {
    const std::string before(SourceWriter::kCapacity - room, 'x');
    EXPECT_EQ(Written([&](SourceWriter& writer) {
                writer.Text(before);
                WriteNodeBlock<kTarget, kFields>(writer, record);
              }),
              before + block)
        << room;
  }
}

TEST(AttributeBlock, OfAPortStandsInALoop) {
  const auto lines = [](SourceWriter& writer, int indent) { writer.Line(indent).Text("values"); };
  EXPECT_EQ(Written([&](SourceWriter& writer) { WritePortLoop<kPortTarget>(writer, lines); }),
            R"(    for (;;) {
        Record mad_buffer = {0};
        Record_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->records[i]));

        values

        Record_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(&m_node->records[i]));
    })");
}

}  // namespace
}  // namespace fabscan::generator
