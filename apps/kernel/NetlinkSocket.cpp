#include "apps/kernel/NetlinkSocket.h"

namespace Apps::Kernel {

namespace {

constexpr int receiveBytes = 1024 * 1024;
constexpr int answerTimeout = 10;  // seconds

}  // namespace

NetlinkSocket::NetlinkSocket() { reopen(); }

void NetlinkSocket::reopen() {
  channel_.emplace(receiveBytes);
  channel_->timeoutIs(answerTimeout);
}

void NetlinkSocket::send(Bytes request) { channel_->send(request); }

std::optional<Bytes> NetlinkSocket::receive() {
  Bytes datagram;
  if (channel_->receive(datagram, 0) == NetlinkChannel::Received::overrun) return std::nullopt;
  return datagram;
}

}  // namespace Apps::Kernel
