#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <vector>

#include "cli/output/table.h"
#include "cli/selection/guid_options.h"
#include "cli/show/field_forms.h"
#include "cli/show/show_report.h"
#include "fabrics/collected_attributes.h"
#include "fabscan/fabscan_sim_info_dump.h"
#include "model/harmless_name.h"

namespace fabscan {

namespace {

std::vector<Column> ColumnsOf(const std::string& title) {
  return {{title}, {""}, {"", false, Narrow::kWrap}};
}

std::string NumberText(u_int64_t value, const FieldRow& row, const FieldForm& form) {
  const bool hexadecimal = form.hexadecimal || row.identity != Identity::kNone;
  return hexadecimal ? fmt::format("0x{:0{}x}", value, 2 * row.size) : std::to_string(value);
}

template <class IsSet>
void AddBits(Table& table, const std::vector<const char*>& names, const IsSet& is_set) {
  for (std::size_t bit = 0; bit < names.size(); ++bit) {
    if (names[bit] != nullptr && is_set(bit))
      table.AddRow({"", fmt::format("bit {}", bit), names[bit]});
  }
}

/// The text of a character field, up to the first zero.
std::string CharactersText(const void* record, const FieldRow& row) {
  std::string text(static_cast<const char*>(row.element(record, 0)), row.count);
  text.erase(std::min(text.find('\0'), text.size()));
  return '"' + HarmlessName(text) + '"';
}

void AddNumber(Table& table, const RecordTable& fields, const FieldRow& row, const void* record,
               const std::string& path) {
  const FieldForm form = FormOf(fields.name, row.name);
  const u_int64_t value = LoadNumber(row.element(record, 0), row.size);
  const std::string meaning = form.meaning == nullptr ? "" : form.meaning(value);
  table.AddRow({path, NumberText(value, row, form), meaning.empty() ? "" : '(' + meaning + ')'});
  if (form.bit_names == nullptr) return;
  AddBits(table, *form.bit_names, [value](std::size_t bit) { return ((value >> bit) & 1U) != 0; });
}

void AddNumbers(Table& table, const RecordTable& fields, const FieldRow& row, const void* record,
                const std::string& path) {
  const FieldForm form = FormOf(fields.name, row.name);
  std::string text;
  for (std::size_t i = 0; i < row.count; ++i) {
    text +=
        (i == 0 ? "" : " ") + NumberText(LoadNumber(row.element(record, i), row.size), row, form);
  }
  table.AddRow({path, text, ""});
}

void AddFields(Table& table, const RecordTable& fields, const void* record,
               const std::string& prefix = {}) {
  for (const FieldRow& row : fields) {
    const std::string path = prefix + std::string(row.name);
    if (row.nested != nullptr) {
      for (std::size_t i = 0; i < row.count; ++i) {
        AddFields(table, *row.nested, row.element(record, i),
                  path + (row.is_array ? fmt::format("[{}].", i) : "."));
      }
    } else if (row.is_array && row.size == 1) {
      table.AddRow({path, CharactersText(record, row), ""});
    } else if (row.is_array) {
      AddNumbers(table, fields, row, record, path);
    } else {
      AddNumber(table, fields, row, record, path);
    }
  }
}

std::string RecordText(const RecordTable& fields, const std::string& title, const void* record,
                       const Terminal& terminal) {
  Table table(ColumnsOf(title));
  AddFields(table, fields, record);
  return '\n' + table.text(terminal);
}

std::string MaskText(const std::string& title, const capability_mask_t* mask,
                     const std::vector<const char*>& names, const Terminal& terminal) {
  if (mask == nullptr) return {};
  Table table(ColumnsOf(title));
  for (std::size_t word = 0; word < std::size(mask->mask); ++word) {
    table.AddRow({fmt::format("[{}]", word), fmt::format("0x{:08x}", mask->mask[word]), ""});
  }
  AddBits(table, names,
          [mask](std::size_t bit) { return ((mask->mask[bit / 32] >> (bit % 32)) & 1U) != 0; });
  return '\n' + table.text(terminal);
}

std::string NodeRecordsText(const Fabscan& fabscan, const IBNode& node, const Terminal& terminal) {
  std::string text;
  ForEachRecord(fabscan.fabric_extended_info, node,
                [&](const RecordTable& fields, const void* record) {
                  text += RecordText(fields, std::string(fields.name), record, terminal);
                });
  const CapabilityModule& masks = fabscan.capability_module;
  text +=
      MaskText("smpCapabilityMask", masks.find(node, false), SimInfoData::SMPCapMaskBits, terminal);
  text +=
      MaskText("gmpCapabilityMask", masks.find(node, true), SimInfoData::GMPCapMaskBits, terminal);
  return text;
}

std::string PortRecordsText(const Fabscan& fabscan, const IBPort& port, const Terminal& terminal) {
  std::string text;
  ForEachRecord(fabscan.fabric_extended_info, port,
                [&](const RecordTable& fields, int index, const void* record) {
                  const std::string which = index == kOnlyOne ? "" : fmt::format("[{}]", index);
                  text +=
                      RecordText(fields, fmt::format("port {} {}{}", port.num, fields.name, which),
                                 record, terminal);
                });
  return text;
}

}  // namespace

std::string ShowValues(const Fabscan& fabscan, const IBNode& node,
                       const std::optional<unsigned>& port, const Terminal& terminal) {
  std::string text =
      fmt::format("{} ({})\n", Painted(node.name, Style::kHead, terminal), GuidText(node.guid));
  const std::size_t head = text.size();
  if (!port) text += NodeRecordsText(fabscan, node, terminal);
  for (const IBPort* shown : PortsOf(node)) {
    if (!port || shown->num == *port) text += PortRecordsText(fabscan, *shown, terminal);
  }
  return text.size() > head ? text : text + "\nno values were collected\n";
}

}  // namespace fabscan
