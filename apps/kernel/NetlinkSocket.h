// NetlinkSocket: an rtnetlink socket for questions and their answers, as a MessageSource.
// Owner: whoever reads the kernel. Thread: one at a time. Reading needs no privilege.
#pragma once

#include "apps/kernel/NetlinkChannel.h"

#include <optional>

namespace Apps::Kernel {

class NetlinkSocket final : public MessageSource {
 public:
  /// Opens the socket. Throws KernelError.
  NetlinkSocket();

  void send(Bytes request) override;
  [[nodiscard]] std::optional<Bytes> receive() override;  // waits up to 10 seconds
  void reopen() override;

 private:
  std::optional<NetlinkChannel> channel_;
};

}  // namespace Apps::Kernel
