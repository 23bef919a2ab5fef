// Reader of neighbour messages.
#pragma once

#include "apps/kernel/NextHop.h"

#include <cstdint>
#include <optional>

namespace Apps::Kernel {

enum class Resolution : std::uint8_t {
  resolved,  // packets can be sent to it, or need no link-layer address
  open,      // asked for, or not yet
  failed     // asked for in vain
};

struct Neighbour {
  Adjacency at;  // without an address if the kernel gives none, or only answers in another's name
  Resolution resolution = Resolution::open;
  bool hasLinkLayerAddress = false;  // learnt or given; not one that follows from the address itself (NUD_NOARP)
};

/// Nothing if the message is malformed.
[[nodiscard]] std::optional<Neighbour> readNeighbour(Bytes body);

}  // namespace Apps::Kernel
