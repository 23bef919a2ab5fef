// NetlinkChannel: an rtnetlink socket of this process's network namespace, with room for one datagram.
// Owner: the source that reads it. Thread: one at a time. Reading needs no privilege.
#pragma once

#include "apps/kernel/MessageSource.h"

#include <memory>
#include <span>
#include <vector>

struct mnl_socket;

namespace Apps::Kernel {

class NetlinkChannel {
 public:
  /// Opens the socket with a receive buffer of that many bytes, or as many as the system grants. Throws KernelError.
  explicit NetlinkChannel(int receiveBytes);

  /// Hears the notifications of these groups (RTNLGRP_*), as far as this kernel has them. Throws KernelError.
  void join(std::span<int const> groups);
  /// How long receive() waits. Throws KernelError.
  void timeoutIs(int seconds) const;

  void send(Bytes message);  // throws KernelError

  enum class Received { datagram, nothing, overrun };
  /// Takes the next datagram, from the kernel alone; it holds until the next call. `flags`: MSG_*. Throws KernelError.
  [[nodiscard]] Received receive(Bytes& datagram, int flags);

  [[nodiscard]] int descriptor() const noexcept;

 private:
  struct Close {
    void operator()(mnl_socket* socket) const noexcept;
  };

  std::unique_ptr<mnl_socket, Close> socket_;
  std::vector<std::byte> buffer_;
};

}  // namespace Apps::Kernel
