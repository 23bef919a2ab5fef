// Reader of next-hop object messages: the objects that routes may name instead of carrying their paths.
#pragma once

#include "apps/kernel/NextHop.h"

#include <cstdint>
#include <vector>

namespace Apps::Kernel {

struct NextHopObject {
  std::uint32_t id = 0;
  bool discards = false;               // a blackhole: has no path
  bool isGroup = false;                // has members instead of a path
  Path path;                           // of a single next hop
  std::vector<std::uint32_t> members;  // ids, of a group
};

/// Reads into `object`, whose room is used again. False if the message is malformed; the object is then of no use.
[[nodiscard]] bool readNextHop(Bytes body, NextHopObject& object);

}  // namespace Apps::Kernel
