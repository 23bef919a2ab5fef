// AdjacencyTable: numbers adjacencies, each distinct one once, from 0 in the order of their coming.
#pragma once

#include "apps/kernel/HashIndex.h"
#include "apps/kernel/NextHop.h"

#include <optional>
#include <vector>

namespace Apps::Kernel {

[[nodiscard]] HashValue hashOf(Adjacency const& adjacency) noexcept;

class AdjacencyTable {
 public:
  /// The number of `adjacency`, which is entered if it is new.
  std::uint32_t numberOf(Adjacency const& adjacency);

  [[nodiscard]] Adjacency const& operator[](std::uint32_t number) const { return all_[number]; }
  [[nodiscard]] std::size_t size() const noexcept { return all_.size(); }

 private:
  [[nodiscard]] std::uint32_t find(HashValue hash, Adjacency const& adjacency) const;

  std::vector<Adjacency> all_;
  HashIndex index_;
};

}  // namespace Apps::Kernel
