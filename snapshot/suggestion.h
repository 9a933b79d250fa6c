#ifndef FABSCAN_SNAPSHOT_SUGGESTION_H
#define FABSCAN_SNAPSHOT_SUGGESTION_H

#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

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
