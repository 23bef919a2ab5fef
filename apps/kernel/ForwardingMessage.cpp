#include "apps/kernel/ForwardingMessage.h"

#include "apps/kernel/Attributes.h"

#include <linux/netconf.h>
#include <sys/socket.h>

namespace Apps::Kernel {

std::optional<ForwardingSwitch> readForwarding(Bytes body) {
  netconfmsg header{};
  if (!readFront(body, header)) return std::nullopt;
  bool const isKnown = header.ncm_family == AF_INET || header.ncm_family == AF_INET6;
  std::int32_t link = 0;
  std::optional<std::int32_t> value;
  bool const whole = walkAttributes(afterHeader<netconfmsg>(body), [&](Attribute const& a) {
    if (a.type == NETCONFA_IFINDEX) return a.read(link);
    return a.type != NETCONFA_FORWARDING || a.read(value.emplace());
  });
  if (!whole || !isKnown || !value || link != NETCONFA_IFINDEX_ALL) return std::nullopt;
  return ForwardingSwitch{header.ncm_family == AF_INET ? Family::ipv4 : Family::ipv6, *value != 0};
}

}  // namespace Apps::Kernel
