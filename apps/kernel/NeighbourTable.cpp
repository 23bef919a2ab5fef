#include "apps/kernel/NeighbourTable.h"

namespace Apps::Kernel {

void NeighbourTable::add(Neighbour const& neighbour) {
  if (neighbour.at.gateway.isNone()) return;
  if (neighbour.resolution == Resolution::failed) ++failed_;
  if (neighbour.hasLinkLayerAddress) ++linkLayer_;
  if (neighbour.resolution == Resolution::resolved) resolved_.numberOf(neighbour.at);
}

void NeighbourTable::clear() noexcept {
  resolved_.clear();
  failed_ = linkLayer_ = 0;
}

}  // namespace Apps::Kernel
