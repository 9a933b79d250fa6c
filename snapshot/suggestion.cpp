#include "suggestion.h"

#include <harmless_name.h>

#include <algorithm>
#include <cctype>
#include <numeric>

namespace fabscan {

namespace {

constexpr std::size_t kShown = 60;

char Lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

/// Least number of characters to insert, drop or change; letter case counts for nothing.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t change = diagonal + (Lower(a[i]) == Lower(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({change, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& candidates,
                       std::string_view otherwise) {
  std::string_view nearest;
  std::size_t least = 1 + word.size() / 3;
  if (word.size() <= kShown) {
    for (const std::string_view candidate : candidates) {
      const std::size_t distance = Distance(word, candidate);
      if (distance > least || (distance == least && !nearest.empty())) continue;
      least = distance;
      nearest = candidate;
    }
  }
  if (nearest.empty()) return "; " + std::string(otherwise);
  return "; did you mean " + Quoted(nearest) + "?";
}

std::string Quoted(std::string_view text) {
  std::string shown = HarmlessName(text.substr(0, kShown));
  if (text.size() > kShown) shown += "...";
  return '"' + shown + '"';
}

std::string Alternatives(const std::vector<std::string_view>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i != 0) text += i + 1 == words.size() ? " or " : ", ";
    text += Quoted(words[i]);
  }
  return text;
}

}  // namespace fabscan
