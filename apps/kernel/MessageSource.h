// MessageSource: where netlink bytes come from. The live one is NetlinkSocket; tests hand in recorded bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace Apps::Kernel {

using Bytes = std::span<std::byte const>;

class MessageSource {
 public:
  MessageSource() = default;
  MessageSource(MessageSource const&) = delete;
  MessageSource& operator=(MessageSource const&) = delete;
  virtual ~MessageSource() = default;

  /// Sends one request: a whole netlink message. Throws KernelError.
  virtual void send(Bytes request) = 0;

  /// The next datagram, or nothing if the receive buffer ran over and datagrams were lost. The bytes start at an
  /// address that suits a netlink header and hold until the next call of any operation. Throws KernelError.
  [[nodiscard]] virtual std::optional<Bytes> receive() = 0;

  /// Forgets the answer that is under way; the next call is a send. Throws KernelError.
  virtual void reopen() = 0;
};

}  // namespace Apps::Kernel
