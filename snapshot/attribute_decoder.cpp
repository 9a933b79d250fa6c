#include "snapshot/attribute_decoder.h"

#include "snapshot/known_keys.h"
#include "snapshot/record_text.h"

namespace fabscan {

namespace {

enum PortRecordIndex : std::size_t {
  kCounters = kPortRecords.size(),
  kMonitors,
  kPortRecordCount,
};

constexpr auto NamesOfPortRecords() {
  std::array<std::string_view, kPortRecordCount> names;
  for (std::size_t i = 0; i < kPortRecords.size(); ++i) names[i] = kPortRecords[i].table->name;
  names[kCounters] = kCountersTable.name;
  names[kMonitors] = kMonitorsTable.name;
  return names;
}

constexpr auto kPortRecordNames = NamesOfPortRecords();

constexpr std::array<std::string_view, TesselExtendedInfo::kCounterSets> kCounterIndexes = {
    "0", "1", "2", "3", "4", "5", "6", "7"};

const auto& RecordsOf(const IBNode*) { return kNodeRecords; }
const auto& RecordsOf(const IBPort*) { return kPortRecordNames; }

std::string ElsewhereAdvice(const IBNode*, std::string_view key) {
  return FindPortRecord(key) != nullptr ? "it is a port's; move it to the port" : "";
}
std::string ElsewhereAdvice(const IBPort*, std::string_view key) {
  return FindNodeRecord(key) != nullptr ? "it is a node's; move it to the node" : "";
}

template <class Owner>
std::string Elsewhere(std::string_view key) {
  return ElsewhereAdvice(static_cast<const Owner*>(nullptr), key);
}

/// Takes an object of fields into `record`, which is zeroed. Throws Malformed and
/// simdjson::simdjson_error; `path` then tells where.
void DecodeRecord(json::value value, const RecordTable& table, void* record, KeyPath& path);

void DecodeElement(json::value value, const FieldRow& row, void* element, KeyPath& path) {
  if (row.nested == nullptr) {
    StoreNumber(element, row.size, TakeNumber(value, row.bits()));
  } else {
    DecodeRecord(value, *row.nested, element, path);
  }
}

void DecodeElements(json::array elements, const FieldRow& row, void* record, KeyPath& path) {
  std::size_t count = 0;
  for (auto element : elements) {
    if (count < row.count) {
      path.EnterElement(count);
      DecodeElement(Take(element), row, row.element(record, count), path);
      path.Leave();
    }
    ++count;
  }
  if (count != row.count) {
    throw Malformed("the list has " + std::to_string(count) + " elements; give " +
                    std::to_string(row.count));
  }
}

[[noreturn]] void RefuseMissing(const RecordTable& table, u_int64_t missing) {
  std::size_t first = 0;
  while (((missing >> first) & 1U) == 0) ++first;
  throw Malformed("the field " + Quoted(table.rows[first].name) +
                  " is missing, which the generated file needs; add it, or omit the record and "
                  "give the reason under \"absent\"");
}

void DecodeRecord(json::value value, const RecordTable& table, void* record, KeyPath& path) {
  // Parts of a value that are not read here are skipped when its object continues.
  if (TakeCanonicalRecord(table, value.raw_json_token().data(), record)) return;
  KnownKeys known(table, "field");
  for (auto item : TakeObject(value)) {
    json::field field = Take(std::move(item));
    const FieldRow& row = table.rows[known.Find(field)];
    path.Enter(row.name);
    if (row.is_array) {
      DecodeElements(TakeArray(field.value()), row, record, path);
    } else {
      DecodeElement(field.value(), row, row.element(record, 0), path);
    }
    path.Leave();
  }
  const u_int64_t missing = table.dumped_rows & ~known.seen();
  if (missing != 0) RefuseMissing(table, missing);
}

std::string CounterAdvice(std::string_view) { return "give counter sets \"0\" to \"7\""; }

void DecodeCounters(json::object sets, const IBPort& port, TesselExtendedInfo& store,
                    KeyPath& path) {
  KnownKeys known(kCounterIndexes, "counter set", CounterAdvice);
  for (auto item : sets) {
    json::field field = Take(std::move(item));
    const std::size_t index = known.Find(field);
    path.Enter(kCounterIndexes[index]);
    DecodeRecord(field.value(), kCountersTable,
                 &store.putCounters(port, static_cast<u_int32_t>(index)), path);
    path.Leave();
  }
}

void DecodeMonitors(json::array selectors, const IBPort& port, TesselExtendedInfo& store,
                    KeyPath& path) {
  std::size_t element = 0;
  for (auto item : selectors) {
    path.EnterElement(element++);
    const u_int64_t selector = TakeNumber(Take(item), 8);
    if (selector >= TesselExtendedInfo::kMonitorSelectors) {
      throw Malformed("monitor selector " + std::to_string(selector) +
                      " is unknown; use 0 (reduction counters) or 1 (push reduction counters)");
    }
    const auto known = static_cast<u_int8_t>(selector);
    if (store.getWrenReductionConfigureMLIDMonitors(port.createIndex, known) != nullptr) {
      throw Malformed("duplicate monitor selector " + std::to_string(selector) + "; keep one");
    }
    store.putMonitors(port, known);
    path.Leave();
  }
}

}  // namespace

template <>
void AttributeDecoder<IBNode>::DecodeAttribute(json::value value, std::size_t index) {
  const RecordKind<IBNode>& kind = kNodeRecords[index];
  DecodeRecord(value, *kind.table, kind.put(store_, owner_), path_);
}

template <>
void AttributeDecoder<IBPort>::DecodeAttribute(json::value value, std::size_t index) {
  switch (index) {
    case kCounters:
      DecodeCounters(TakeObject(value), owner_, store_, path_);
      break;
    case kMonitors:
      DecodeMonitors(TakeArray(value), owner_, store_, path_);
      break;
    default:
      const RecordKind<IBPort>& kind = kPortRecords[index];
      DecodeRecord(value, *kind.table, kind.put(store_, owner_), path_);
  }
}

template <class Owner>
void AttributeDecoder<Owner>::DecodeAttributes(json::value value) {
  const auto& records = RecordsOf(&owner_);
  KnownKeys known(records, "record", Elsewhere<Owner>);
  for (auto item : TakeObject(value)) {
    json::field field = Take(std::move(item));
    const std::size_t index = known.Find(field);
    path_.Enter(NameOf(records[index]));
    DecodeAttribute(field.value(), index);
    path_.Leave();
  }
  present_ = known.seen();
}

template <class Owner>
void AttributeDecoder<Owner>::DecodeAbsent(json::value value) {
  const auto& records = RecordsOf(&owner_);
  KnownKeys known(records, "record", Elsewhere<Owner>);
  for (auto item : TakeObject(value)) {
    json::field field = Take(std::move(item));
    const std::string_view record = NameOf(records[known.Find(field)]);
    path_.Enter(record);
    store_.setAbsent(owner_, record, TakeText(field.value()));
    path_.Leave();
  }
  absent_ = known.seen();
}

template <class Owner>
void AttributeDecoder<Owner>::CheckAbsent() {
  const auto& records = RecordsOf(&owner_);
  for (std::size_t i = 0; i < records.size(); ++i) {
    if ((((present_ & absent_) >> i) & 1U) == 0) continue;
    path_.Enter("absent");
    path_.Enter(NameOf(records[i]));
    throw Malformed("the record is also under \"attributes\"; keep one of the two");
  }
}

template class AttributeDecoder<IBNode>;
template class AttributeDecoder<IBPort>;

}  // namespace fabscan
