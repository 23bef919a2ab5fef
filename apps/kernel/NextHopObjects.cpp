#include "apps/kernel/NextHopObjects.h"

#include <linux/rtnetlink.h>

#include <algorithm>

namespace Apps::Kernel {

bool isDown(std::uint32_t flags) noexcept { return (flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) != 0; }

void NextHopObjects::add(NextHopObject const& object) {
  singles_.erase(object.id);
  groups_.erase(object.id);
  resolved_.clear();
  if (object.isGroup) {
    groups_.emplace(object.id, object.members);
  } else if (object.discards) {
    singles_.emplace(object.id, Single{});
  } else {
    singles_.emplace(object.id, Single{table_.pathOf(object.path), isDown(object.path.flags)});
  }
}

void NextHopObjects::clear() noexcept {
  singles_.clear();
  groups_.clear();
  resolved_.clear();
  missing_.clear();
}

ResolvedPaths const& NextHopObjects::resolve(std::uint32_t id) {
  auto const [entry, isNew] = resolved_.try_emplace(id);
  ResolvedPaths& result = entry->second;
  if (!isNew) return result;

  std::vector<std::uint32_t> ids{id};  // each id once, so that groups which name each other come to an end
  std::unordered_set<std::uint32_t> seen{id};
  std::vector<std::uint32_t> paths;
  bool someUp = false;
  while (!ids.empty()) {
    std::uint32_t const next = ids.back();
    ids.pop_back();
    if (auto const single = singles_.find(next); single != singles_.end()) {
      if (single->second.path == NextHopTable::noSet) continue;
      paths.push_back(single->second.path);
      if (single->second.isDown) {
        result.downAdjacencies.push_back(table_.path(single->second.path).adjacency);
      } else {
        someUp = true;
      }
    } else if (auto const group = groups_.find(next); group != groups_.end()) {
      std::copy_if(group->second.begin(), group->second.end(), std::back_inserter(ids),
                   [&seen](std::uint32_t member) { return seen.insert(member).second; });
    } else {
      missing_.insert(next);
    }
  }
  result.allDown = !paths.empty() && !someUp;
  result.set = table_.setOf(paths);
  return result;
}

std::uint32_t NextHopObjects::nestedGroupCount() const {
  auto const isGroup = [this](std::uint32_t id) { return groups_.contains(id); };
  auto const isNested = [&isGroup](auto const& group) {
    return std::any_of(group.second.begin(), group.second.end(), isGroup);
  };
  return static_cast<std::uint32_t>(std::count_if(groups_.begin(), groups_.end(), isNested));
}

}  // namespace Apps::Kernel
