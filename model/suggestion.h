#ifndef FABSCAN_MODEL_SUGGESTION_H
#define FABSCAN_MODEL_SUGGESTION_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// The number of letters to insert, delete, change, or swap with an adjacent one to get from one
/// word to the other, ignoring case.
std::size_t EditDistance(std::string_view from, std::string_view to);

/// The candidate that `word` probably means; empty if none is near, and for a word that is longer
/// than all candidates.
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

/// `; did you mean "..."?` with the candidate nearest to `word`; `otherwise` if none is near.
std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& candidates,
                       std::string_view otherwise);

/// Text of a file for a one-line message: quoted, harmless, and truncated if long.
std::string Quoted(std::string_view text);

/// `"A", "B" or "C"`.
std::string Alternatives(const std::vector<std::string_view>& words);

}  // namespace fabscan

#endif
