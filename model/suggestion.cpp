#include "model/suggestion.h"

#include <algorithm>
#include <cctype>

#include "model/harmless_name.h"

namespace fabscan {

namespace {

constexpr std::size_t kShown = 60;

char Lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

bool Same(char a, char b) { return Lower(a) == Lower(b); }

}  // namespace

std::size_t EditDistance(std::string_view from, std::string_view to) {
  const std::size_t width = to.size() + 1;
  std::vector<std::size_t> table((from.size() + 1) * width);
  const auto at = [&](std::size_t row, std::size_t column) -> std::size_t& {
    return table[row * width + column];
  };
  for (std::size_t i = 0; i <= from.size(); ++i) at(i, 0) = i;
  for (std::size_t j = 0; j <= to.size(); ++j) at(0, j) = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t change = Same(from[i - 1], to[j - 1]) ? 0U : 1U;
      at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + change});
      if (i > 1 && j > 1 && Same(from[i - 1], to[j - 2]) && Same(from[i - 2], to[j - 1])) {
        at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
      }
    }
  }
  return at(from.size(), to.size());
}

std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& candidates,
                       std::string_view otherwise) {
  const std::string_view nearest = NearestWord(word, candidates);
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
