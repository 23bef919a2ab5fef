// KernelFigures: what is known of the kernel's forwarding state. Plain numbers.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Apps::Kernel {

/// Routes of one family that send packets on or discard them, and the adjacencies in use by them.
struct RouteCounts {
  std::uint64_t routes = 0;
  std::uint64_t adjacencies = 0;
  std::uint64_t pendingRoutes = 0;       // some adjacency of theirs is pending
  std::uint64_t pendingAdjacencies = 0;  // the gateway has no resolved neighbour
  std::uint64_t unprogrammedRoutes = 0;  // dead, link-down or not taken by the hardware, as a whole or on all paths
  std::uint64_t unprogrammedAdjacencies = 0;  // of such routes, or of single paths marked dead or link-down

  friend bool operator==(RouteCounts const&, RouteCounts const&) = default;
};

/// The same routes by the length of their prefix.
struct PrefixCounts {
  std::uint32_t hosts = 0;                    // the prefix is a whole address
  std::array<std::uint32_t, 128> byLength{};  // shorter ones

  friend bool operator==(PrefixCounts const&, PrefixCounts const&) = default;
};

/// Distinct sets of next hops in use.
struct SetCounts {
  std::uint32_t singlePath = 0;
  std::uint32_t multiPath = 0;

  friend bool operator==(SetCounts const&, SetCounts const&) = default;
};

/// Route messages of IPv4, IPv6 and MPLS that were handled, local and broadcast ones included: of the first reading,
/// and notifications; and what became of the routes that the figures count.
struct RouteCommands {
  std::uint64_t processed = 0;
  std::uint64_t added = 0;
  std::uint64_t deleted = 0;  // like those below, also as a later reading found it, without a message
  std::uint64_t overwritten = 0;
  std::uint64_t failed = 0;  // malformed

  friend bool operator==(RouteCommands const&, RouteCommands const&) = default;
};

/// When the forwarding state last changed, in seconds since 1970; 0: not since it is followed.
struct ChangeTimes {
  struct OfFamily {
    double route = 0;
    double defaultRoute = 0;
    double forwardingOn = 0;  // of the switch for all interfaces
    double forwardingOff = 0;

    friend bool operator==(OfFamily const&, OfFamily const&) = default;
  };
  OfFamily ipv4;
  OfFamily ipv6;

  friend bool operator==(ChangeTimes const&, ChangeTimes const&) = default;
};

struct KernelFigures {
  std::uint32_t vrfs = 0;  // with the default one
  std::uint32_t vxlanTunnels = 0;
  std::uint32_t tunnels = 0;  // with the VXLAN ones
  bool routesVxlan = false;

  RouteCounts ipv4;
  RouteCounts ipv6;
  RouteCounts mpls;
  PrefixCounts ipv4Prefixes;
  PrefixCounts ipv6Prefixes;

  std::uint32_t mplsPops = 0;    // MPLS routes with some path on which the packet leaves without the label it came with
  std::uint32_t mplsPushes = 0;  // distinct paths in use on which labels are added

  SetCounts ipSets;      // of IP routes, without tunnels
  SetCounts mplsSets;    // of MPLS routes
  SetCounts tunnelSets;  // of IP routes, with some path through a tunnel

  RouteCommands commands;
  ChangeTimes times;

  std::uint32_t linkLayerNeighbours = 0;  // with a link-layer address that was learnt or given
  std::uint32_t failedNeighbours = 0;     // unresolvable, or malformed
  std::uint32_t routesTrapped = 0;        // the hardware hands their packets to the CPU
  std::uint32_t failedNextHops = 0;       // malformed next-hop objects
  std::uint32_t nestedGroups = 0;         // next-hop groups with groups as members
  std::uint32_t missingNextHops = 0;      // next-hop objects that routes name and the kernel did not tell

  std::vector<std::string_view> interrupted;  // names of tables that changed during every attempt to read them

  friend bool operator==(KernelFigures const&, KernelFigures const&) = default;
};

}  // namespace Apps::Kernel
