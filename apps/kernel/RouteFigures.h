// RouteFigures: sums up routes as they come and go. What it keeps grows with the distinct adjacencies, sets of next
// hops and next-hop objects, not with the routes. Owner: who reads the kernel.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "apps/kernel/NextHopObjects.h"
#include "apps/kernel/RouteUse.h"

#include <array>
#include <functional>
#include <unordered_map>
#include <vector>

namespace Apps::Kernel {

class RouteFigures {
 public:
  /// Uses both, owns neither.
  RouteFigures(NextHopTable& nextHops, NextHopObjects const& objects) noexcept
      : nextHops_{nextHops}, objects_{objects} {}

  void clear() noexcept;
  void add(RouteUse const& route);
  void remove(RouteUse const& route);  // one that was added

  /// Fills the figures about routes, their prefixes, next-hop sets and MPLS labels. `isPending` tells whether an
  /// adjacency with a gateway waits for its neighbour, `isTunnel` whether the link with an index is one.
  void sumUp(KernelFigures& figures, std::function<bool(Adjacency const&)> const& isPending,
             std::function<bool(std::uint32_t)> const& isTunnel) const;

 private:
  using Counts = std::vector<std::uint32_t>;  // of routes, by number of the set

  struct ObjectUse {
    std::uint32_t routes = 0;
    std::uint32_t off = 0;
  };
  struct OfFamily {
    std::uint64_t routes = 0;
    std::uint64_t unprogrammed = 0;
    PrefixCounts prefixes;  // of IPv4 and IPv6
    Counts routesOfSet;
    Counts downOfSet;                                       // routes whose paths of that set are down
    std::unordered_map<std::uint32_t, ObjectUse> byObject;  // routes that an object alone tells the paths of, by its id
  };
  using Families = std::array<OfFamily, 3>;  // by Family

  void count(RouteUse const& route, std::uint32_t one);
  void resolveObjects(Families& families, KernelFigures& figures) const;
  [[nodiscard]] RouteCounts counts(OfFamily const& family, std::vector<bool> const& pending) const;
  void countSets(Families const& families, KernelFigures& figures,
                 std::function<bool(std::uint32_t)> const& isTunnel) const;
  void countLabels(Families const& families, KernelFigures& figures) const;

  NextHopTable& nextHops_;
  NextHopObjects const& objects_;
  Families families_;
  std::uint32_t trapped_ = 0;
};

}  // namespace Apps::Kernel
