#include "dornl3/platform/link/Socket.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace Vek::Link {

namespace {

[[noreturn]] void fail(char const* what) { throw std::system_error(errno, std::generic_category(), what); }

bool isNothingNow(int error) noexcept { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

}  // namespace

Socket::~Socket() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

Socket Socket::of(Address const& address) {
  Socket made(::socket(address.family(), SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!made) fail("no socket is to be had");
  return made;
}

// NOLINTNEXTLINE(readability-make-member-function-const): the socket changes
bool Socket::connect(Address const& address) {
  if (::connect(descriptor_, address.socketAddress(), address.length()) == 0) return true;
  // A Unix socket whose queue is full says EAGAIN, and nothing comes about: that is a failure like others.
  if (errno == EINPROGRESS || errno == EINTR) return false;
  fail("no connection");
}

int Socket::takeError() const noexcept {
  int error = 0;
  socklen_t length = sizeof error;
  return ::getsockopt(descriptor_, SOL_SOCKET, SO_ERROR, &error, &length) == 0 ? error : errno;
}

std::optional<PeerCredentials> Socket::peer() const noexcept {
  sockaddr_storage own{};
  socklen_t ownLength = sizeof own;
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the form of the call
  if (::getsockname(descriptor_, reinterpret_cast<sockaddr*>(&own), &ownLength) != 0) return {};
  if (own.ss_family != AF_UNIX) return {};
  ucred known{};
  socklen_t length = sizeof known;
  if (::getsockopt(descriptor_, SOL_SOCKET, SO_PEERCRED, &known, &length) != 0) return {};
  return PeerCredentials{known.pid, known.uid, known.gid};
}

SocketTransport::SocketTransport(Socket socket) noexcept : socket_(std::move(socket)) {
  // A record waits for no further one; a Unix socket knows no such option.
  int const on = 1;
  ::setsockopt(socket_.descriptor(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

std::size_t SocketTransport::write(std::string_view bytes) {
  ssize_t const count = ::send(socket_.descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (count >= 0) return static_cast<std::size_t>(count);
  if (isNothingNow(errno)) return 0;
  // The peer has gone, and may have said why: that is read first.
  bool const isGone = errno == EPIPE || errno == ECONNRESET;
  if (isGone && !std::exchange(isBroken_, true)) return 0;
  fail("the connection broke");
}

std::size_t SocketTransport::read(char* into, std::size_t room) {
  ssize_t const count = ::recv(socket_.descriptor(), into, room, MSG_DONTWAIT);
  if (count > 0) return static_cast<std::size_t>(count);
  if (count < 0 && !isNothingNow(errno)) fail("the connection broke");
  if (count == 0) isEnded_ = true;
  return 0;
}

}  // namespace Vek::Link
