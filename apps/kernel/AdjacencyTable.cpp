#include "apps/kernel/AdjacencyTable.h"

#include <array>

namespace Apps::Kernel {

HashValue hashOf(Adjacency const& adjacency) noexcept {
  std::array<char, sizeof adjacency.link + Address::limit + 1> bytes{};
  std::memcpy(bytes.data(), &adjacency.link, sizeof adjacency.link);
  std::memcpy(bytes.data() + sizeof adjacency.link, adjacency.gateway.bytes.data(), Address::limit);
  bytes.back() = static_cast<char>(adjacency.gateway.family);
  return hashOf(std::string_view{bytes.data(), bytes.size()});
}

std::uint32_t AdjacencyTable::find(HashValue hash, Adjacency const& adjacency) const {
  return index_.find(hash, [&](std::uint32_t number) { return all_[number] == adjacency; });
}

std::uint32_t AdjacencyTable::numberOf(Adjacency const& adjacency) {
  HashValue const hashed = hashOf(adjacency);
  std::uint32_t number = find(hashed, adjacency);
  if (number == HashIndex::none) {
    number = static_cast<std::uint32_t>(all_.size());
    all_.push_back(adjacency);
    index_.add(hashed, number);
  }
  return number;
}

}  // namespace Apps::Kernel
