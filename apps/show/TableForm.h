// The figures as tables for people.
#pragma once

#include "apps/show/Figures.h"

#include <string>
#include <vector>

namespace Apps::Show {

enum class Style {
  plain,
  terminal  // headings stand out by escape sequences
};

/// The style of a terminal of that kind (TERM); `noColor`: the wish of its user (NO_COLOR), which counts where it is
/// not empty. Either may be null.
[[nodiscard]] Style styleFor(char const* terminal, char const* noColor) noexcept;

/// One table a group. A record or a collection is a column, its attributes or members are the rows; what a column does
/// not have is a dash. Below them, the short words that they use are told. Lines stay under 80 columns.
[[nodiscard]] std::string tableForm(std::vector<Figure> const& figures, Style style);

}  // namespace Apps::Show
