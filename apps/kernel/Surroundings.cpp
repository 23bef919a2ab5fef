#include "apps/kernel/Surroundings.h"

#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/socket.h>

namespace Apps::Kernel {

namespace {

// When one of them changes, the kernel marks the routes by way of the link, or drops them, without a word.
constexpr std::uint32_t stateOfLink = IFF_UP | IFF_RUNNING | 1U << 16;  // the last: IFF_LOWER_UP

}  // namespace

void Surroundings::read(Dumper& dumper, Interrupted& interrupted) {
  auto const table = [&](Table name, std::uint16_t type, auto const& start) {
    Outcome const outcome = dumper.read(name, start, [this, type](Bytes body) { take(type, body); });
    if (outcome == Outcome::interrupted) interrupted.push_back(tableName(name));
  };
  table(Table::links, RTM_NEWLINK, [this] { links_.clear(); });
  table(Table::addresses, RTM_NEWADDR, [this] { links_.clearAddresses(); });
  table(Table::neighbours, RTM_NEWNEIGH, [this] {
    neighbours_.clear();
    unreadableNeighbours_ = 0;
  });
  table(Table::nextHops, RTM_NEWNEXTHOP, [this] {
    objects_.clear();
    unreadableNextHops_ = 0;
  });
}

Surroundings::Taken Surroundings::take(std::uint16_t messageType, Bytes body) {
  switch (messageType) {
  case RTM_NEWLINK:
  case RTM_DELLINK: return takeLink(body, messageType == RTM_NEWLINK);
  case RTM_NEWADDR:
  case RTM_DELADDR: return takeAddress(body, messageType == RTM_NEWADDR);
  case RTM_NEWNEIGH:
  case RTM_DELNEIGH: return takeNeighbour(body, messageType == RTM_NEWNEIGH);
  case RTM_NEWNEXTHOP:
  case RTM_DELNEXTHOP: return takeNextHop(body, messageType == RTM_NEWNEXTHOP);
  default: return Taken::foreign;
  }
}

Surroundings::Taken Surroundings::takeLink(Bytes body, bool isNew) {
  std::optional<Link> const link = readLink(body);
  if (!link) return Taken::taken;
  Link const* const known = links_.link(link->index);
  bool const changesState = known != nullptr && (!isNew || ((known->flags ^ link->flags) & stateOfLink) != 0);
  if (isNew) {
    links_.add(*link);
  } else {
    links_.remove(link->index);
  }
  return changesState ? Taken::takenAndMore : Taken::taken;
}

Surroundings::Taken Surroundings::takeAddress(Bytes body, bool isNew) {
  std::optional<LinkAddress> const address = readLinkAddress(body);
  if (!address) return Taken::taken;
  bool const isChange = isNew ? links_.add(*address) : links_.remove(*address);
  // With an IPv4 address the kernel drops the routes that have it for their source, or revives next hops, silently.
  return isChange && address->local.family == AF_INET ? Taken::takenAndMore : Taken::taken;
}

Surroundings::Taken Surroundings::takeNeighbour(Bytes body, bool isNew) {
  std::optional<Neighbour> const neighbour = readNeighbour(body);
  if (!neighbour) {
    ++unreadableNeighbours_;
  } else if (isNew) {
    neighbours_.add(*neighbour);
  } else if (!neighbour->at.gateway.isNone()) {
    neighbours_.remove(neighbour->at);
  }
  return Taken::taken;
}

Surroundings::Taken Surroundings::takeNextHop(Bytes body, bool isNew) {
  if (!readNextHop(body, object_)) {
    ++unreadableNextHops_;
    return Taken::taken;
  }
  if (isNew) {
    objects_.add(object_);
    return Taken::taken;
  }
  objects_.remove(object_.id);
  return Taken::takenAndMore;  // the routes by way of it go silently
}

KernelFigures Surroundings::sumUp(RouteFigures const& routes) const {
  KernelFigures figures;
  figures.vrfs = links_.count(LinkKind::vrf) + 1;
  figures.vxlanTunnels = links_.count(LinkKind::vxlan);
  figures.tunnels = links_.tunnelCount();
  figures.routesVxlan = links_.routesVxlan();
  figures.linkLayerNeighbours = neighbours_.linkLayerCount();
  figures.failedNeighbours = neighbours_.failedCount() + unreadableNeighbours_;
  figures.failedNextHops = unreadableNextHops_;
  figures.nestedGroups = objects_.nestedGroupCount();
  auto const isPending = [this](Adjacency const& adjacency) {
    // A gateway given by its link-layer address has nothing to be resolved.
    return adjacency.gateway.family != AF_PACKET && links_.needsNeighbours(adjacency.link) &&
           !neighbours_.isResolved(adjacency);
  };
  routes.sumUp(figures, isPending, [this](std::uint32_t link) { return links_.isTunnel(link); });
  return figures;
}

}  // namespace Apps::Kernel
