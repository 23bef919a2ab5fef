// NetlinkSocket: the rtnetlink socket of this process's network namespace, as a MessageSource.
// Owner: whoever reads the kernel. Thread: one at a time. Reading needs no privilege.
#pragma once

#include "apps/kernel/MessageSource.h"

#include <memory>
#include <vector>

struct mnl_socket;

namespace Apps::Kernel {

class NetlinkSocket final : public MessageSource {
 public:
  /// Opens the socket. Throws KernelError.
  NetlinkSocket();

  void send(Bytes request) override;
  [[nodiscard]] std::optional<Bytes> receive() override;  // waits up to 10 seconds
  void reopen() override;

 private:
  struct Close {
    void operator()(mnl_socket* socket) const noexcept;
  };

  std::unique_ptr<mnl_socket, Close> socket_;
  std::vector<std::byte> buffer_;
};

}  // namespace Apps::Kernel
