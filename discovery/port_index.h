#ifndef FABSCAN_DISCOVERY_PORT_INDEX_H
#define FABSCAN_DISCOVERY_PORT_INDEX_H

#include <infiniband/tessel/place_index.h>
#include <sys/types.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace fabscan {

/// How ports name each other: a switch has one port GUID for all of its ports.
struct PortKey {
  u_int64_t guid = 0;
  u_int8_t number = 0;

  bool operator==(const PortKey& other) const {
    return guid == other.guid && number == other.number;
  }
};

/// Finds the place of a port by its key. The ports of a GUID mostly stand in a row, and their
/// numbers go up or down by one: such a run takes one entry, however many ports it has.
class PortIndex {
 public:
  static constexpr u_int32_t kNone = PlaceIndex<u_int64_t>::kNone;

  /// Has room for `guids` from the beginning.
  explicit PortIndex(std::size_t guids) : first_runs_(guids) { runs_.reserve(guids); }

  /// Gives the port the next place, from 0 on. False where one with the same key is in already.
  bool Add(const PortKey& key) {
    const bool goes_on = !runs_.empty() && key.guid == last_guid_;
    const u_int32_t first_run = goes_on ? last_first_run_ : first_runs_.Find(key.guid);
    if (PlaceIn(first_run, key.number) != kNone) return false;
    if (!goes_on || !runs_.back().Extend(key.number)) BeginRun(key, first_run);
    ++ports_;
    return true;
  }

  /// The place of the port with this key, or `kNone`.
  u_int32_t Find(const PortKey& key) const {
    return PlaceIn(first_runs_.Find(key.guid), key.number);
  }

 private:
  struct Run {
    u_int32_t place;  // of its first port
    u_int32_t next;   // run of the same GUID, or `kNone`
    u_int8_t number;  // of its first port
    int step = 0;     // from number to number: 1 or -1, 0 for a single port
    int ports = 1;

    bool Extend(u_int8_t next_number) {
      const int distance = next_number - number;
      if (ports == 1 && (distance == 1 || distance == -1)) step = distance;
      if (distance != step * ports) return false;
      ++ports;
      return true;
    }
    u_int32_t PlaceOf(u_int8_t wanted) const {
      const int distance = step < 0 ? number - wanted : wanted - number;
      if (distance < 0 || distance >= ports) return kNone;
      return place + static_cast<u_int32_t>(distance);
    }
  };

  u_int32_t PlaceIn(u_int32_t run, u_int8_t number) const {
    u_int32_t place = kNone;
    for (; run != kNone && place == kNone; run = runs_[run].next) {
      place = runs_[run].PlaceOf(number);
    }
    return place;
  }

  /// A GUID's other runs stand behind its first one, which is the one in the index.
  void BeginRun(const PortKey& key, u_int32_t first_run) {
    const auto run = static_cast<u_int32_t>(runs_.size());
    u_int32_t next = kNone;
    if (first_run == kNone) {
      first_run = run;
      first_runs_.Insert(key.guid, run);
    } else {
      next = std::exchange(runs_[first_run].next, run);
    }
    runs_.push_back({ports_, next, key.number});
    last_guid_ = key.guid;
    last_first_run_ = first_run;
  }

  PlaceIndex<u_int64_t> first_runs_;  // by GUID
  std::vector<Run> runs_;
  u_int32_t ports_ = 0;

  // Of the last run.
  u_int64_t last_guid_ = 0;
  u_int32_t last_first_run_ = kNone;  // with this GUID
};

}  // namespace fabscan

#endif
