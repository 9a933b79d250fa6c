#ifndef FABSCAN_DISCOVERY_PAYLOAD_DECODER_H
#define FABSCAN_DISCOVERY_PAYLOAD_DECODER_H

#include <infiniband/tessel/Fabric.h>

#include <string_view>
#include <tuple>
#include <utility>

#include "discovery/payload.h"
#include "records/architecture_records.h"
#include "records/wire.h"

namespace fabscan {

/// Reads the field into the record if the architecture defines its position.
template <class Record, std::size_t kRow>
void DecodeField(const Payload& payload, Record& record) {
  constexpr const FieldRow& kField = TableOf<Record>::value.rows[kRow];
  if constexpr (kField.published()) {
    static_assert(!kField.is_array && EndOf(kField) <= 8 * std::tuple_size_v<Payload>);
    StoreNumber(kField.element(&record, 0), kField.size, ReadBits(payload.data(), kField.place));
  }
}

/// Spelt out field by field, so that the compiler knows each one's place.
template <class Record, std::size_t... kRows>
void DecodeFields(const Payload& payload, Record& record, std::index_sequence<kRows...>) {
  (DecodeField<Record, kRows>(payload, record), ...);
}

/// The record of the attribute that a device answered with this payload: the rows in `records/` say
/// where its fields are. No record has a field for the management key of PortInfo.
template <class Record>
Record Decode(const Payload& payload) {
  Record record = {};
  DecodeFields(payload, record, std::make_index_sequence<TableOf<Record>::value.row_count>());
  return record;
}

/// The text of a NodeDescription, of which `payload` is the bytes: up to the first zero byte,
/// without blanks at its end. The bytes are the device's, unchecked and not copied.
std::string_view DescriptionText(std::string_view payload);

/// The device says in this PortInfo that the port answers PortInfoExtended.
bool HasPortInfoExtended(const Payload& port_info);
/// The physical link is up.
bool IsLinked(const SMP_PortInfo& info);

/// The model's words for what the wire says; unknown for numbers that have no word.
IBNodeType NodeTypeOf(unsigned wire_value);
IBPortState PortStateOf(unsigned wire_value);

}  // namespace fabscan

#endif
