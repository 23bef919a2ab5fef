// NextHopObjects: the kernel's next-hop objects, resolved to sets of paths for the routes that name them.
#pragma once

#include "apps/kernel/NextHopMessage.h"
#include "apps/kernel/NextHopTable.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Apps::Kernel {

/// The paths that an object stands for.
struct ResolvedPaths {
  std::uint32_t set = NextHopTable::noSet;
  std::uint32_t downSet = NextHopTable::noSet;  // those marked dead or link-down
};

class NextHopObjects {
 public:
  explicit NextHopObjects(NextHopTable& table) noexcept : table_{table} {}  // uses the table, does not own it

  void add(NextHopObject const& object);
  void remove(std::uint32_t id);
  void clear() noexcept;

  /// The paths of the object `id`, of a group those of its members and of theirs; no paths if it discards packets or is
  /// not known. Enters in `missing` the ids that are not known, `id` or of members.
  [[nodiscard]] ResolvedPaths resolve(std::uint32_t id, std::unordered_set<std::uint32_t>& missing) const;

  [[nodiscard]] std::uint32_t nestedGroupCount() const;  // groups with another group among their members

  /// Goes over to the numbers that paths of the table have in `fresh`, where they are entered.
  void moveTo(NextHopTable& fresh);

 private:
  struct Single {
    std::uint32_t path = NextHopTable::noSet;  // noSet: discards packets
    bool isDown = false;
  };

  NextHopTable& table_;
  std::unordered_map<std::uint32_t, Single> singles_;
  std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> groups_;
};

}  // namespace Apps::Kernel
