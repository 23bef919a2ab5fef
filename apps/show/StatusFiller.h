// Puts what was read from the kernel into the entities, through their setters.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "apps/show/Roots.h"

namespace Apps::Show {

/// Sets every attribute that the kernel has a figure for, and takes out of collections what the kernel no longer has.
/// Reactors are told of what changes, and of nothing else. The answer to a request (`statusResponseId`,
/// `statusUpdatedTime`) stays as it is.
void fill(Roots const& roots, Kernel::KernelFigures const& figures);

}  // namespace Apps::Show
