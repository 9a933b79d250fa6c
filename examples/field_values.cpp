#include "examples/field_values.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace fabscan {

namespace {

/// Reads the index of `name[index]` and removes it from `name`; 0 if it has no index.
std::size_t TakeIndex(std::string_view& name) {
  const std::size_t bracket = name.find('[');
  if (bracket == name.npos) return 0;
  const std::string digits(name.substr(bracket + 1));
  name = name.substr(0, bracket);
  return std::stoul(digits);
}

void SetField(const RecordTable& table, void* record, std::string_view path, u_int64_t value) {
  const std::size_t dot = path.find('.');
  std::string_view name = path.substr(0, dot);
  const std::size_t index = TakeIndex(name);
  const FieldRow* row = FindField(table, name);
  const bool is_record = dot != path.npos;
  if (row == nullptr || index >= row->count || is_record != (row->nested != nullptr)) {
    throw std::invalid_argument(std::string(table.name) + " has no field " + std::string(path));
  }
  void* element = row->element(record, index);
  if (is_record) return SetField(*row->nested, element, path.substr(dot + 1), value);
  if (value > row->largest()) {
    throw std::invalid_argument(std::string(path) + " cannot hold " + std::to_string(value));
  }
  StoreNumber(element, row->size, value);
}

}  // namespace

void SetFields(const RecordTable& record_table, void* record, const FieldTable& values,
               std::size_t column) {
  for (const FieldValues& row : values) {
    SetField(record_table, record, row.field, row.columns.at(column));
  }
}

capability_mask_t MakeMask(const std::vector<const char*>& bit_names, const FieldTable& values,
                           std::size_t column) {
  capability_mask_t mask{};
  for (const FieldValues& row : values) {
    const auto found = std::find_if(bit_names.begin(), bit_names.end(), [&row](const char* name) {
      return name != nullptr && row.field == name;
    });
    if (found == bit_names.end()) {
      throw std::invalid_argument("no capability is named " + std::string(row.field));
    }
    const auto bit = static_cast<std::size_t>(found - bit_names.begin());
    if (row.columns.at(column) != 0) mask.mask[bit / 32] |= u_int32_t{1} << (bit % 32);
  }
  return mask;
}

}  // namespace fabscan
