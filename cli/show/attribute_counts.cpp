#include "cli/show/attribute_counts.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "cli/output/counted.h"
#include "cli/output/node_text.h"

namespace fabscan {

namespace {

struct SignRow {
  const char* sign;
  Style style;
  const char* meaning;
};

// In the order of Sign.
// clang-format off
constexpr SignRow kSigns[] = {
    {"+", Style::kGood,    "collected"},
    {"-", Style::kWarning, "absent for a recorded reason"},
    {".", Style::kQuiet,   "not collected"},
    {" ", Style::kPlain,   "blank: does not apply to this type of node"},
    {"~", Style::kWarning, "not the same for all"},
};
// clang-format on

/// Reasons per attribute that are listed; the others are only counted.
constexpr std::size_t kMaxReasons = 5;

std::string LetterText(std::size_t attribute) {
  return std::string(1, static_cast<char>('a' + attribute));
}

}  // namespace

Sign SignOf(const Collected& collected) {
  if (collected.records != 0) return kCollected;
  if (collected.absent) return kAbsent;
  return collected.applies ? kNotCollected : kNotApplicable;
}

const char* MeaningOf(Sign sign) { return kSigns[sign].meaning; }
Style StyleOf(Sign sign) { return kSigns[sign].style; }

Cell SignCell(const std::vector<Sign>& signs) {
  Cell cell("");
  for (const Sign sign : signs) cell.Add(kSigns[sign].sign, kSigns[sign].style);
  return cell;
}

std::vector<Sign> CommonSigns(const std::vector<std::vector<Sign>>& rows) {
  std::vector<Sign> common = rows.front();
  for (const std::vector<Sign>& row : rows) {
    for (std::size_t i = 0; i < common.size(); ++i) {
      if (row[i] != common[i]) common[i] = kMixed;
    }
  }
  return common;
}

std::vector<Sign> AttributeCounts::add(const std::vector<Collected>& list,
                                       std::vector<Count>& counts) {
  counts.resize(list.size());
  std::vector<Sign> signs;
  for (std::size_t i = 0; i < list.size(); ++i) {
    Count& count = counts[i];
    count.attribute = list[i].attribute;
    signs.push_back(SignOf(list[i]));
    ++count.signs[signs.back()];
    if (signs.back() == kAbsent) ++count.reasons[*list[i].absent];
  }
  return signs;
}

std::string AttributeCounts::letters(std::size_t first, std::size_t count) {
  std::string letters;
  for (std::size_t i = 0; i < count; ++i) letters += LetterText(first + i);
  return letters;
}

template <class Visit>
void AttributeCounts::forEach(const Visit& visit) const {
  for (std::size_t i = 0; i < node_counts_.size(); ++i) {
    visit(LetterText(i), node_counts_[i], "node");
  }
  for (std::size_t i = 0; i < port_counts_.size(); ++i) {
    visit(LetterText(kNodeAttributes + i), port_counts_[i], "port");
  }
}

std::string AttributeCounts::Legend(const Terminal& terminal) const {
  std::string text;
  for (std::size_t sign = 0; sign < std::size(kSigns); ++sign) {
    // A matrix of the ports of one node has only the first signs.
    if (sign > kNotCollected && node_counts_.empty()) break;
    const SignRow& row = kSigns[sign];
    text += fmt::format("  {}  {}\n", Painted(row.sign, row.style, terminal), row.meaning);
  }
  std::vector<Column> columns = {{""}, {"attribute"}, {"of"}};
  for (const Sign sign : {kCollected, kAbsent, kNotCollected}) {
    columns.push_back({kSigns[sign].sign, true});
  }
  Table table(columns);
  forEach([&table](const std::string& letter, const Count& count, const char* owner) {
    std::vector<Cell> cells = {letter, std::string(count.attribute), owner};
    for (const Sign sign : {kCollected, kAbsent, kNotCollected}) {
      const std::size_t times = count.signs[sign];
      cells.emplace_back(times == 0 ? "" : std::to_string(times), StyleOf(sign));
    }
    table.AddRow(std::move(cells));
  });
  return text + '\n' + table.text(terminal);
}

std::string AttributeCounts::Reasons(const Terminal& terminal) const {
  Table table({{""}, {"absent"}, {"of", true}, {"reason", false, Narrow::kWrap}});
  forEach([&table](const std::string& letter, const Count& count, const char* owner) {
    std::vector<std::pair<std::string_view, std::size_t>> reasons(count.reasons.begin(),
                                                                  count.reasons.end());
    std::stable_sort(reasons.begin(), reasons.end(),
                     [](const auto& one, const auto& other) { return one.second > other.second; });
    std::size_t rest = 0;
    for (std::size_t i = 0; i < reasons.size(); ++i) {
      if (i >= kMaxReasons) {
        rest += reasons[i].second;
      } else {
        table.AddRow({letter, std::string(count.attribute), Counted(reasons[i].second, owner),
                      ReasonText(reasons[i].first)});
      }
    }
    if (rest == 0) return;
    table.AddRow({letter, std::string(count.attribute), Counted(rest, owner),
                  Counted(reasons.size() - kMaxReasons, "other reason")});
  });
  return table.empty() ? std::string() : '\n' + table.text(terminal);
}

}  // namespace fabscan
