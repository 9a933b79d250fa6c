#ifndef OTHER_HEADERS_RECORDING_H
#define OTHER_HEADERS_RECORDING_H

#include <infiniband/fabscan/fabscan_types.h>

#include <ios>
#include <locale>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// What stands behind this tree's classes: the answers that a test sets, and the questions that
/// were asked, in their order. One of each for the whole program.
namespace recording {

/// Every question to the facade, the store and the capability module, as it would be written:
/// `getSMPNodeInfo(3)`, `IsSupportedSMPCapability(S1, 13)`, `GetCapability(S1, SMP)`,
/// `OpenFile(description, name, 4, 0, null)`, `CloseFile(//)`, `WriteFileHeader(//)`.
inline std::vector<std::string> questions;

/// The questions to ports as well, `isFNMPort(3)` by the port's number. Off, as most tests look at
/// what is asked of the tool.
inline bool ports_too = false;

/// A question that is answered by an exception; none while it is empty.
inline std::string throw_at;
struct Refusal {};

inline void Ask(const std::string& question) {
  questions.push_back(question);
  if (question == throw_at) throw Refusal();
}

struct Answers {
  int open_status = 0;
  bool opens_all_the_same = false;  // whatever the status
  std::string output_folder = ".";
  // Of the stream that OpenFile opens.
  std::ios::iostate stream_exceptions = std::ios::goodbit;
  std::locale stream_locale = std::locale::classic();
  std::set<int> smp_bits, gmp_bits;  // supported by every node
  int smp_status = 0, gmp_status = 0;
  capability_mask_t smp_mask = {{0, 0, 0, 0}}, gmp_mask = {{0, 0, 0, 0}};
};
inline Answers answers;

/// The mask that GetCapability was handed last, before it was filled.
inline capability_mask_t mask_as_handed;

/// The records of one type: by index, and for the getters that take a second number, by that too.
template <class Record>
inline std::map<std::pair<u_int32_t, u_int32_t>, Record> records;

template <class Record>
void Put(u_int32_t index, const Record& record, u_int32_t second = 0) {
  records<Record>[{index, second}] = record;
}

template <class Record>
Record* Find(u_int32_t index, u_int32_t second = 0) {
  const auto found = records<Record>.find({index, second});
  return found == records<Record>.end() ? nullptr : &found->second;
}

}  // namespace recording

#endif
