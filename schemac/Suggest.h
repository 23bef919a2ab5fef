// Suggest: what a misspelt word may have meant.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace Schemac {

/// `; did you mean 'increment'?` for the candidate that differs from `word` in the fewest letters, or nothing where
/// none is near: one letter may differ, and of longer words up to a third of the letters, never more than three.
[[nodiscard]] std::string didYouMean(std::string_view word, std::vector<std::string_view> const& candidates);

/// `'a', 'b', 'c'`
[[nodiscard]] std::string quotedList(std::vector<std::string_view> const& words);

}  // namespace Schemac
