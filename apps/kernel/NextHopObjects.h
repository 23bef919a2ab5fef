// NextHopObjects: the kernel's next-hop objects, resolved to sets of paths for the routes that name them.
#pragma once

#include "apps/kernel/NextHopMessage.h"
#include "apps/kernel/NextHopTable.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Apps::Kernel {

/// The paths of one route.
struct ResolvedPaths {
  std::uint32_t set = NextHopTable::noSet;
  std::vector<std::uint32_t> downAdjacencies;  // of paths marked dead or link-down
  bool allDown = false;                        // there are paths, and all are marked so
};

/// Whether the flags of a path (RTNH_F_*) say that it is dead or that its link is down.
[[nodiscard]] bool isDown(std::uint32_t flags) noexcept;

class NextHopObjects {
 public:
  explicit NextHopObjects(NextHopTable& table) noexcept : table_{table} {}  // uses the table, does not own it

  void add(NextHopObject const& object);
  void clear() noexcept;

  /// The paths of the object `id`, of a group those of its members and of theirs; no paths if it discards packets or is
  /// not known. The answer holds until the next add or clear.
  [[nodiscard]] ResolvedPaths const& resolve(std::uint32_t id);

  [[nodiscard]] std::uint32_t nestedGroupCount() const;  // groups with another group among their members
  /// Ids that were asked for, or stand in a group that was, and are not known.
  [[nodiscard]] std::uint32_t missingCount() const noexcept { return static_cast<std::uint32_t>(missing_.size()); }

 private:
  struct Single {
    std::uint32_t path = NextHopTable::noSet;  // noSet: discards packets
    bool isDown = false;
  };

  NextHopTable& table_;
  std::unordered_map<std::uint32_t, Single> singles_;
  std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> groups_;
  std::unordered_map<std::uint32_t, ResolvedPaths> resolved_;
  std::unordered_set<std::uint32_t> missing_;
};

}  // namespace Apps::Kernel
