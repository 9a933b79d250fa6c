#ifndef FABSCAN_SNAPSHOT_KNOWN_KEYS_H
#define FABSCAN_SNAPSHOT_KNOWN_KEYS_H

#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "records/record_kinds.h"
#include "snapshot/json_value.h"

namespace fabscan {

constexpr std::string_view NameOf(std::string_view name) { return name; }
constexpr std::string_view NameOf(const FieldRow& row) { return row.name; }
template <class Owner>
constexpr std::string_view NameOf(const RecordKind<Owner>& kind) {
  return kind.table->name;
}

/// Finds the keys of one object in the list of those that it can have, in whatever order they come,
/// but fastest in the list's own.
///
/// `List` holds at most 64 entries, of which `NameOf` gives the names.
template <class List>
class KnownKeys {
 public:
  /// What to do about a key that belongs elsewhere; empty where it belongs nowhere.
  using Advice = std::string (*)(std::string_view key);

  /// `noun`: what errors call an entry ("key", "record").
  KnownKeys(const List& list, std::string_view noun, Advice advice = nullptr)
      : list_(list), noun_(noun), advice_(advice) {}

  /// The index of the field's key in the list. Throws Malformed where the list does not have it, or
  /// where it came before.
  std::size_t Find(json::field& field) {
    const json::raw_json_string key = field.key();
    const auto count = static_cast<std::size_t>(std::end(list_) - std::begin(list_));
    for (std::size_t i = next_; i < count; ++i) {
      if (key.unsafe_is_equal(NameOf(*(std::begin(list_) + i)))) return Mark(i);
    }
    return Mark(Search(Unescaped(key)));
  }

  /// Bit i: entry i was found.
  u_int64_t seen() const { return seen_; }
  bool Has(std::size_t index) const { return ((seen_ >> index) & 1U) != 0; }

 private:
  std::size_t Mark(std::size_t index) {
    if (Has(index)) RefuseSecond(index);
    seen_ |= u_int64_t{1} << index;
    next_ = index + 1;
    return index;
  }

  [[noreturn]] void RefuseSecond(std::size_t index) const {
    throw Malformed("duplicate " + std::string(noun_) + " " +
                    Quoted(NameOf(*(std::begin(list_) + index))) + "; keep one");
  }

  std::size_t Search(std::string_view key) const {
    std::vector<std::string_view> names;
    for (const auto& entry : list_) {
      if (NameOf(entry) == key) return names.size();
      names.push_back(NameOf(entry));
    }
    const std::string advice = advice_ == nullptr ? std::string() : advice_(key);
    throw Malformed("unknown " + std::string(noun_) + " " + Quoted(key) +
                    (advice.empty() ? DidYouMean(key, names, "remove it") : "; " + advice));
  }

  const List& list_;
  std::string_view noun_;
  Advice advice_;
  u_int64_t seen_ = 0;
  std::size_t next_ = 0;
};

}  // namespace fabscan

#endif
