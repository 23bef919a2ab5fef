// dornl3 watch --local: the entities of this host, followed until the reader has enough.
#pragma once

#include "apps/ChangePrinter.h"

#include <functional>

namespace Apps {

/// Prints what is at the paths, and follows them until the changes are told, a signal comes, or nobody reads any more.
/// `notify` hears what the reader should know of what is printed. Throws Misfit, KernelError and std::system_error.
[[nodiscard]] Written watchLocal(WatchOptions const& options, std::function<void(std::string const&)> const& notify);

}  // namespace Apps
