#ifndef FABSCAN_ATTRIBUTE_BLOCK_H
#define FABSCAN_ATTRIBUTE_BLOCK_H

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include "source_writer.h"

/// The statement pattern that every emitter writes in:
///
///     RECORD mad_buffer = {0};
///     RECORD_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>(ADDRESS));
///
///     mad_buffer.FIELD = 0x…;
///
///     RECORD_pack(&mad_buffer, reinterpret_cast<u_int8_t*>(ADDRESS));
///
/// An emitter has a `Target`, a table of `Field`s in the order of the generated text, and its own
/// conditions. As everywhere here, what is written last is left without a line end.

inline constexpr int kBodyIndent = 4;
inline constexpr int kLoopIndent = 8;
inline constexpr int kBranchIndent = 12;

/// What a block unpacks and packs: the simulator's record type and the address of its storage.
struct Target {
  std::string_view record;
  std::string_view address;
};

/// One statement of a block: the text around the value, and where the value comes from.
template <class Record>
struct Field {
  std::string_view before;
  u_int64_t (*value)(const Record&);
  std::string_view after = ";";
};

/// A row for a field that is written under the name, and with the value, of the record's member.
#define FABSCAN_FIELD(record, member)                                                    \
  {                                                                                      \
    "mad_buffer." #member " = 0x", [](const record& r) -> u_int64_t { return r.member; } \
  }

/// The one line of a body that has no block: what is wrong, at column 0.
inline void WriteDiagnostic(SourceWriter& writer, std::string_view text) { writer.Text(text); }
inline void WriteDiagnostic(SourceWriter& writer, std::string_view before, std::string_view name,
                            std::string_view after = {}) {
  writer.Text(before).Text(name).Text(after);
}

// What follows is written to a SourceWriter, or in one of its `AtOnce`: inlined there, it is a row
// of moves to addresses that are kept in a register.

/// Each statement of the table on a line of its own; the line before is ended first. The table is
/// known when this is compiled: every row becomes a few moves and a load from the record.
template <const auto& kFields, class Writer, class Record, std::size_t... kRows>
[[gnu::always_inline]] inline void WriteRows(Writer& writer, int indent, const Record& record,
                                             std::index_sequence<kRows...> /*rows*/) {
  (writer.Line(indent)
       .Text(kFields[kRows].before)
       .Hex(kFields[kRows].value(record))
       .Text(kFields[kRows].after),
   ...);
}
template <const auto& kFields, class Writer, class Record>
[[gnu::always_inline]] inline void WriteStatements(Writer& writer, int indent,
                                                   const Record& record) {
  WriteRows<kFields>(writer, indent, record, std::make_index_sequence<std::size(kFields)>());
}

template <class Writer>
[[gnu::always_inline]] inline void WriteConversion(Writer& writer, int indent, const Target& target,
                                                   std::string_view direction) {
  writer.Indent(indent).Text(target.record).Text(direction);
  writer.Text("(&mad_buffer, reinterpret_cast<u_int8_t*>(").Text(target.address).Text("));");
}

/// Declaration and unpack, both lines ended.
template <class Writer>
[[gnu::always_inline]] inline void WriteUnpack(Writer& writer, int indent, const Target& target) {
  writer.Indent(indent).Text(target.record).Text(" mad_buffer = {0};").EndLine();
  WriteConversion(writer, indent, target, "_unpack");
  writer.EndLine();
}

/// The pack line after an empty one.
template <class Writer>
[[gnu::always_inline]] inline void WritePack(Writer& writer, int indent, const Target& target) {
  writer.EndLine().EndLine();
  WriteConversion(writer, indent, target, "_pack");
}

/// The block of a node-level attribute.
template <const Target& kTarget, const auto& kFields, class Record>
void WriteNodeBlock(SourceWriter& writer, const Record& record) {
  writer.AtOnce([&record](auto& to) {
    WriteUnpack(to, kBodyIndent, kTarget);
    WriteStatements<kFields>(to, kBodyIndent, record);
    WritePack(to, kBodyIndent, kTarget);
  });
}

/// The block of a port-level attribute: a loop over the simulated node's ports. `write_values` ends
/// the line before each of its own.
template <const Target& kTarget, class WriteValues>
void WritePortLoop(SourceWriter& writer, std::string_view header, WriteValues write_values) {
  writer.AtOnce([header](auto& to) {
    to.Indent(kBodyIndent).Text(header).EndLine();
    WriteUnpack(to, kLoopIndent, kTarget);
  });
  write_values();
  writer.AtOnce([](auto& to) {
    WritePack(to, kLoopIndent, kTarget);
    to.Line(kBodyIndent).Text("}");
  });
}

#endif
