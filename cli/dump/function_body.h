#ifndef FABSCAN_CLI_FUNCTION_BODY_H
#define FABSCAN_CLI_FUNCTION_BODY_H

#include <infiniband/fabscan/fabscan.h>

#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "fabscan/generated_functions.h"

namespace fabscan {

/// How a generated function affects the build.
enum class Mark {
  kBlock,    // compiles, and gives the simulated node its values
  kComment,  // compiles, and sets no values
  kError,    // an #error line stops the compiler
  kHand,     // a block that does not compile without an edit
};
inline constexpr std::size_t kMarks = 4;

/// A generated function of a node.
struct FunctionBody {
  const generator::GeneratedFunction* function = nullptr;
  Mark mark = Mark::kBlock;
  std::string reason;  // in place of a block: the generator's words, without `//`, `#error`, quotes
};

/// All generated functions of one node.
struct GeneratedNode {
  std::string class_word;  // SW, RTR, HCA, AN or Unknown
  std::vector<FunctionBody> functions;
};

/// Keeps the first line that is written to it, without its line end, and discards the rest.
class FirstLine final : public std::streambuf {
 public:
  void Clear();
  const std::string& text() const { return text_; }

 protected:
  int_type overflow(int_type next) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;

 private:
  std::string text_;
  bool is_complete_ = false;
};

/// Runs the generator's emitters and inspects their output without keeping it.
///
///     BodyQuery query(fabscan);
///     query.Ask(kGeneratedFunctions[0], node).mark
class BodyQuery {
 public:
  explicit BodyQuery(Fabscan& fabscan);
  BodyQuery(const BodyQuery&) = delete;
  BodyQuery& operator=(const BodyQuery&) = delete;

  Mark MarkOf(const generator::GeneratedFunction& function, const IBNode& node);
  FunctionBody Ask(const generator::GeneratedFunction& function, const IBNode& node);
  /// Every function of the node.
  GeneratedNode Ask(const IBNode& node);
  std::string ClassOf(const IBNode& node) const { return dump_.GetDumpedNodeType(node); }

 private:
  const SimInfoDumpCPP dump_;
  FirstLine first_line_;
  std::ostream out_{&first_line_};
};

/// The lines between the braces of a generated function, each with its line end.
std::string BodyText(const SimInfoDumpCPP& dump, const generator::GeneratedFunction& function,
                     const IBNode& node);

/// The text of a comment or an `#error` line, without these marks and quotes.
std::string_view ReasonOfLine(std::string_view line);

/// The reason with "node" instead of "node=NAME", so that equal reasons of several nodes are equal
/// texts.
std::string WithoutName(std::string_view reason, const std::string& name);

/// The compile problems of the function's blocks; empty if they compile.
std::string ProblemsText(const generator::GeneratedFunction& function);

}  // namespace fabscan

#endif
