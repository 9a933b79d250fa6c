#include "fabrics/ignored_fields.h"

#include <fmt/format.h>

#include <stdexcept>

#include "model/suggestion.h"
#include "records/record_kinds.h"

namespace fabscan {

namespace {

/// The keys of nodes and ports that are compared.
constexpr std::string_view kKeys[] = {
    "name",
    "alternativeName",
    "guid",
    "type",
    "numPorts",
    "inSubFabric",
    "state",
    "specialNode",
    "opalSwitch",
    "fnm",
    "smpCapabilityMask",
    "gmpCapabilityMask",
    "fnm1",
    "special",
    "absent",
    "peer",
    "portGuid",
    "description",
    "extra",
    "lid",
    "width",
    "speed",
};

void AddFields(std::set<std::string, std::less<>>& to, const RecordTable& table,
               std::string_view record, const std::string& before) {
  for (const FieldRow& row : table) {
    const std::string path = before + std::string(row.name);
    to.emplace(row.name);
    to.insert(path);
    to.insert(fmt::format("{}.{}", record, path));
    if (row.nested != nullptr) AddFields(to, *row.nested, record, path + '.');
  }
}

std::set<std::string, std::less<>> KnownWords() {
  std::set<std::string, std::less<>> words(std::begin(kKeys), std::end(kKeys));
  const auto add = [&words](const RecordTable& table) {
    words.emplace(table.name);
    AddFields(words, table, table.name, {});
  };
  for (const auto& kind : kNodeRecords) add(*kind.table);
  for (const auto& kind : kPortRecords) add(*kind.table);
  add(kCountersTable);
  add(kMonitorsTable);
  return words;
}

}  // namespace

IgnoredFields::IgnoredFields(const std::vector<std::string>& words)
    : words_(words.begin(), words.end()) {
  if (words.empty()) return;
  const auto known = KnownWords();
  for (const std::string& word : words) {
    if (known.count(word) != 0) continue;
    const std::string_view nearest = NearestWord(word, known);
    throw std::invalid_argument(fmt::format(
        "unknown field '{}'; {}", word,
        nearest.empty() ? std::string("use a name as in snapshots, such as LID or SMP_PortInfo.LID")
                        : fmt::format("did you mean '{}'?", nearest)));
  }
}

bool IgnoredFields::Has(std::string_view record, const std::string& path,
                        const FieldRow& row) const {
  return !words_.empty() && (Has(row.name) || Has(path) || Has(fmt::format("{}.{}", record, path)));
}

}  // namespace fabscan
