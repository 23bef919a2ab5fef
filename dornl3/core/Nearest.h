// Nearest: which of several words a misspelt one may have meant. Stands on the standard library alone.
// Thread: any.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <vector>

namespace Vek {

/// Letters to insert, drop or change to make `b` of `a`.
[[nodiscard]] inline std::size_t letterDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      std::size_t const change = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, change});
    }
  }
  return row[b.size()];
}

/// The candidate that differs from `word` in the fewest letters, the first of several; empty where none is near: one
/// letter may differ, and of longer words up to a third of the letters, never more than three.
[[nodiscard]] inline std::string_view nearestWord(std::string_view word,
                                                  std::vector<std::string_view> const& candidates) {
  constexpr std::size_t longestWord = 64;  // longer ones are no slips of the pen, and cost time to compare
  if (word.size() > longestWord) return {};
  std::size_t nearest = std::min<std::size_t>(3, std::max<std::size_t>(1, word.size() / 3)) + 1;
  std::string_view best;
  for (std::string_view const candidate : candidates) {
    if (std::size_t const d = letterDistance(word, candidate); d < nearest) {
      nearest = d;
      best = candidate;
    }
  }
  return best;
}

}  // namespace Vek
