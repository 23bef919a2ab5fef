// Socket: a stream socket that never waits, and who is at its far end.
// Owner: whoever holds it; it closes with its last holder. Thread: one at a time.
#pragma once

#include "dornl3/platform/attrlog/Transport.h"
#include "dornl3/platform/link/Address.h"

#include <sys/types.h>

#include <optional>
#include <utility>

namespace Vek::Link {

/// The process at the far end of a Unix socket, as the kernel knows it.
struct PeerCredentials {
  pid_t process;
  uid_t user;
  gid_t group;
};

class Socket {
 public:
  Socket() noexcept = default;
  /// Takes over an open descriptor.
  explicit Socket(int descriptor) noexcept : descriptor_(descriptor) {}
  Socket(Socket&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Socket& operator=(Socket&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~Socket();

  /// A socket of the address's family. Throws std::system_error.
  [[nodiscard]] static Socket of(Address const& address);
  /// Begins to connect. Whether the connection stands already; else it does, or has failed, when the socket can be
  /// written. Throws std::system_error where it cannot come about.
  bool connect(Address const& address);
  /// The error that a connection met while it came about: an errno, 0 for none.
  [[nodiscard]] int takeError() const noexcept;

  [[nodiscard]] int descriptor() const noexcept { return descriptor_; }
  [[nodiscard]] explicit operator bool() const noexcept { return descriptor_ >= 0; }
  /// Nothing over TCP.
  [[nodiscard]] std::optional<PeerCredentials> peer() const noexcept;

 private:
  int descriptor_ = -1;
};

/// The bytes of a connection over a socket. Errors of the stream end the connection with their text.
class SocketTransport final : public NboAttrLog::Transport {
 public:
  explicit SocketTransport(Socket socket) noexcept;

  std::size_t write(std::string_view bytes) override;
  std::size_t read(char* into, std::size_t room) override;
  [[nodiscard]] bool isEnded() const override { return isEnded_; }

  [[nodiscard]] Socket const& socket() const noexcept { return socket_; }

 private:
  Socket socket_;
  bool isEnded_ = false;
  bool isBroken_ = false;  // a write has found the peer gone
};

}  // namespace Vek::Link
