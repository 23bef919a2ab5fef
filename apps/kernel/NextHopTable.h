// NextHopTable: the next hops that routes use, each distinct one kept once: adjacencies, paths (an adjacency with what
// is put around the packet) and sets of paths. Routes refer to a set by its number, so that memory follows the distinct
// next hops and sets, not the routes. Entries stay for the table's life: who lets routes go moves to a fresh table now
// and then. Owner: who reads the kernel.
#pragma once

#include "apps/kernel/AdjacencyTable.h"

#include <span>
#include <string>
#include <vector>

namespace Apps::Kernel {

class NextHopTable {
 public:
  static constexpr std::uint32_t noSet = HashIndex::none;

  struct Member {
    std::uint32_t adjacency;
    std::uint32_t encapsulation;  // 0: none
  };

  /// The number of the path that leads over `path.adjacency` with its encapsulation; its flags do not matter.
  std::uint32_t pathOf(Path const& path);

  /// The number of the set of `paths`, in any order and each as often as it likes; noSet if there are none. Sorts
  /// `paths` and drops what stands twice.
  std::uint32_t setOf(std::vector<std::uint32_t>& paths);

  /// The number of the set of those paths of `set` that are not in `others`.
  std::uint32_t without(std::uint32_t set, std::uint32_t others);
  /// Whether two sets have some path in common; noSet has none.
  [[nodiscard]] bool overlap(std::uint32_t a, std::uint32_t b) const;

  /// The number, in this table, of the path or set that has another one in `other`.
  std::uint32_t pathLike(NextHopTable const& other, std::uint32_t path);
  std::uint32_t setLike(NextHopTable const& other, std::uint32_t set);

  [[nodiscard]] std::size_t setCount() const noexcept { return sets_.size(); }
  [[nodiscard]] std::span<std::uint32_t const> set(std::uint32_t number) const;  // rising numbers of paths
  [[nodiscard]] std::size_t pathCount() const noexcept { return paths_.size(); }
  [[nodiscard]] Member const& path(std::uint32_t number) const { return paths_[number]; }
  [[nodiscard]] AdjacencyTable const& adjacencies() const noexcept { return adjacencies_; }
  /// Whether packets on the path go through a lightweight tunnel.
  [[nodiscard]] bool isTunnelled(Member const& path) const noexcept;
  /// Whether packets on the path get more MPLS labels than they came with: labels around an IP packet, or several for
  /// the one that was taken off.
  [[nodiscard]] bool pushesLabels(Member const& path) const noexcept;

 private:
  static constexpr std::size_t labelSize = 4;  // bytes of an entry of a label stack

  struct Encapsulation {
    std::uint16_t type;
    std::string bytes;
  };
  struct Run {  // of pathsOfSets_
    std::uint32_t first;
    std::uint32_t count;
  };

  std::uint32_t encapsulationOf(Path const& path);

  AdjacencyTable adjacencies_;
  std::vector<Encapsulation> encapsulations_;  // number n at n - 1
  HashIndex encapsulationIndex_;
  std::vector<Member> paths_;
  HashIndex pathIndex_;
  std::vector<std::uint32_t> pathsOfSets_;
  std::vector<Run> sets_;
  HashIndex setIndex_;
};

}  // namespace Apps::Kernel
