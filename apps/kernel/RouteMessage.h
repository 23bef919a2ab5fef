// Reader of route messages of IPv4, IPv6 and MPLS.
#pragma once

#include "apps/kernel/NextHop.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Apps::Kernel {

enum class Family : std::uint8_t { ipv4, ipv6, mpls, other };

/// The bits of an address: the length of a host route's prefix. 0 for families without prefixes.
[[nodiscard]] constexpr unsigned addressBits(Family family) noexcept {
  return family == Family::ipv4 ? 32 : family == Family::ipv6 ? 128 : 0;
}

/// The bytes of an address or, of MPLS, of a label; zero behind them.
using PrefixBytes = std::array<std::byte, 16>;

struct Route {
  Family family = Family::other;
  std::uint8_t type = 0;          // RTN_*
  std::uint8_t prefixLength = 0;  // of IPv4 and IPv6, at most the bits of an address
  std::uint8_t typeOfService = 0;
  std::uint8_t sourceLength = 0;  // of an IPv6 route for packets from `source` alone
  PrefixBytes prefix{};
  PrefixBytes source{};
  std::uint32_t table = 0;
  std::uint32_t priority = 0;
  std::uint32_t flags = 0;      // RTM_F_* and RTNH_F_*
  std::uint32_t nextHopId = 0;  // of a next-hop object; 0: none
  std::vector<Path> paths;      // empty: it forwards nowhere, or the object alone tells where

  /// Whether it is an entry of the forwarding table that sends packets on or discards them: not one of this host's own
  /// addresses, a broadcast, anycast or multicast address, nor a copy in a cache.
  [[nodiscard]] bool forwardsOrDiscards() const noexcept;
};

/// Reads into `route`, whose room is used again. False if the message is malformed; only the family then holds, and it
/// is `other` if even that could not be read. Of another family, nothing but the family is read.
[[nodiscard]] bool readRoute(Bytes body, Route& route);

}  // namespace Apps::Kernel
