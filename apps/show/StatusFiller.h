// Puts what was read from the kernel into the entities, through their setters.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "apps/show/Roots.h"

#include <string>
#include <vector>

namespace Apps::Show {

/// Sets every attribute that the kernel has a figure for, and takes out of collections what the kernel no longer has.
/// Reactors are told of what changes, and of nothing else. The answer to a request stays as it is.
void fill(Roots const& roots, Kernel::KernelFigures const& figures);

/// The answer to a request whose figures are in place.
struct Answer {
  Vek::U64 request;  // its id
  double time;       // seconds since 1970
};
void answer(Roots const& roots, Answer const& answer);

enum class Reading { once, following };

/// The paths of all that is filled by these, and by whoever puts a request. What is in such a place is filled as well.
/// The times of changes are known to who follows.
[[nodiscard]] std::vector<std::string> filledPaths(Reading reading);

}  // namespace Apps::Show
