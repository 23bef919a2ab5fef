// RouteUse: what one route adds to the figures, in few bytes: its paths by the numbers that the table of next hops
// gives them. Plain values.
#pragma once

#include "apps/kernel/NextHopTable.h"
#include "apps/kernel/RouteMessage.h"

namespace Apps::Kernel {

struct RouteUse {
  std::uint32_t set = NextHopTable::noSet;      // of its paths; noSet: none, or a next-hop object alone tells them
  std::uint32_t downSet = NextHopTable::noSet;  // those of them that are marked dead or link-down
  std::uint32_t nextHopId = 0;                  // of the object that it goes by; 0: none
  Family family = Family::other;
  std::uint8_t type = 0;  // RTN_*
  std::uint8_t prefixLength = 0;
  bool isOff = false;      // marked dead, link-down or not taken by the hardware, as a whole; but for an only path
  bool isTrapped = false;  // the hardware hands its packets to the CPU

  /// Whether a next-hop object alone tells its paths.
  [[nodiscard]] bool isByObject() const noexcept { return nextHopId != 0 && set == NextHopTable::noSet; }
  /// Whether no packet gets through by what the route itself tells.
  [[nodiscard]] bool isUnprogrammed() const noexcept { return isOff || (set != NextHopTable::noSet && downSet == set); }
  /// Whether both go the same way, in whatever state.
  [[nodiscard]] bool goesLike(RouteUse const& other) const noexcept {
    bool const isSameWay = nextHopId != 0 || other.nextHopId != 0 ? nextHopId == other.nextHopId : set == other.set;
    return isSameWay && type == other.type;
  }

  friend bool operator==(RouteUse const&, RouteUse const&) = default;
};

/// The sets of paths that routes use, taken from their messages.
class RouteReader {
 public:
  explicit RouteReader(NextHopTable& table) noexcept : table_{table} {}  // uses the table, does not own it

  [[nodiscard]] RouteUse useOf(Route const& route);

 private:
  NextHopTable& table_;
  std::vector<std::uint32_t> paths_;  // room that each route uses again
  std::vector<std::uint32_t> down_;   // likewise
};

}  // namespace Apps::Kernel
