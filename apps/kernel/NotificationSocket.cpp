#include "apps/kernel/NotificationSocket.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>

namespace Apps::Kernel {

namespace {

constexpr int receiveBytes = 8 * 1024 * 1024;  // a burst of some ten thousand routes
constexpr std::array<int, 10> groups{
    RTNLGRP_LINK,       RTNLGRP_NEIGH,      RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV6_IFADDR,  RTNLGRP_IPV4_ROUTE,
    RTNLGRP_IPV6_ROUTE, RTNLGRP_MPLS_ROUTE, RTNLGRP_NEXTHOP,     RTNLGRP_IPV4_NETCONF, RTNLGRP_IPV6_NETCONF};

}  // namespace

NotificationSocket::NotificationSocket() : channel_{receiveBytes} { channel_.join(groups); }

NotificationSource::News NotificationSocket::receive(Bytes& datagram) {
  switch (channel_.receive(datagram, MSG_DONTWAIT)) {
  case NetlinkChannel::Received::datagram: return News::datagram;
  case NetlinkChannel::Received::overrun: return News::overrun;
  case NetlinkChannel::Received::nothing: break;
  }
  return News::none;
}

}  // namespace Apps::Kernel
