// HostRoots: the roots, filled from this host's kernel and entered in the root directory for as long as it stands.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "apps/show/Roots.h"

#include <functional>
#include <string>
#include <vector>

namespace Apps::Show {

/// Reads the kernel. Throws KernelError.
using ReadFigures = std::function<Kernel::KernelFigures()>;

/// Puts a request to a responder that calls `read` and fills the roots. Returns what the reader should know about the
/// figures: sentences. Throws what `read` throws.
[[nodiscard]] std::vector<std::string> fillFrom(ReadFigures const& read, Roots const& roots);

class HostRoots {
 public:
  /// Throws what `read` throws.
  explicit HostRoots(ReadFigures const& read);
  HostRoots(HostRoots const&) = delete;
  HostRoots& operator=(HostRoots const&) = delete;
  ~HostRoots();

  [[nodiscard]] Roots const& roots() const noexcept { return roots_; }
  /// What the reader should know about the figures: sentences.
  [[nodiscard]] std::vector<std::string> const& notices() const noexcept { return notices_; }

 private:
  Roots const roots_;
  std::vector<std::string> const notices_;
};

}  // namespace Apps::Show
