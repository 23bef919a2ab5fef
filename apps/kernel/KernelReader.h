// Reads the forwarding state of the kernel behind a MessageSource, once.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "apps/kernel/MessageSource.h"

namespace Apps::Kernel {

/// Reads links, addresses, neighbours, next-hop objects and routes, one table after the other. Malformed messages are
/// counted and passed over. Throws KernelError.
[[nodiscard]] KernelFigures readKernel(MessageSource& source);

}  // namespace Apps::Kernel
