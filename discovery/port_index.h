#ifndef FABSCAN_DISCOVERY_PORT_INDEX_H
#define FABSCAN_DISCOVERY_PORT_INDEX_H

#include <infiniband/tessel/place_index.h>
#include <sys/types.h>

#include <cstddef>
#include <vector>

namespace fabscan {

/// Identifies a port: a switch has one port GUID for all of its ports. Packed, so that it needs 16
/// bytes together with an index.
struct [[gnu::packed]] PortKey {
  u_int64_t guid = 0;
  u_int8_t number = 0;

  bool operator==(const PortKey& other) const {
    return guid == other.guid && number == other.number;
  }
};

inline u_int64_t HashOf(const PortKey& key) { return HashOf(HashOf(key.guid) + key.number); }

/// Finds the index of a port by its key. The ports of a GUID are mostly consecutive, with numbers
/// that increase or decrease by one: such a run needs one entry for any number of ports, which
/// keeps the index small. Each other port needs its own entry.
class PortIndex {
 public:
  static constexpr u_int32_t kNone = PlaceIndex<u_int64_t>::kNone;

  /// Reserves space for `guids` GUIDs.
  explicit PortIndex(std::size_t guids) : run_by_guid_(guids) { runs_.reserve(guids); }

  /// Gives the port the next index, starting with 0. Returns false for a duplicate key.
  bool Add(const PortKey& key) {
    if (key.guid != last_guid_) {
      last_guid_ = key.guid;
      last_run_ = run_by_guid_.Find(key.guid);
    }
    if (last_run_ == kNone) {
      last_run_ = static_cast<u_int32_t>(runs_.size());
      run_by_guid_.Insert(key.guid, last_run_);
      runs_.push_back({ports_, key.number});
    } else {
      if (PlaceOf(key, last_run_) != kNone) return false;
      if (!runs_[last_run_].Extend(ports_, key.number)) others_.Insert(key, ports_);
    }
    ++ports_;
    return true;
  }

  /// The index of the port with this key, or `kNone`.
  u_int32_t Find(const PortKey& key) const {
    const u_int32_t run = run_by_guid_.Find(key.guid);
    return run == kNone ? kNone : PlaceOf(key, run);
  }

 private:
  /// The first port of a GUID, and those that follow it.
  struct Run {
    u_int32_t first_place;
    u_int8_t first_number;
    int step = 0;  // from number to number: 1 or -1, 0 for a single port
    u_int32_t ports = 1;

    bool Extend(u_int32_t place, u_int8_t number) {
      const int distance = number - first_number;
      if (place != first_place + ports) return false;
      if (ports == 1 && (distance == 1 || distance == -1)) step = distance;
      if (distance != step * static_cast<int>(ports)) return false;
      ++ports;
      return true;
    }
    u_int32_t PlaceOf(u_int8_t number) const {
      const int distance = step < 0 ? first_number - number : number - first_number;
      const bool has = distance >= 0 && static_cast<u_int32_t>(distance) < ports;
      return has ? first_place + static_cast<u_int32_t>(distance) : kNone;
    }
  };

  u_int32_t PlaceOf(const PortKey& key, u_int32_t run) const {
    const u_int32_t place = runs_[run].PlaceOf(key.number);
    return place == kNone ? others_.Find(key) : place;
  }

  PlaceIndex<u_int64_t> run_by_guid_;
  std::vector<Run> runs_;
  PlaceIndex<PortKey> others_;
  u_int32_t ports_ = 0;

  // The port that was added last.
  u_int64_t last_guid_ = 0;
  u_int32_t last_run_ = kNone;
};

}  // namespace fabscan

#endif
