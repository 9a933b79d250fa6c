#ifndef FABSCAN_SNAPSHOT_ATTRIBUTE_DECODER_H
#define FABSCAN_SNAPSHOT_ATTRIBUTE_DECODER_H

#include "records/record_kinds.h"
#include "snapshot/json_value.h"

namespace fabscan {

/// Decodes the records of one node or port, the objects `attributes` and `absent`, into the store.
template <class Owner>
class AttributeDecoder {
 public:
  AttributeDecoder(TesselExtendedInfo& store, const Owner& owner, KeyPath& path)
      : store_(store), owner_(owner), path_(path) {}

  // All throw Malformed and simdjson::simdjson_error; the path then gives the position.

  void DecodeAttributes(json::value value);
  void DecodeAbsent(json::value value);
  /// Refuses records that are both present and absent. Call it after the other two.
  void CheckAbsent();

 private:
  void DecodeAttribute(json::value value, std::size_t index);

  TesselExtendedInfo& store_;
  const Owner& owner_;
  KeyPath& path_;
  u_int64_t present_ = 0;  // bit i: record i of the owner's types
  u_int64_t absent_ = 0;
};

template <>
void AttributeDecoder<IBNode>::DecodeAttribute(json::value value, std::size_t index);
template <>
void AttributeDecoder<IBPort>::DecodeAttribute(json::value value, std::size_t index);

extern template class AttributeDecoder<IBNode>;
extern template class AttributeDecoder<IBPort>;

}  // namespace fabscan

#endif
