// NotificationSocket: the kernel's notifications about links, addresses, neighbours, next hops, routes and forwarding,
// of this process's network namespace. Owner: whoever follows the kernel. Thread: one at a time. Needs no privilege.
#pragma once

#include "apps/kernel/NetlinkChannel.h"
#include "apps/kernel/NotificationSource.h"

namespace Apps::Kernel {

class NotificationSocket final : public NotificationSource {
 public:
  /// Opens the socket: what happens from now on is heard. Throws KernelError.
  NotificationSocket();

  [[nodiscard]] News receive(Bytes& datagram) override;
  /// For a loop to wait on: readable when there is something to receive.
  [[nodiscard]] int descriptor() const noexcept { return channel_.descriptor(); }

 private:
  NetlinkChannel channel_;
};

}  // namespace Apps::Kernel
