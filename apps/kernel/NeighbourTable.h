// NeighbourTable: the neighbours of this host: which are resolved, and how many there are of some kinds.
#pragma once

#include "apps/kernel/AdjacencyTable.h"
#include "apps/kernel/NeighbourMessage.h"

namespace Apps::Kernel {

class NeighbourTable {
 public:
  void add(Neighbour const& neighbour);
  void clear() noexcept;

  [[nodiscard]] bool isResolved(Adjacency const& adjacency) const { return resolved_.holds(adjacency); }
  [[nodiscard]] std::uint32_t failedCount() const noexcept { return failed_; }
  /// Those with a link-layer address.
  [[nodiscard]] std::uint32_t linkLayerCount() const noexcept { return linkLayer_; }

 private:
  AdjacencyTable resolved_;
  std::uint32_t failed_ = 0;
  std::uint32_t linkLayer_ = 0;
};

}  // namespace Apps::Kernel
