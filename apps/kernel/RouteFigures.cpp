#include "apps/kernel/RouteFigures.h"

#include <algorithm>

namespace Apps::Kernel {

namespace {

using Counts = std::vector<std::uint32_t>;

constexpr std::uint32_t oneMore = 1;
constexpr std::uint32_t oneLess = ~0U;  // counters are unsigned: adding it takes one away

template <class Families>
auto& of(Families& families, Family family) noexcept {
  return families[static_cast<std::size_t>(family)];
}

void addTo(Counts& counts, std::uint32_t set, std::uint32_t routes) {
  if (set == NextHopTable::noSet) return;
  if (counts.size() <= set) counts.resize(set + 1);
  counts[set] += routes;
}

std::uint32_t countOf(Counts const& counts, std::uint32_t set) noexcept {
  return set < counts.size() ? counts[set] : 0;
}

}  // namespace

void RouteFigures::clear() noexcept {
  families_ = {};
  trapped_ = 0;
}

void RouteFigures::add(RouteUse const& route) { count(route, oneMore); }
void RouteFigures::remove(RouteUse const& route) { count(route, oneLess); }

void RouteFigures::count(RouteUse const& route, std::uint32_t one) {
  OfFamily& family = of(families_, route.family);
  std::uint64_t const more = one == oneMore ? 1 : ~std::uint64_t{0};
  family.routes += more;
  if (route.isTrapped) trapped_ += one;
  if (unsigned const bits = addressBits(route.family); bits != 0) {
    (route.prefixLength == bits ? family.prefixes.hosts : family.prefixes.byLength.at(route.prefixLength)) += one;
  }
  if (route.isByObject()) {
    ObjectUse& use = family.byObject[route.nextHopId];
    use.routes += one;
    if (route.isOff) use.off += one;
    if (use.routes == 0) family.byObject.erase(route.nextHopId);
    return;
  }
  if (route.isUnprogrammed()) family.unprogrammed += more;
  addTo(family.routesOfSet, route.set, one);
  addTo(family.downOfSet, route.isOff ? route.set : route.downSet, one);
}

// Counts the routes that an object tells the paths of like those that tell them themselves.
void RouteFigures::resolveObjects(Families& families, KernelFigures& figures) const {
  std::unordered_set<std::uint32_t> missing;
  for (OfFamily& family : families) {
    for (auto const& [id, use] : family.byObject) {
      ResolvedPaths const paths = objects_.resolve(id, missing);
      bool const allDown = paths.set != NextHopTable::noSet && paths.downSet == paths.set;
      family.unprogrammed += allDown ? use.routes : use.off;
      addTo(family.routesOfSet, paths.set, use.routes);
      addTo(family.downOfSet, paths.downSet, use.routes);
      addTo(family.downOfSet, paths.set, use.off);
    }
  }
  figures.missingNextHops = static_cast<std::uint32_t>(missing.size());
}

void RouteFigures::sumUp(KernelFigures& figures, std::function<bool(Adjacency const&)> const& isPending,
                         std::function<bool(std::uint32_t)> const& isTunnel) const {
  Families families = families_;
  resolveObjects(families, figures);
  AdjacencyTable const& adjacencies = nextHops_.adjacencies();
  std::vector<bool> pending(adjacencies.size());
  for (std::uint32_t i = 0; i < adjacencies.size(); ++i) {
    pending[i] = !adjacencies[i].gateway.isNone() && isPending(adjacencies[i]);
  }
  figures.ipv4 = counts(of(families, Family::ipv4), pending);
  figures.ipv6 = counts(of(families, Family::ipv6), pending);
  figures.mpls = counts(of(families, Family::mpls), pending);
  figures.ipv4Prefixes = of(families, Family::ipv4).prefixes;
  figures.ipv6Prefixes = of(families, Family::ipv6).prefixes;
  figures.routesTrapped = trapped_;
  countSets(families, figures, isTunnel);
  countLabels(families, figures);
}

RouteCounts RouteFigures::counts(OfFamily const& family, std::vector<bool> const& pending) const {
  RouteCounts result;
  result.routes = family.routes;
  result.unprogrammedRoutes = family.unprogrammed;
  std::vector<bool> used(pending.size());
  std::vector<bool> down(pending.size());
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
  for (std::uint32_t set = 0; set < family.downOfSet.size(); ++set) {
    if (family.downOfSet[set] == 0) continue;
    for (std::uint32_t path : nextHops_.set(set)) down[nextHops_.path(path).adjacency] = true;
  }
  for (std::size_t i = 0; i < used.size(); ++i) {
    if (!used[i]) continue;
    ++result.adjacencies;
    if (pending[i]) ++result.pendingAdjacencies;
    if (down[i]) ++result.unprogrammedAdjacencies;
  }
  return result;
}

void RouteFigures::countSets(Families const& families, KernelFigures& figures,
                             std::function<bool(std::uint32_t)> const& isTunnel) const {
  auto const isTunnelled = [&](std::uint32_t number) {
    NextHopTable::Member const& path = nextHops_.path(number);
    return nextHops_.isTunnelled(path) || isTunnel(nextHops_.adjacencies()[path.adjacency].link);
  };
  auto const countIn = [](SetCounts& counts, std::size_t paths) {
    ++(paths == 1 ? counts.singlePath : counts.multiPath);
  };
  figures.ipSets = figures.mplsSets = figures.tunnelSets = {};
  for (std::uint32_t set = 0; set < nextHops_.setCount(); ++set) {
    bool const ofLabels = countOf(of(families, Family::mpls).routesOfSet, set) != 0;
    bool const ofIp = countOf(of(families, Family::ipv4).routesOfSet, set) != 0 ||
                      countOf(of(families, Family::ipv6).routesOfSet, set) != 0;
    auto const paths = nextHops_.set(set);
    if (ofLabels) countIn(figures.mplsSets, paths.size());
    if (!ofIp) continue;
    bool const tunnelled = std::any_of(paths.begin(), paths.end(), isTunnelled);
    countIn(tunnelled ? figures.tunnelSets : figures.ipSets, paths.size());
  }
}

void RouteFigures::countLabels(Families const& families, KernelFigures& figures) const {
  std::vector<bool> pushing(nextHops_.pathCount());
  figures.mplsPops = 0;
  for (std::uint32_t set = 0; set < nextHops_.setCount(); ++set) {
    auto const paths = nextHops_.set(set);
    std::uint32_t const labelled = countOf(of(families, Family::mpls).routesOfSet, set);
    auto const pops = [this](std::uint32_t path) { return nextHops_.path(path).encapsulation == 0; };
    if (std::any_of(paths.begin(), paths.end(), pops)) figures.mplsPops += labelled;
    auto const uses = [set](OfFamily const& family) { return countOf(family.routesOfSet, set) != 0; };
    if (std::none_of(families.begin(), families.end(), uses)) continue;
    for (std::uint32_t path : paths) pushing[path] = pushing[path] || nextHops_.pushesLabels(nextHops_.path(path));
  }
  figures.mplsPushes = static_cast<std::uint32_t>(std::count(pushing.begin(), pushing.end(), true));
}

}  // namespace Apps::Kernel
