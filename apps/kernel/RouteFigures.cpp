#include "apps/kernel/RouteFigures.h"

#include <linux/rtnetlink.h>

#include <algorithm>

namespace Apps::Kernel {

void RouteFigures::clear() noexcept {
  families_ = {};
  messages_ = taken_ = failed_ = 0;
  trapped_ = 0;
}

void RouteFigures::addUnreadable() noexcept {
  ++messages_;
  ++failed_;
}

void RouteFigures::add(Route const& route) {
  if (route.family == Family::other) return;
  ++messages_;
  if (!route.forwardsOrDiscards()) return;
  ++taken_;
  if ((route.flags & (RTM_F_TRAP | RTNH_F_TRAP)) != 0) ++trapped_;

  OfFamily& family = families_[static_cast<std::size_t>(route.family)];
  ++family.routes;
  addPrefix(family.prefixes, route);
  ResolvedPaths const& paths = pathsOf(route);
  bool const isUnprogrammed = isDown(route.flags) || (route.flags & RTM_F_OFFLOAD_FAILED) != 0 || paths.allDown;
  if (isUnprogrammed) ++family.unprogrammed;
  for (std::uint32_t adjacency : paths.downAdjacencies) markUnprogrammed(family, adjacency);
  if (paths.set == NextHopTable::noSet) return;
  if (family.routesOfSet.size() <= paths.set) family.routesOfSet.resize(paths.set + 1);
  ++family.routesOfSet[paths.set];
  if (!isUnprogrammed) return;
  for (std::uint32_t path : nextHops_.set(paths.set)) markUnprogrammed(family, nextHops_.path(path).adjacency);
}

ResolvedPaths const& RouteFigures::pathsOf(Route const& route) {
  // The kernel may tell a next-hop object's paths in the route too; they are then of one state with the route.
  if (route.paths.empty() && route.nextHopId != 0 && route.type == RTN_UNICAST) {
    return objects_.resolve(route.nextHopId);
  }
  room_.clear();
  paths_.downAdjacencies.clear();
  for (Path const& path : route.paths) {
    std::uint32_t const number = nextHops_.pathOf(path);
    room_.push_back(number);
    if (isDown(path.flags)) paths_.downAdjacencies.push_back(nextHops_.path(number).adjacency);
  }
  paths_.allDown = !room_.empty() && paths_.downAdjacencies.size() == room_.size();
  paths_.set = nextHops_.setOf(room_);
  return paths_;
}

void RouteFigures::addPrefix(PrefixCounts& prefixes, Route const& route) {
  unsigned const bits = addressBits(route.family);
  if (bits == 0) return;
  ++(route.prefixLength == bits ? prefixes.hosts : prefixes.byLength.at(route.prefixLength));
}

void RouteFigures::markUnprogrammed(OfFamily& family, std::uint32_t adjacency) {
  if (family.unprogrammedAdjacencies.size() <= adjacency) family.unprogrammedAdjacencies.resize(adjacency + 1);
  family.unprogrammedAdjacencies[adjacency] = true;
}

void RouteFigures::sumUp(KernelFigures& figures, std::function<bool(Adjacency const&)> const& isPending,
                         std::function<bool(std::uint32_t)> const& isTunnel) const {
  AdjacencyTable const& adjacencies = nextHops_.adjacencies();
  std::vector<bool> pending(adjacencies.size());
  for (std::uint32_t i = 0; i < adjacencies.size(); ++i) {
    pending[i] = !adjacencies[i].gateway.isNone() && isPending(adjacencies[i]);
  }
  figures.ipv4 = counts(families_[static_cast<std::size_t>(Family::ipv4)], pending);
  figures.ipv6 = counts(families_[static_cast<std::size_t>(Family::ipv6)], pending);
  figures.mpls = counts(families_[static_cast<std::size_t>(Family::mpls)], pending);
  figures.ipv4Prefixes = families_[static_cast<std::size_t>(Family::ipv4)].prefixes;
  figures.ipv6Prefixes = families_[static_cast<std::size_t>(Family::ipv6)].prefixes;
  countLabels(figures);

  auto const isTunnelled = [&](std::uint32_t number) {
    NextHopTable::Member const& path = nextHops_.path(number);
    return nextHops_.isTunnelled(path) || isTunnel(adjacencies[path.adjacency].link);
  };
  auto const countIn = [](SetCounts& counts, std::size_t paths) {
    ++(paths == 1 ? counts.singlePath : counts.multiPath);
  };
  figures.ipSets = figures.mplsSets = figures.tunnelSets = {};
  for (std::uint32_t set = 0; set < nextHops_.setCount(); ++set) {
    auto const paths = nextHops_.set(set);
    if (isUsed(Family::mpls, set)) countIn(figures.mplsSets, paths.size());
    if (!isUsed(Family::ipv4, set) && !isUsed(Family::ipv6, set)) continue;
    bool const tunnelled = std::any_of(paths.begin(), paths.end(), isTunnelled);
    countIn(tunnelled ? figures.tunnelSets : figures.ipSets, paths.size());
  }
  figures.routeMessages = messages_;
  figures.routesTaken = taken_;
  figures.routesFailed = failed_;
  figures.routesTrapped = trapped_;
}

RouteCounts RouteFigures::counts(OfFamily const& family, std::vector<bool> const& pending) const {
  std::vector<bool> used(pending.size());
  RouteCounts result;
  result.routes = family.routes;
  result.unprogrammedRoutes = family.unprogrammed;
  for (std::uint32_t set = 0; set < family.routesOfSet.size(); ++set) {
    if (family.routesOfSet[set] == 0) continue;
    bool somePending = false;
    for (std::uint32_t path : nextHops_.set(set)) {
      std::uint32_t const adjacency = nextHops_.path(path).adjacency;
      used[adjacency] = true;
      somePending = somePending || pending[adjacency];
    }
    if (somePending) result.pendingRoutes += family.routesOfSet[set];
  }
  for (std::size_t i = 0; i < used.size(); ++i) {
    if (!used[i]) continue;
    ++result.adjacencies;
    if (pending[i]) ++result.pendingAdjacencies;
    if (i < family.unprogrammedAdjacencies.size() && family.unprogrammedAdjacencies[i])
      ++result.unprogrammedAdjacencies;
  }
  return result;
}

void RouteFigures::countLabels(KernelFigures& figures) const {
  std::vector<bool> pushing(nextHops_.pathCount());
  figures.mplsPops = 0;
  for (std::uint32_t set = 0; set < nextHops_.setCount(); ++set) {
    auto const paths = nextHops_.set(set);
    std::uint32_t const labelled = routesOfSet(Family::mpls, set);
    auto const pops = [this](std::uint32_t path) { return nextHops_.path(path).encapsulation == 0; };
    if (std::any_of(paths.begin(), paths.end(), pops)) figures.mplsPops += labelled;
    if (labelled == 0 && !isUsed(Family::ipv4, set) && !isUsed(Family::ipv6, set)) continue;
    for (std::uint32_t path : paths) pushing[path] = pushing[path] || nextHops_.pushesLabels(nextHops_.path(path));
  }
  figures.mplsPushes = static_cast<std::uint32_t>(std::count(pushing.begin(), pushing.end(), true));
}

std::uint32_t RouteFigures::routesOfSet(Family family, std::uint32_t set) const noexcept {
  auto const& routes = families_[static_cast<std::size_t>(family)].routesOfSet;
  return set < routes.size() ? routes[set] : 0;
}

}  // namespace Apps::Kernel
