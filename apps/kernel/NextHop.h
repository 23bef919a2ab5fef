// NextHop: where a packet goes next, as messages of the kernel tell it. Plain values.
#pragma once

#include "apps/kernel/MessageSource.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace Apps::Kernel {

/// An address of a neighbour or gateway: of IP, or of the link itself (AF_PACKET), which MPLS routes may name.
struct Address {
  static constexpr std::size_t limit = 32;  // the kernel's MAX_ADDR_LEN

  std::array<std::byte, limit> bytes{};  // zero behind `length`
  std::uint8_t length = 0;
  std::uint8_t family = 0;  // AF_*; 0: no address

  /// An address of `family` from `from`. False, with no change, if the length does not suit the family.
  [[nodiscard]] bool set(std::uint8_t newFamily, Bytes from) noexcept;

  [[nodiscard]] bool isNone() const noexcept { return family == 0; }
  friend bool operator==(Address const&, Address const&) = default;
};

/// A next hop as adjacencies are counted: the address on the link that leads to it, or the link alone.
struct Adjacency {
  std::uint32_t link = 0;  // interface index
  Address gateway;

  friend bool operator==(Adjacency const&, Adjacency const&) = default;
};

/// One path of a route: its adjacency, its state, and what is put around the packet.
struct Path {
  Adjacency adjacency;
  std::uint8_t flags = 0;               // RTNH_F_*
  std::uint16_t encapsulationType = 0;  // LWTUNNEL_ENCAP_*, or `labels`; 0: none
  Bytes encapsulation;                  // points into the message that was read

  static constexpr std::uint16_t labels = 0xffff;  // the outgoing label stack of an MPLS route
};

/// Whether the flags of a path (RTNH_F_*) say that it is dead or that its link is down.
[[nodiscard]] bool isDown(std::uint32_t flags) noexcept;

}  // namespace Apps::Kernel
