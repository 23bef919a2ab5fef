// HostRoots: the roots, filled from this host's kernel and entered in the root directory for as long as it stands.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "apps/show/Roots.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Apps::Show {

/// Reads the kernel. Throws KernelError.
using ReadFigures = std::function<Kernel::KernelFigures()>;

/// Names of tables that changed while they were read.
using Interrupted = std::vector<std::string_view>;

/// Who asks for the figures of the first reading: whoever reads, or others later, so that it answers nobody.
enum class Asker { self, others };

/// Puts a request, fills the roots with what `read` gives, and answers. Throws what `read` throws.
[[nodiscard]] Interrupted fillFrom(ReadFigures const& read, Roots const& roots);

/// What the reader of figures should know of such tables: a sentence each.
[[nodiscard]] std::vector<std::string> noticesOf(Interrupted const& interrupted);

class HostRoots {
 public:
  /// Throws what `read` throws.
  HostRoots(ReadFigures const& read, Asker asker);
  HostRoots(HostRoots const&) = delete;
  HostRoots& operator=(HostRoots const&) = delete;
  ~HostRoots();

  [[nodiscard]] Roots const& roots() const noexcept { return roots_; }
  [[nodiscard]] Interrupted const& interrupted() const noexcept { return interrupted_; }

 private:
  Roots const roots_;
  Interrupted const interrupted_;
};

}  // namespace Apps::Show
