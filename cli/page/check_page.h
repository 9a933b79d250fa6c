#ifndef FABSCAN_CLI_CHECK_PAGE_H
#define FABSCAN_CLI_CHECK_PAGE_H

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cli/check/check_report.h"

namespace fabscan {

/// Distinct texts, identified by numbers.
class NumberedTexts {
 public:
  std::size_t Number(std::string text);
  /// In the order of their numbers.
  const std::vector<const std::string*>& all() const { return all_; }

 private:
  std::unordered_map<std::string, std::size_t> numbers_;
  std::vector<const std::string*> all_;  // keys of `numbers_`, which do not move
};

/// A generated text, split so that texts that differ only in values share the rest: `frame`
/// contains `kValueHole` for each number, and `kNameHole` for the node's name.
struct TextParts {
  static constexpr char kValueHole = '\x01';
  static constexpr char kNameHole = '\x02';

  std::string frame;
  std::string values;  // hexadecimal digits, one blank between two numbers
};
TextParts TakeApart(std::string_view text, std::string_view node_name);

/// One self-contained HTML page: the matrix of nodes and functions, with the text of each. It needs
/// no network, and shows data from devices only as text.
class CheckPage {
 public:
  /// `bodies`: the lines of each function, in the order of the generated file.
  void Add(const IBNode& node, const std::vector<std::string>& bodies);
  /// `report` covers the added nodes.
  void Write(std::ostream& out, const CheckReport& report) const;

 private:
  struct Text {
    std::size_t frame;
    std::size_t values;
  };
  std::size_t NumberOfFrame(std::string_view frame);
  std::string Data(const CheckReport& report) const;

  NumberedTexts lines_;
  NumberedTexts frames_;  // numbers of lines
  NumberedTexts values_;
  std::unordered_map<const IBNode*, std::vector<Text>> texts_;  // by function
};

}  // namespace fabscan

#endif
