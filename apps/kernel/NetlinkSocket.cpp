#include "apps/kernel/NetlinkSocket.h"

#include "apps/kernel/KernelError.h"

#include <libmnl/libmnl.h>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>

namespace Apps::Kernel {

namespace {

constexpr std::string_view socketName = "The rtnetlink socket";
constexpr std::size_t datagramLimit = 256 * 1024;  // the kernel fills at most 32 KiB unless one message needs more
constexpr int receiveBufferBytes = 1024 * 1024;
constexpr timeval answerTimeout{10, 0};

// Options that make reading better but are not needed for it: an older kernel may refuse them.
void tune(mnl_socket* socket) noexcept {
  int const fd = mnl_socket_get_fd(socket);
  setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &receiveBufferBytes, sizeof receiveBufferBytes);
  int on = 1;
  mnl_socket_setsockopt(socket, NETLINK_GET_STRICT_CHK, &on, sizeof on);  // the kernel then filters instead of guessing
}

bool isFromKernel(msghdr const& header, sockaddr_nl const& sender) noexcept {
  return header.msg_namelen == sizeof sender && sender.nl_family == AF_NETLINK && sender.nl_pid == 0;
}

}  // namespace

void NetlinkSocket::Close::operator()(mnl_socket* socket) const noexcept { mnl_socket_close(socket); }

NetlinkSocket::NetlinkSocket() : buffer_(datagramLimit) { reopen(); }

void NetlinkSocket::reopen() {
  socket_.reset();
  socket_.reset(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC));
  if (!socket_) throw kernelError(socketName, errno);
  if (mnl_socket_bind(socket_.get(), 0, MNL_SOCKET_AUTOPID) < 0) throw kernelError(socketName, errno);
  int const fd = mnl_socket_get_fd(socket_.get());
  if (setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &answerTimeout, sizeof answerTimeout) < 0) {
    throw kernelError(socketName, errno);
  }
  tune(socket_.get());
}

void NetlinkSocket::send(Bytes request) {
  if (mnl_socket_sendto(socket_.get(), request.data(), request.size()) < 0) throw kernelError(socketName, errno);
}

std::optional<Bytes> NetlinkSocket::receive() {
  for (;;) {
    sockaddr_nl sender{};
    iovec room{buffer_.data(), buffer_.size()};
    msghdr header{};
    header.msg_name = &sender;
    header.msg_namelen = sizeof sender;
    header.msg_iov = &room;
    header.msg_iovlen = 1;
    ssize_t const size = recvmsg(mnl_socket_get_fd(socket_.get()), &header, 0);
    if (size < 0) {
      if (errno == EINTR) continue;
      if (errno == ENOBUFS) return std::nullopt;
      throw kernelError(socketName, errno);
    }
    if (!isFromKernel(header, sender)) continue;
    if ((header.msg_flags & MSG_TRUNC) != 0) throw kernelError(socketName, EMSGSIZE);
    return Bytes{buffer_}.first(static_cast<std::size_t>(size));
  }
}

}  // namespace Apps::Kernel
