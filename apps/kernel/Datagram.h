// Datagram: the netlink messages in a run of bytes. The bytes are not trusted.
#pragma once

#include "apps/kernel/Attributes.h"

#include <linux/netlink.h>

namespace Apps::Kernel {

/// What a walk over messages came to.
enum class Walked {
  whole,   // every message was handed out
  broken,  // what follows the last one handed out is no message
  ended    // `each` wanted no more
};

/// Calls `each(header, body)` for the messages of a datagram in turn, as long as it answers true.
template <class Each>
[[nodiscard]] Walked forEachMessage(Bytes datagram, Each&& each) {
  while (!datagram.empty()) {
    nlmsghdr header{};  // mnl_nlmsg_ok takes a length beyond 2 GiB for a negative one, and lets it pass
    bool const isWhole =
        readFront(datagram, header) && header.nlmsg_len >= MNL_NLMSG_HDRLEN && header.nlmsg_len <= datagram.size();
    if (!isWhole) return Walked::broken;
    Bytes const body = datagram.subspan(MNL_NLMSG_HDRLEN, header.nlmsg_len - MNL_NLMSG_HDRLEN);
    std::size_t const step = MNL_ALIGN(header.nlmsg_len);
    datagram = step < datagram.size() ? datagram.subspan(step) : Bytes{};
    if (!each(header, body)) return Walked::ended;
  }
  return Walked::whole;
}

}  // namespace Apps::Kernel
