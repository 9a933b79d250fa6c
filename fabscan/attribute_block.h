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

/// One statement of a block: the text before the value, and where the value comes from.
template <class Record>
struct Field {
  std::string_view text;
  u_int64_t (*value)(const Record&);
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

template <class Record>
void WriteStatement(SourceWriter& writer, const Field<Record>& field, const Record& record) {
  writer.Text(field.text).Hex(field.value(record)).Text(";");
}

inline constexpr std::size_t kWidestFastIndent = 16;

/// A line of its own for one statement; the line before is ended first. Unchecked: see `Longest`.
template <const auto& kFields, std::size_t kRow, class Record>
char* PutStatement(char* at, char line_end, std::size_t indent, const Record& record,
                   std::string_view close) {
  constexpr std::string_view kText = kFields[kRow].text;
  *at++ = line_end;
  std::memset(at, ' ', kWidestFastIndent);
  at += indent;
  std::memcpy(at, kText.data(), kText.size());
  at = PutHex(at + kText.size(), kFields[kRow].value(record));
  for (const char c : close) *at++ = c;
  return at;
}

/// The bytes that the statements of a table take at most.
template <const auto& kFields>
constexpr std::size_t Longest() {
  std::size_t longest = 0;
  for (const auto& field : kFields) {
    longest += 1 + kWidestFastIndent + field.text.size() + kMostHexDigits + 2;
  }
  return longest;
}

template <const auto& kFields, class Record, std::size_t... kRows>
char* PutStatements(char* at, char line_end, std::size_t indent, const Record& record,
                    std::string_view close, std::index_sequence<kRows...> /*rows*/) {
  ((at = PutStatement<kFields, kRows>(at, line_end, indent, record, close)), ...);
  return at;
}

/// Each statement of the table on a line of its own; the line before is ended first.
///
/// Most of a generated file is written here, so the table is known when this is compiled: every
/// row becomes a copy of constant size and a load from the record.
template <const auto& kFields, class Record>
void WriteStatements(SourceWriter& writer, int indent, const Record& record,
                     std::string_view close = ";") {
  static_assert(Longest<kFields>() < SourceWriter::kCapacity);
  const auto blanks = static_cast<std::size_t>(indent);
  if (blanks <= kWidestFastIndent) {
    const char line_end = writer.LineEnd();
    writer.Piece(Longest<kFields>(), [&](char* at) {
      return PutStatements<kFields>(at, line_end, blanks, record, close,
                                    std::make_index_sequence<std::size(kFields)>());
    });
    return;
  }
  for (const auto& field : kFields) {
    writer.Line(indent).Text(field.text).Hex(field.value(record)).Text(close);
  }
}

inline void WriteConversion(SourceWriter& writer, int indent, const Target& target,
                            std::string_view direction) {
  writer.Indent(indent).Text(target.record).Text(direction);
  writer.Text("(&mad_buffer, reinterpret_cast<u_int8_t*>(").Text(target.address).Text("));");
}

/// Declaration and unpack, both lines ended.
inline void WriteUnpack(SourceWriter& writer, int indent, const Target& target) {
  writer.Indent(indent).Text(target.record).Text(" mad_buffer = {0};").EndLine();
  WriteConversion(writer, indent, target, "_unpack");
  writer.EndLine();
}

/// The pack line after an empty one.
inline void WritePack(SourceWriter& writer, int indent, const Target& target) {
  writer.EndLine().EndLine();
  WriteConversion(writer, indent, target, "_pack");
}

/// The block of a node-level attribute.
template <const auto& kFields, class Record>
void WriteNodeBlock(SourceWriter& writer, const Target& target, const Record& record) {
  WriteUnpack(writer, kBodyIndent, target);
  WriteStatements<kFields>(writer, kBodyIndent, record);
  WritePack(writer, kBodyIndent, target);
}

/// The block of a port-level attribute: a loop over the simulated node's ports. `write_values` ends
/// the line before each of its own.
template <class WriteValues>
void WritePortLoop(SourceWriter& writer, std::string_view header, const Target& target,
                   WriteValues write_values) {
  writer.Indent(kBodyIndent).Text(header).EndLine();
  WriteUnpack(writer, kLoopIndent, target);
  write_values();
  WritePack(writer, kLoopIndent, target);
  writer.Line(kBodyIndent).Text("}");
}

#endif
