#ifndef FABSCAN_CLI_TABLE_H
#define FABSCAN_CLI_TABLE_H

#include <string>
#include <utility>
#include <vector>

#include "cli/terminal/terminal.h"

namespace fabscan {

/// A cell: text in one style or several.
class Cell {
 public:
  Cell(std::string text, Style style = Style::kPlain) { Add(std::move(text), style); }
  Cell(const char* text) : Cell(std::string(text)) {}

  void Add(std::string text, Style style);
  void Add(const Cell& other);
  std::string text() const;
  std::size_t width() const { return width_; }
  std::string Paint(const Terminal& terminal) const;
  /// The first style, which remains when the cell is cut or wrapped.
  Style style() const { return parts_.front().second; }

 private:
  std::vector<std::pair<std::string, Style>> parts_;
  std::size_t width_ = 0;
};

/// How a column is narrowed if the table is wider than the terminal.
enum class Narrow {
  kKeep,
  kCut,   // cells end in an ellipsis
  kWrap,  // cells continue in the next line, broken at blanks; for the last column
};

struct Column {
  std::string head;
  bool right_aligned = false;
  Narrow narrow = Narrow::kKeep;
};

/// Rows of aligned cells under a header, with two blanks between columns and no trailing blanks.
class Table {
 public:
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// Needs one cell per column.
  void AddRow(std::vector<Cell> cells) { rows_.push_back(std::move(cells)); }
  bool empty() const { return rows_.empty(); }

  /// Begins every line with `indent` blanks.
  std::string text(const Terminal& terminal, std::size_t indent = 0) const;

 private:
  std::vector<std::size_t> widths(const Terminal& terminal, std::size_t indent) const;
  void AddLine(std::string& to, const std::vector<Cell>& cells,
               const std::vector<std::size_t>& widths, const Terminal& terminal,
               std::size_t indent) const;

  std::vector<Column> columns_;
  std::vector<std::vector<Cell>> rows_;
};

}  // namespace fabscan

#endif
