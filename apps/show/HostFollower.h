// HostFollower: the roots in the root directory, kept current from the kernel's notifications.
// Owner: the command. Thread: one.
#pragma once

#include "apps/kernel/KernelFollower.h"
#include "apps/show/HostRoots.h"

namespace Apps::Show {

class HostFollower {
 public:
  /// Uses both sources, owns neither; see KernelFollower. Throws KernelError.
  HostFollower(Kernel::MessageSource& questions, Kernel::NotificationSource& notifications,
               Kernel::KernelFollower::Pace pace = {}, Asker asker = Asker::self);

  /// Takes what the kernel has told; true if the roots are to be filled. Throws KernelError.
  bool advance() { return follower_.advance(); }
  /// How long advance() can wait if nothing is told; nothing if for ever.
  [[nodiscard]] std::optional<std::chrono::milliseconds> patience() const { return follower_.patience(); }

  /// Fills the roots, unless a fresh reading is due: advance() is then true once it is done.
  void publish();
  /// Reads the kernel now, and fills the roots from that. Throws KernelError.
  void refresh();
  [[nodiscard]] Roots const& roots() const noexcept { return roots_.roots(); }

  /// What the reader should know about the figures since the last call: sentences.
  [[nodiscard]] std::vector<std::string> notices();

 private:
  Kernel::KernelFollower follower_;
  HostRoots const roots_;
  Interrupted interrupted_ = roots_.interrupted();
  Interrupted told_;
  std::string toldFailure_;
};

}  // namespace Apps::Show
