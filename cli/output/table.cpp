#include "cli/output/table.h"

#include <algorithm>
#include <numeric>

namespace fabscan {

namespace {

constexpr std::size_t kGap = 2;
/// Minimum width of a column.
constexpr std::size_t kNarrowest = 12;

}  // namespace

void Cell::Add(std::string text, Style style) {
  width_ += DisplayWidth(text);
  if (!parts_.empty() && parts_.back().second == style) {
    parts_.back().first += text;
  } else {
    parts_.emplace_back(std::move(text), style);
  }
}

void Cell::Add(const Cell& other) {
  width_ += other.width_;
  parts_.insert(parts_.end(), other.parts_.begin(), other.parts_.end());
}

std::string Cell::text() const {
  std::string text;
  for (const auto& part : parts_) text += part.first;
  return text;
}

std::string Cell::Paint(const Terminal& terminal) const {
  std::string painted;
  for (const auto& [text, style] : parts_) painted += Painted(text, style, terminal);
  return painted;
}

std::vector<std::size_t> Table::widths(const Terminal& terminal, std::size_t indent) const {
  std::vector<std::size_t> widths;
  for (const Column& column : columns_) widths.push_back(DisplayWidth(column.head));
  for (const std::vector<Cell>& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].width());
  }
  if (terminal.width == 0) return widths;
  std::size_t total =
      std::accumulate(widths.begin(), widths.end(), indent + kGap * (widths.size() - 1));
  for (std::size_t i = columns_.size(); i-- > 0 && total > terminal.width;) {
    if (columns_[i].narrow == Narrow::kKeep || widths[i] <= kNarrowest) continue;
    const std::size_t narrower =
        widths[i] - std::min(total - terminal.width, widths[i] - kNarrowest);
    total -= widths[i] - narrower;
    widths[i] = narrower;
  }
  return widths;
}

void Table::AddLine(std::string& to, const std::vector<Cell>& cells,
                    const std::vector<std::size_t>& widths, const Terminal& terminal,
                    std::size_t indent) const {
  std::size_t pending = indent;  // blanks to write before the next text
  for (std::size_t i = 0; i < cells.size(); ++i) {
    Cell cell = cells[i];
    std::vector<std::string> lines;
    if (cell.width() > widths[i]) {
      lines = columns_[i].narrow == Narrow::kWrap
                  ? Wrapped(cell.text(), widths[i])
                  : std::vector<std::string>{Cut(cell.text(), widths[i])};
      cell = Cell(lines.front(), cell.style());
    }
    const std::size_t padding = widths[i] - std::min(widths[i], cell.width());
    if (columns_[i].right_aligned) pending += padding;
    if (cell.width() != 0) {
      to.append(pending, ' ');
      to += cell.Paint(terminal);
      pending = 0;
    }
    if (!columns_[i].right_aligned) pending += padding;
    pending += kGap;
    const std::size_t left = std::accumulate(
        widths.begin(), widths.begin() + static_cast<std::ptrdiff_t>(i), indent + kGap * i);
    for (std::size_t line = 1; line < lines.size(); ++line) {
      to += '\n' + std::string(left, ' ') + Painted(lines[line], cell.style(), terminal);
    }
  }
  to += '\n';
}

std::string Table::text(const Terminal& terminal, std::size_t indent) const {
  const std::vector<std::size_t> widths = this->widths(terminal, indent);
  std::string text;
  std::vector<Cell> heads;
  for (const Column& column : columns_) heads.emplace_back(column.head, Style::kHead);
  AddLine(text, heads, widths, terminal, indent);
  for (const std::vector<Cell>& row : rows_) AddLine(text, row, widths, terminal, indent);
  return text;
}

}  // namespace fabscan
