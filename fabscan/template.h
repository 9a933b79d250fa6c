#ifndef FABSCAN_TEMPLATE_H
#define FABSCAN_TEMPLATE_H

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "unchecked_writer.h"

namespace fabscan::generator {

class SourceWriter;

/// Generated text as it will read, with `$name$` where a value goes:
///
///     constexpr Template kLoop(R"(
///     for (unsigned i = 0; i < $count$; ++i) {
///         $statements$
///     })", {"count", "statements"});
///
/// It begins after the first line end. A hole that is alone on its line is filled with whole lines,
/// each indented as the hole is. Taken apart when it is compiled; a name that is not listed does
/// not compile.
class Template {
 public:
  static constexpr std::size_t kMostPieces = 64;

  enum class Kind {
    kLine,       // begins a line, indented by `column`
    kEmptyLine,  // begins a line that has nothing on it
    kText,
    kHole,   // a value
    kLines,  // a value that is alone on its line, indented by `column`
  };
  struct Piece {
    Kind kind = Kind::kText;
    std::string_view text = {};
    std::size_t hole = 0;
    int column = 0;
  };

  template <std::size_t kHoles>
  constexpr Template(std::string_view text, const std::string_view (&holes)[kHoles]) {
    Parse(text, holes, kHoles);
  }
  constexpr explicit Template(std::string_view text) { Parse(text, nullptr, 0); }

  constexpr std::size_t size() const { return size_; }
  constexpr const Piece& operator[](std::size_t index) const { return pieces_[index]; }

 private:
  constexpr void Parse(std::string_view text, const std::string_view* holes, std::size_t count) {
    while (!text.empty()) {
      text.remove_prefix(1);  // the line end
      const std::size_t end = text.find('\n');
      ParseLine(text.substr(0, end), holes, count);
      text.remove_prefix(end == std::string_view::npos ? text.size() : end);
    }
  }

  constexpr void ParseLine(std::string_view line, const std::string_view* holes,
                           std::size_t count) {
    int column = 0;
    for (; !line.empty() && line[0] == ' '; line.remove_prefix(1)) ++column;
    if (line.empty()) {
      Add({Kind::kEmptyLine});
    } else if (line[0] == '$' && line.find('$', 1) == line.size() - 1) {
      Add({Kind::kLines, {}, Find(line.substr(1, line.size() - 2), holes, count), column});
    } else {
      Add({Kind::kLine, {}, 0, column});
      ParseText(line, holes, count);
    }
  }

  constexpr void ParseText(std::string_view line, const std::string_view* holes,
                           std::size_t count) {
    while (!line.empty()) {
      const std::size_t begin = line.find('$');
      if (begin != 0) Add({Kind::kText, line.substr(0, begin)});
      if (begin == std::string_view::npos) return;
      line.remove_prefix(begin + 1);
      const std::size_t end = line.find('$');
      Add({Kind::kHole, {}, Find(line.substr(0, end), holes, count)});
      line.remove_prefix(end + 1);
    }
  }

  static constexpr std::size_t Find(std::string_view name, const std::string_view* holes,
                                    std::size_t count) {
    for (std::size_t hole = 0; hole < count; ++hole) {
      if (holes[hole] == name) return hole;
    }
    throw "a hole that is not listed";  // so that it does not compile
  }

  constexpr void Add(Piece piece) { pieces_[size_++] = piece; }

  std::array<Piece, kMostPieces> pieces_ = {};
  std::size_t size_ = 0;
};

// ---------- What fills a hole ----------
//
// A value has `Write(to, indent)` and says three things: the most bytes that it writes; how far it
// indents its lines beyond `indent`; and whether it begins its lines itself. `to` is a SourceWriter
// or, if the number of bytes is bounded, an UncheckedWriter.

inline constexpr std::size_t kUnbounded = ~std::size_t{0};

struct DecimalValue {
  static constexpr std::size_t kMostBytes = kMostDecimalDigits;
  static constexpr int kDepth = 0;
  static constexpr bool kBeginsLines = false;
  unsigned value;

  template <class Writer>
  [[gnu::always_inline]] void Write(Writer& to, int /*indent*/) const {
    to.Decimal(value);
  }
};

/// All sixteen digits of a GUID.
struct GuidValue {
  static constexpr std::size_t kMostBytes = 15 + kMostHexDigits;
  static constexpr int kDepth = 0;
  static constexpr bool kBeginsLines = false;
  u_int64_t guid;

  template <class Writer>
  void Write(Writer& to, int /*indent*/) const {
    for (int shift = 60; shift >= 0; shift -= 4) to.Hex((guid >> shift) & 0xFU);
  }
};

/// A text of any length.
struct TextValue {
  static constexpr std::size_t kMostBytes = kUnbounded;
  static constexpr int kDepth = 0;
  static constexpr bool kBeginsLines = false;
  std::string_view text;

  template <class Writer>
  void Write(Writer& to, int /*indent*/) const {
    to.Text(text);
  }
};

/// Lines that a function writes: `write(writer, indent)`. It begins each of them.
template <class Function>
struct LinesValue {
  static constexpr std::size_t kMostBytes = kUnbounded;
  static constexpr int kDepth = 0;
  static constexpr bool kBeginsLines = true;
  Function write;

  void Write(SourceWriter& to, int indent) const { write(to, indent); }
};

constexpr DecimalValue ValueOf(unsigned value) { return {value}; }
constexpr TextValue ValueOf(std::string_view text) { return {text}; }
template <class Value>
constexpr auto ValueOf(const Value& value) {
  if constexpr (std::is_invocable_v<const Value&, SourceWriter&, int>) {
    return LinesValue<Value>{value};
  } else if constexpr (std::is_convertible_v<const Value&, std::string_view>) {
    return TextValue{value};
  } else {
    return value;
  }
}

/// A part of a template, from one of its pieces to another, with its values.
template <const Template& kTemplate, bool kOnNewLine, class Values, std::size_t kFrom,
          std::size_t kEnd>
class TemplateRun;

template <const Template& kTemplate, bool kOnNewLine, class... Value, std::size_t kFrom,
          std::size_t kEnd>
class TemplateRun<kTemplate, kOnNewLine, std::tuple<Value...>, kFrom, kEnd> {
 public:
  static constexpr std::size_t kMostBytes = [] {
    constexpr std::size_t kMostOfValues[] = {Value::kMostBytes..., 0};
    std::size_t most = 0;
    for (std::size_t i = kFrom; i < kEnd; ++i) {
      const Template::Piece& piece = kTemplate[i];
      most += 1 + kWidestIndent + piece.text.size();
      const bool is_hole =
          piece.kind == Template::Kind::kHole || piece.kind == Template::Kind::kLines;
      if (!is_hole) continue;
      if (kMostOfValues[piece.hole] == kUnbounded) return kUnbounded;
      most += kMostOfValues[piece.hole];
    }
    return most;
  }();
  static constexpr int kDepth = [] {
    constexpr int kDepthOfValues[] = {Value::kDepth..., 0};
    int depth = 0;
    for (std::size_t i = kFrom; i < kEnd; ++i) {
      const Template::Piece& piece = kTemplate[i];
      const int below = piece.kind == Template::Kind::kLines ? kDepthOfValues[piece.hole] : 0;
      if (piece.column + below > depth) depth = piece.column + below;
    }
    return depth;
  }();
  static constexpr bool kBeginsLines = true;

  explicit constexpr TemplateRun(const std::tuple<Value...>& values) : values_(values) {}

  template <class Writer>
  [[gnu::always_inline]] void Write(Writer& to, int indent) const {
    if constexpr (kMostBytes == kUnbounded) {
      WriteRuns<kFrom>(to, indent);
    } else {
      WritePieces(to, indent, std::make_index_sequence<kEnd - kFrom>());
    }
  }

 private:
  template <class Writer, std::size_t... kPieces>
  [[gnu::always_inline]] void WritePieces(Writer& to, int indent,
                                          std::index_sequence<kPieces...> /*pieces*/) const {
    (WritePiece<kFrom + kPieces>(to, indent), ...);
  }

  template <std::size_t kPiece, class Writer>
  [[gnu::always_inline]] void WritePiece(Writer& to, int indent) const {
    constexpr Template::Piece kThis = kTemplate[kPiece];
    if constexpr (kThis.kind == Template::Kind::kText) {
      to.Text(kThis.text);
    } else if constexpr (kThis.kind == Template::Kind::kHole) {
      std::get<kThis.hole>(values_).Write(to, indent);
    } else if constexpr (kThis.kind == Template::Kind::kEmptyLine) {
      if constexpr (kPiece != 0 || kOnNewLine) to.EndLine();
    } else if constexpr (kThis.kind == Template::Kind::kLine) {
      BeginLine<kPiece>(to, indent + kThis.column);
    } else {
      using Filled = std::tuple_element_t<kThis.hole, std::tuple<Value...>>;
      if constexpr (!Filled::kBeginsLines) BeginLine<kPiece>(to, indent + kThis.column);
      std::get<kThis.hole>(values_).Write(to, indent + kThis.column);
    }
  }

  template <std::size_t kPiece, class Writer>
  [[gnu::always_inline]] static void BeginLine(Writer& to, int indent) {
    if constexpr (kPiece != 0 || kOnNewLine) {
      to.Line(indent);
    } else {
      to.Indent(indent);
    }
  }

  /// Everything between two unbounded values is one bounded run.
  template <std::size_t kBegin, class Writer>
  void WriteRuns(Writer& to, int indent) const {
    constexpr std::size_t kStop = NextUnbounded(kBegin);
    if constexpr (kStop != kBegin) {
      to.Append(TemplateRun<kTemplate, kOnNewLine, std::tuple<Value...>, kBegin, kStop>(values_),
                indent);
    }
    if constexpr (kStop != kEnd) {
      WritePiece<kStop>(to, indent);
      if constexpr (kStop + 1 != kEnd) WriteRuns<kStop + 1>(to, indent);
    }
  }

  static constexpr std::size_t NextUnbounded(std::size_t piece) {
    constexpr std::size_t kMostOfValues[] = {Value::kMostBytes..., 0};
    for (; piece < kEnd; ++piece) {
      const Template::Kind kind = kTemplate[piece].kind;
      const bool is_hole = kind == Template::Kind::kHole || kind == Template::Kind::kLines;
      if (is_hole && kMostOfValues[kTemplate[piece].hole] == kUnbounded) break;
    }
    return piece;
  }

  std::tuple<Value...> values_;
};

/// The template with a value for each of its holes, in the order in which it lists them. It begins
/// a line, or continues the one that is begun.
template <const Template& kTemplate, bool kOnNewLine = true, class... Values>
constexpr auto Filled(const Values&... values) {
  using Tuple = std::tuple<decltype(ValueOf(values))...>;
  return TemplateRun<kTemplate, kOnNewLine, Tuple, 0, kTemplate.size()>(Tuple(ValueOf(values)...));
}

}  // namespace fabscan::generator

#endif
