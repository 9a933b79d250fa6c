#ifndef FABSCAN_MODEL_SUGGESTION_H
#define FABSCAN_MODEL_SUGGESTION_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// How many letters must be inserted, dropped, changed, or swapped with their neighbour to come
/// from one word to the other; upper and lower case are the same.
std::size_t EditDistance(std::string_view from, std::string_view to);

/// The one of `candidates` that `word` was probably meant to be; empty where none is near, and for
/// a word longer than any is.
template <class Words>
std::string_view NearestWord(std::string_view word, const Words& candidates) {
  constexpr std::size_t kLongest = 60;
  std::size_t least = 1 + word.size() / 3;
  std::string_view nearest;
  if (word.size() > kLongest) return nearest;
  for (const std::string_view candidate : candidates) {
    const std::size_t distance = EditDistance(word, candidate);
    if (distance > least || (distance == least && !nearest.empty())) continue;
    least = distance;
    nearest = candidate;
  }
  return nearest;
}

/// `; did you mean "..."?` with the candidate that is nearest to `word`; `otherwise` where none is
/// near.
std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& candidates,
                       std::string_view otherwise);

/// Text of a file for a one-line message: quoted, harmless, and cut where it is long.
std::string Quoted(std::string_view text);

/// `"A", "B" or "C"`.
std::string Alternatives(const std::vector<std::string_view>& words);

}  // namespace fabscan

#endif
