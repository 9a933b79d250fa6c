#ifndef FABSCAN_CLI_GENERATED_FILE_H
#define FABSCAN_CLI_GENERATED_FILE_H

#include <sys/types.h>

#include <cstddef>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// What a generated function holds.
enum class BodyKind {
  kBlock,    // statements that give the simulated node its values
  kComment,  // comments only: the node does not serve the attribute, or skipping it is harmless
  kError,    // an #error line: the file does not compile until someone has looked
};

/// One function of a generated file.
struct GeneratedFunction {
  std::string name;      // setNodeInfo
  std::string body;      // the lines between the braces, each with its line end
  std::size_t line = 0;  // of the line that opens the function, counted from 1
  BodyKind kind = BodyKind::kBlock;
};

/// What a generated file holds of one node.
struct GeneratedNode {
  u_int64_t guid = 0;
  std::string class_word;  // SW, RTR, HCA, AN or Unknown
  std::vector<GeneratedFunction> functions;
};

/// A file that does not have the form of a generated one; `what()` names the line.
class GeneratedFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads a generated file node by node.
class GeneratedFileReader {
 public:
  /// `text` outlives the reader, and from now on throws where reading fails, so that a shortage of
  /// memory is not taken for the end of the file.
  explicit GeneratedFileReader(std::istream& text) : text_(text) {
    text_.exceptions(std::ios::badbit);
  }

  /// Fills `node` with the next one; false at the end of the file. Throws GeneratedFileError, and
  /// what the stream throws.
  bool Next(GeneratedNode& node);

 private:
  bool readLine();
  [[noreturn]] void refuse(const char* expected) const;
  void readFunction(GeneratedNode& node);

  std::istream& text_;
  std::string line_;
  std::size_t number_ = 0;
  bool at_node_ = false;  // `line_` opens the next node
};

/// The GUID of the last node that begins in `text`, a part of a generated file.
std::optional<u_int64_t> GuidOfLastNode(std::string_view text);

/// The kind of a function's body.
BodyKind KindOfBody(std::string_view body);

/// Whether the function holds statements that no compiler takes as they stand: the address in place
/// of a redirect GID, and the pack of a record that the loop does not declare. Whoever builds the
/// file finishes them by hand.
bool NeedsHand(const GeneratedFunction& function);
/// What stops the compiler there, and what to do; empty where nothing does.
std::string_view HandReason(const GeneratedFunction& function);

/// The diagnostic with "node" for "node=NAME", so that nodes with the same fate read alike.
std::string WithoutName(std::string_view diagnostic, const std::string& name);

/// The reason that a body of comments or of an `#error` line gives: its first diagnostic, without
/// the comment mark, `#error` and quotes. Empty for a block.
std::string_view ReasonOfBody(std::string_view body);

}  // namespace fabscan

#endif
