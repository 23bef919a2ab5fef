// HostRoots: the roots, filled from this host's kernel and entered in the root directory for as long as it stands.
#pragma once

#include "apps/kernel/MessageSource.h"
#include "apps/show/Roots.h"

#include <string>
#include <vector>

namespace Apps::Show {

/// Puts a request to a responder that reads `source` and fills the roots. Returns what the reader should know about the
/// figures: sentences. Throws KernelError.
[[nodiscard]] std::vector<std::string> fillFromKernel(Roots const& roots, Kernel::MessageSource& source);

class HostRoots {
 public:
  /// Throws KernelError.
  explicit HostRoots(Kernel::MessageSource& source);
  HostRoots(HostRoots const&) = delete;
  HostRoots& operator=(HostRoots const&) = delete;
  ~HostRoots();

  /// What the reader should know about the figures: sentences.
  [[nodiscard]] std::vector<std::string> const& notices() const noexcept { return notices_; }

 private:
  Roots const roots_;
  std::vector<std::string> const notices_;
};

}  // namespace Apps::Show
