// dornl3 watch --local: the entities of this host, followed until the reader has enough.
#pragma once

#include "apps/StandardOutput.h"
#include "apps/attributes/Change.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Apps {

struct WatchOptions {
  bool local = false;
  bool json = false;
  bool recursive = false;
  bool whole = false;  // records in one piece
  bool all = false;    // also what is not filled
  bool stamped = false;
  std::optional<std::uint64_t> changes;  // after how many it ends
  std::vector<std::string> paths;        // none: everything
};

/// Prints what is at the paths, and follows them until the changes are told, a signal comes, or nobody reads any more.
/// `notify` hears what the reader should know of what is printed. Throws Misfit, KernelError and std::system_error.
[[nodiscard]] Written watchLocal(WatchOptions const& options, std::function<void(std::string const&)> const& notify);

}  // namespace Apps
