// KernelError: the kernel's tables could not be read. The text is made of sentences for the person at the terminal:
// what was read, why it failed, what to do.
#pragma once

#include <stdexcept>
#include <string_view>

namespace Apps::Kernel {

class KernelError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The error for `what` ("the kernel's routes") that failed with the system's `error` number, with a hint on what
/// helps.
[[nodiscard]] KernelError kernelError(std::string_view what, int error);

}  // namespace Apps::Kernel
