// RouteFigures: sums up routes as they stream by. What it keeps grows with the distinct adjacencies and sets of next
// hops, not with the routes. Owner: the reader of the kernel.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "apps/kernel/NextHopObjects.h"
#include "apps/kernel/RouteMessage.h"

#include <array>
#include <functional>
#include <vector>

namespace Apps::Kernel {

class RouteFigures {
 public:
  /// Uses both, owns neither.
  RouteFigures(NextHopTable& nextHops, NextHopObjects& objects) noexcept : nextHops_{nextHops}, objects_{objects} {}

  void clear() noexcept;

  void add(Route const& route);   // a route of another family is passed over
  void addUnreadable() noexcept;  // a route message that was malformed

  /// Fills the figures about routes, their prefixes, next-hop sets, MPLS labels and route messages. `isPending` tells
  /// whether an adjacency with a gateway waits for its neighbour, `isTunnel` whether the link with an index is one.
  void sumUp(KernelFigures& figures, std::function<bool(Adjacency const&)> const& isPending,
             std::function<bool(std::uint32_t)> const& isTunnel) const;

 private:
  struct OfFamily {
    std::uint64_t routes = 0;
    std::uint64_t unprogrammed = 0;
    PrefixCounts prefixes;                      // of IPv4 and IPv6
    std::vector<std::uint32_t> routesOfSet;     // by number of the set
    std::vector<bool> unprogrammedAdjacencies;  // by number of the adjacency
  };

  [[nodiscard]] ResolvedPaths const& pathsOf(Route const& route);
  static void addPrefix(PrefixCounts& prefixes, Route const& route);
  void markUnprogrammed(OfFamily& family, std::uint32_t adjacency);
  [[nodiscard]] RouteCounts counts(OfFamily const& family, std::vector<bool> const& pending) const;
  void countLabels(KernelFigures& figures) const;
  [[nodiscard]] std::uint32_t routesOfSet(Family family, std::uint32_t set) const noexcept;
  [[nodiscard]] bool isUsed(Family family, std::uint32_t set) const noexcept { return routesOfSet(family, set) != 0; }

  NextHopTable& nextHops_;
  NextHopObjects& objects_;
  std::array<OfFamily, 3> families_;  // by Family
  std::uint64_t messages_ = 0;
  std::uint64_t taken_ = 0;
  std::uint64_t failed_ = 0;
  std::uint32_t trapped_ = 0;
  ResolvedPaths paths_;              // room that each route uses again
  std::vector<std::uint32_t> room_;  // likewise
};

}  // namespace Apps::Kernel
