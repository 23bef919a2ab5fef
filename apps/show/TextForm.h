// The figures in the text form of their values: one line each, 'status.numVrfs = 3'; a
// collection has one a member, 'status.inUseArpEntries[0] = 3'.
#pragma once

#include "apps/show/Figures.h"

#include <string>
#include <vector>

namespace Apps::Show {

[[nodiscard]] std::string textForm(std::vector<Figure> const& figures);

}  // namespace Apps::Show
