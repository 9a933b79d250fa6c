#ifndef FABSCAN_ATTRIBUTE_BLOCK_H
#define FABSCAN_ATTRIBUTE_BLOCK_H

#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "source_writer.h"

namespace fabscan::generator {

/// The patterns that blocks are written in. An emitter has a `Target`, a table of `Field`s in the
/// order of the generated text, and its own conditions. What is written last is left without a line
/// end, as everywhere here.

inline constexpr int kBodyIndent = 4;
inline constexpr int kLoopIndent = 8;
inline constexpr int kBranchIndent = 12;

/// What a block unpacks and packs: the simulator's record type and the address of its storage; for
/// attributes of ports also the loop over them.
struct Target {
  std::string_view record;
  std::string_view address;
  std::string_view loop = {};
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

// ---------- Values for the holes of templates ----------

/// One of a target's texts.
template <const Target& kTarget, std::string_view Target::*kText>
struct TargetText {
  static constexpr std::size_t kMostBytes = (kTarget.*kText).size();
  static constexpr int kDepth = 0;
  static constexpr bool kBeginsLines = false;

  template <class Writer>
  [[gnu::always_inline]] void Write(Writer& to, int /*indent*/) const {
    constexpr std::string_view kWritten = kTarget.*kText;
    to.Text(kWritten);
  }
};

/// Each statement of a table on a line of its own. The table is known when this is compiled: every
/// row becomes a few moves and a load from the record.
template <const auto& kFields, class Record>
class StatementLines {
 public:
  static constexpr std::size_t kMostBytes = [] {
    std::size_t most = 0;
    for (const auto& field : kFields) {
      most += 1 + kWidestIndent + field.before.size() + kMostHexDigits + field.after.size();
    }
    return most;
  }();
  static constexpr int kDepth = 0;
  static constexpr bool kBeginsLines = true;

  explicit constexpr StatementLines(const Record& record) : record_(record) {}

  template <class Writer>
  [[gnu::always_inline]] void Write(Writer& to, int indent) const {
    WriteRows(to, indent, std::make_index_sequence<std::size(kFields)>());
  }

 private:
  template <class Writer, std::size_t... kRows>
  [[gnu::always_inline]] void WriteRows(Writer& to, int indent,
                                        std::index_sequence<kRows...> /*rows*/) const {
    (to.Line(indent)
         .Text(kFields[kRows].before)
         .Hex(kFields[kRows].value(record_))
         .Text(kFields[kRows].after),
     ...);
  }

  const Record& record_;
};

template <const auto& kFields, class Record>
constexpr StatementLines<kFields, Record> Statements(const Record& record) {
  return StatementLines<kFields, Record>(record);
}

// ---------- Blocks ----------

inline constexpr Template kNodeBlock(R"(
$record$ mad_buffer = {0};
$record$_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>($address$));

$statements$

$record$_pack(&mad_buffer, reinterpret_cast<u_int8_t*>($address$));)",
                                     {"record", "address", "statements"});

inline constexpr Template kPortLoop(R"(
$loop$
    $record$ mad_buffer = {0};
    $record$_unpack(&mad_buffer, reinterpret_cast<u_int8_t*>($address$));

    $values$

    $record$_pack(&mad_buffer, reinterpret_cast<u_int8_t*>($address$));
})",
                                    {"loop", "record", "address", "values"});

/// The block of a node's attribute.
template <const Target& kTarget, const auto& kFields, class Record>
void WriteNodeBlock(SourceWriter& writer, const Record& record) {
  writer.Emit<kNodeBlock>(kBodyIndent, TargetText<kTarget, &Target::record>(),
                          TargetText<kTarget, &Target::address>(), Statements<kFields>(record));
}

/// The block of a port's attribute: a loop over the simulated node's ports, around `values`.
template <const Target& kTarget, class Values>
void WritePortLoop(SourceWriter& writer, const Values& values) {
  writer.Emit<kPortLoop>(kBodyIndent, TargetText<kTarget, &Target::loop>(),
                         TargetText<kTarget, &Target::record>(),
                         TargetText<kTarget, &Target::address>(), values);
}

}  // namespace fabscan::generator

#endif
