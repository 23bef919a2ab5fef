#include "apps/kernel/NeighbourMessage.h"

#include "apps/kernel/Attributes.h"

#include <linux/neighbour.h>
#include <sys/socket.h>

namespace Apps::Kernel {

namespace {

constexpr std::uint16_t resolvedStates = NUD_PERMANENT | NUD_NOARP | NUD_REACHABLE | NUD_PROBE | NUD_STALE | NUD_DELAY;

Resolution resolutionOf(std::uint16_t state) noexcept {
  if ((state & resolvedStates) != 0) return Resolution::resolved;
  return (state & NUD_FAILED) != 0 ? Resolution::failed : Resolution::open;
}

}  // namespace

std::optional<Neighbour> readNeighbour(Bytes body) {
  ndmsg header{};
  if (!readFront(body, header)) return std::nullopt;
  Neighbour neighbour;
  neighbour.at.link = static_cast<std::uint32_t>(header.ndm_ifindex);
  neighbour.resolution = resolutionOf(header.ndm_state);
  bool const isProxy = (header.ndm_flags & NTF_PROXY) != 0;
  if (isProxy || (header.ndm_family != AF_INET && header.ndm_family != AF_INET6)) return neighbour;
  bool const whole = walkAttributes(afterHeader<ndmsg>(body), [&](Attribute const& a) {
    if (a.type == NDA_LLADDR) neighbour.hasLinkLayerAddress = !a.payload.empty() && (header.ndm_state & NUD_NOARP) == 0;
    return a.type != NDA_DST || neighbour.at.gateway.set(header.ndm_family, a.payload);
  });
  if (!whole) return std::nullopt;
  return neighbour;
}

}  // namespace Apps::Kernel
