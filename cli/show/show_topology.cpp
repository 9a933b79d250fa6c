#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "cli/output/counted.h"
#include "cli/output/node_text.h"
#include "cli/output/table.h"
#include "cli/show/show_report.h"
#include "fabrics/topology_summary.h"

namespace fabscan {

namespace {

// So that all lines fit a screen.
constexpr std::size_t kMostGroups = 12;

std::string LevelText(int level) {
  return level == TopologyLevels::kNone ? "-" : std::to_string(level);
}

template <class Group, class AddRow>
std::string TableText(Table& table, const std::vector<Group>& groups, const AddRow& add_row,
                      const Terminal& terminal) {
  const std::size_t shown = std::min(groups.size(), kMostGroups);
  for (std::size_t i = 0; i < shown; ++i) add_row(groups[i]);
  std::string text = table.text(terminal);
  if (groups.size() > shown) text += fmt::format("and {} more\n", groups.size() - shown);
  return text;
}

std::string SwitchesText(const std::vector<SwitchGroup>& groups, const Terminal& terminal) {
  Table table({{"level"},
               {"switches", true},
               {"ports", true},
               {"down", true},
               {"up", true},
               {"other", true},
               {"down:up", true},
               {"for example", false, Narrow::kCut}});
  const auto add = [&table](const SwitchGroup& group) {
    const double ratio = group.oversubscription();
    table.AddRow({LevelText(group.level), std::to_string(group.switches.size()),
                  std::to_string(group.ports), std::to_string(group.down), std::to_string(group.up),
                  std::to_string(group.sideways), ratio > 0 ? fmt::format("{:.2f}", ratio) : "",
                  group.switches.front()->name});
  };
  return TableText(table, groups, add, terminal);
}

std::string LinksText(const std::vector<LinkGroup>& groups, const Terminal& terminal) {
  Table table({{"levels"}, {"links", true}, {"width"}, {"speed"}});
  const auto add = [&table](const LinkGroup& group) {
    table.AddRow({LevelText(group.lower) + " to " + LevelText(group.upper),
                  std::to_string(group.links), OrDash(std::string(group.width)),
                  OrDash(std::string(group.speed))});
  };
  return TableText(table, groups, add, terminal);
}

}  // namespace

std::string ShowTopology(const Fabscan& fabscan, const Terminal& terminal) {
  const TopologySummary summary = SummariseTopology(fabscan);
  std::string text =
      SwitchesText(summary.switches, terminal) + '\n' + LinksText(summary.links, terminal) + '\n' +
      Paragraph(fmt::format("level 0: {}", Counted(summary.adapters, "adapter")), terminal);
  if (summary.parts.size() > 1) {
    text += Paragraph(
        fmt::format("not connected: {} parts; the largest has {}, the next one, with {}, {}",
                    summary.parts.size(), Counted(summary.parts[0].size(), "node"),
                    summary.parts[1].front()->name, Counted(summary.parts[1].size(), "node")),
        terminal);
  }
  return text;
}

}  // namespace fabscan
