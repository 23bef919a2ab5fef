// Replicate: this host's roots, mounted over an attribute log inside this process, and both ends compared.
#pragma once

#include "apps/kernel/MessageSource.h"

#include <string>
#include <vector>

namespace Apps::Show {

struct Replicated {
  std::string output;
  std::vector<std::string> notices;
  bool areEqual = false;
};

/// Reads the kernel, exports each root from one end of a stream and mounts it at the other, and compares their digests
/// when all are in step. Throws KernelError.
[[nodiscard]] Replicated replicateLocal(Kernel::MessageSource& source);

}  // namespace Apps::Show
