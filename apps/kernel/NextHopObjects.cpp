#include "apps/kernel/NextHopObjects.h"

#include <algorithm>

namespace Apps::Kernel {

void NextHopObjects::add(NextHopObject const& object) {
  remove(object.id);
  if (object.isGroup) {
    groups_.emplace(object.id, object.members);
  } else if (object.discards) {
    singles_.emplace(object.id, Single{});
  } else {
    singles_.emplace(object.id, Single{table_.pathOf(object.path), isDown(object.path.flags)});
  }
}

void NextHopObjects::remove(std::uint32_t id) {
  singles_.erase(id);
  groups_.erase(id);
}

void NextHopObjects::clear() noexcept {
  singles_.clear();
  groups_.clear();
}

ResolvedPaths NextHopObjects::resolve(std::uint32_t id, std::unordered_set<std::uint32_t>& missing) const {
  std::vector<std::uint32_t> ids{id};  // each id once, so that groups which name each other come to an end
  std::unordered_set<std::uint32_t> seen{id};
  std::vector<std::uint32_t> paths;
  std::vector<std::uint32_t> down;
  while (!ids.empty()) {
    std::uint32_t const next = ids.back();
    ids.pop_back();
    if (auto const single = singles_.find(next); single != singles_.end()) {
      if (single->second.path == NextHopTable::noSet) continue;
      paths.push_back(single->second.path);
      if (single->second.isDown) down.push_back(single->second.path);
    } else if (auto const group = groups_.find(next); group != groups_.end()) {
      std::copy_if(group->second.begin(), group->second.end(), std::back_inserter(ids),
                   [&seen](std::uint32_t member) { return seen.insert(member).second; });
    } else {
      missing.insert(next);
    }
  }
  return {table_.setOf(paths), table_.setOf(down)};
}

void NextHopObjects::moveTo(NextHopTable& fresh) {
  for (auto& [id, single] : singles_) {
    if (single.path != NextHopTable::noSet) single.path = fresh.pathLike(table_, single.path);
  }
}

std::uint32_t NextHopObjects::nestedGroupCount() const {
  auto const isGroup = [this](std::uint32_t id) { return groups_.contains(id); };
  auto const isNested = [&isGroup](auto const& group) {
    return std::any_of(group.second.begin(), group.second.end(), isGroup);
  };
  return static_cast<std::uint32_t>(std::count_if(groups_.begin(), groups_.end(), isNested));
}

}  // namespace Apps::Kernel
