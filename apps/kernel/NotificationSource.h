// NotificationSource: where the kernel's notifications come from. The live one is NotificationSocket; tests hand in
// recorded bytes.
#pragma once

#include "apps/kernel/MessageSource.h"

namespace Apps::Kernel {

class NotificationSource {
 public:
  enum class News {
    datagram,
    none,    // nothing more at the moment
    overrun  // the receive buffer ran over: datagrams were lost
  };

  NotificationSource() = default;
  NotificationSource(NotificationSource const&) = delete;
  NotificationSource& operator=(NotificationSource const&) = delete;
  virtual ~NotificationSource() = default;

  /// What has come since the last call; does not wait. The bytes of a datagram start at an address that suits a netlink
  /// header and hold until the next call. Throws KernelError.
  [[nodiscard]] virtual News receive(Bytes& datagram) = 0;
};

}  // namespace Apps::Kernel
