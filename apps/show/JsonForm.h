// The figures as one JSON object: an object for each entity, in it a member for each attribute, by their names. A child
// is an object in that of its parent, a collection one with its keys for names.
#pragma once

#include "apps/show/Figures.h"

#include <string>
#include <vector>

namespace Apps::Show {

/// Indented, with a line end behind it. Times are seconds since 1970.
[[nodiscard]] std::string jsonForm(std::vector<Figure> const& figures);

}  // namespace Apps::Show
