// NeighbourTable: the resolved neighbours of this host.
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

 private:
  AdjacencyTable resolved_;
  std::uint32_t failed_ = 0;
};

}  // namespace Apps::Kernel
