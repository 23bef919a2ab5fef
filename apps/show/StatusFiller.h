// Puts what was read from the kernel into the entities, through their setters.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "apps/show/Roots.h"

namespace Apps::Show {

/// Sets every attribute that the kernel has a figure for. Reactors are told of those that change. The answer to a
/// request (`statusResponseId`, `statusUpdatedTime`) stays as it is.
void fill(Roots const& roots, Kernel::KernelFigures const& figures);

}  // namespace Apps::Show
