#include "apps/kernel/NeighbourTable.h"

namespace Apps::Kernel {

void NeighbourTable::add(Neighbour const& neighbour) {
  if (neighbour.at.gateway.isNone()) return;
  remove(neighbour.at);
  State const state{neighbour.resolution, neighbour.hasLinkLayerAddress};
  states_.emplace(neighbour.at, state);
  count(state, 1);
}

void NeighbourTable::remove(Adjacency const& at) {
  auto const found = states_.find(at);
  if (found == states_.end()) return;
  count(found->second, ~0U);  // one less
  states_.erase(found);
}

void NeighbourTable::clear() noexcept {
  states_.clear();
  failed_ = linkLayer_ = 0;
}

bool NeighbourTable::isResolved(Adjacency const& adjacency) const {
  auto const found = states_.find(adjacency);
  return found != states_.end() && found->second.resolution == Resolution::resolved;
}

void NeighbourTable::count(State const& state, std::uint32_t one) noexcept {
  if (state.resolution == Resolution::failed) failed_ += one;
  if (state.hasLinkLayerAddress) linkLayer_ += one;
}

}  // namespace Apps::Kernel
