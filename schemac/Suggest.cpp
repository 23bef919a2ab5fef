#include "schemac/Suggest.h"

#include "dornl3/core/Nearest.h"

#include <fmt/format.h>

namespace Schemac {

std::string didYouMean(std::string_view word, std::vector<std::string_view> const& candidates) {
  std::string_view const best = Vek::nearestWord(word, candidates);
  return best.empty() ? std::string{} : fmt::format("; did you mean '{}'?", best);
}

std::string quotedList(std::vector<std::string_view> const& words) {
  std::string list;
  for (std::string_view const word : words) list += fmt::format("{}'{}'", list.empty() ? "" : ", ", word);
  return list;
}

}  // namespace Schemac
