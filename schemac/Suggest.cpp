#include "schemac/Suggest.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

namespace Schemac {

namespace {

// Letters to insert, drop or change to make `b` of `a`.
std::size_t distance(std::string_view a, std::string_view b) {
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

constexpr std::size_t longestWord = 64;  // longer ones are no slips of the pen, and cost time to compare

}  // namespace

std::string didYouMean(std::string_view word, std::vector<std::string_view> const& candidates) {
  if (word.size() > longestWord) return {};
  std::size_t nearest = std::min<std::size_t>(3, std::max<std::size_t>(1, word.size() / 3)) + 1;
  std::string_view best;
  for (std::string_view const candidate : candidates) {
    if (std::size_t const d = distance(word, candidate); d < nearest) {
      nearest = d;
      best = candidate;
    }
  }
  return best.empty() ? std::string{} : fmt::format(", did you mean '{}'?", best);
}

std::string quotedList(std::vector<std::string_view> const& words) {
  std::string list;
  for (std::string_view const word : words) list += fmt::format("{}'{}'", list.empty() ? "" : ", ", word);
  return list;
}

}  // namespace Schemac
