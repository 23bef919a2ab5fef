// NeighbourTable: the neighbours of this host: which are resolved, and how many there are of some kinds.
#pragma once

#include "apps/kernel/AdjacencyTable.h"
#include "apps/kernel/NeighbourMessage.h"

#include <cstddef>
#include <unordered_map>

namespace Apps::Kernel {

class NeighbourTable {
 public:
  void add(Neighbour const& neighbour);  // one with the same address on the same link leaves
  void remove(Adjacency const& at);
  void clear() noexcept;

  [[nodiscard]] bool isResolved(Adjacency const& adjacency) const;
  [[nodiscard]] std::uint32_t failedCount() const noexcept { return failed_; }
  /// Those with a link-layer address.
  [[nodiscard]] std::uint32_t linkLayerCount() const noexcept { return linkLayer_; }

 private:
  struct Hash {
    std::size_t operator()(Adjacency const& adjacency) const noexcept { return hashOf(adjacency); }
  };
  struct State {
    Resolution resolution;
    bool hasLinkLayerAddress;
  };

  void count(State const& state, std::uint32_t one) noexcept;

  std::unordered_map<Adjacency, State, Hash> states_;
  std::uint32_t failed_ = 0;
  std::uint32_t linkLayer_ = 0;
};

}  // namespace Apps::Kernel
