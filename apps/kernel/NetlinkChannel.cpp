#include "apps/kernel/NetlinkChannel.h"

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

// Options that make reading better but are not needed for it: an older kernel, or one that we have no privilege on, may
// refuse them.
void tune(mnl_socket* socket, int receiveBytes) noexcept {
  int const fd = mnl_socket_get_fd(socket);
  if (setsockopt(fd, SOL_SOCKET, SO_RCVBUFFORCE, &receiveBytes, sizeof receiveBytes) < 0) {
    setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &receiveBytes, sizeof receiveBytes);
  }
  int on = 1;
  mnl_socket_setsockopt(socket, NETLINK_GET_STRICT_CHK, &on, sizeof on);  // the kernel then filters instead of guessing
}

bool isFromKernel(msghdr const& header, sockaddr_nl const& sender) noexcept {
  return header.msg_namelen == sizeof sender && sender.nl_family == AF_NETLINK && sender.nl_pid == 0;
}

}  // namespace

void NetlinkChannel::Close::operator()(mnl_socket* socket) const noexcept { mnl_socket_close(socket); }

NetlinkChannel::NetlinkChannel(int receiveBytes)
    : socket_{mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC)}, buffer_(datagramLimit) {
  if (!socket_) throw kernelError(socketName, errno);
  if (mnl_socket_bind(socket_.get(), 0, MNL_SOCKET_AUTOPID) < 0) throw kernelError(socketName, errno);
  tune(socket_.get(), receiveBytes);
}

void NetlinkChannel::join(std::span<int const> groups) {
  for (int group : groups) {
    bool const joined = mnl_socket_setsockopt(socket_.get(), NETLINK_ADD_MEMBERSHIP, &group, sizeof group) >= 0;
    if (!joined && errno != EINVAL) throw kernelError(socketName, errno);  // EINVAL: this kernel has no such group
  }
}

void NetlinkChannel::timeoutIs(int seconds) const {
  timeval const timeout{seconds, 0};
  if (setsockopt(descriptor(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout) < 0) {
    throw kernelError(socketName, errno);
  }
}

void NetlinkChannel::send(Bytes message) {
  if (mnl_socket_sendto(socket_.get(), message.data(), message.size()) < 0) throw kernelError(socketName, errno);
}

NetlinkChannel::Received NetlinkChannel::receive(Bytes& datagram, int flags) {
  for (;;) {
    sockaddr_nl sender{};
    iovec room{buffer_.data(), buffer_.size()};
    msghdr header{};
    header.msg_name = &sender;
    header.msg_namelen = sizeof sender;
    header.msg_iov = &room;
    header.msg_iovlen = 1;
    ssize_t const size = recvmsg(descriptor(), &header, flags);
    if (size < 0) {
      if (errno == EINTR) continue;
      if (errno == ENOBUFS) return Received::overrun;
      bool const isEmpty = errno == EAGAIN || errno == EWOULDBLOCK;
      if (isEmpty && (flags & MSG_DONTWAIT) != 0) return Received::nothing;
      throw kernelError(socketName, errno);
    }
    if (!isFromKernel(header, sender)) continue;
    if ((header.msg_flags & MSG_TRUNC) != 0) throw kernelError(socketName, EMSGSIZE);
    datagram = Bytes{buffer_}.first(static_cast<std::size_t>(size));
    return Received::datagram;
  }
}

int NetlinkChannel::descriptor() const noexcept { return mnl_socket_get_fd(socket_.get()); }

}  // namespace Apps::Kernel
