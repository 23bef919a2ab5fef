#include "dornl3/platform/vek/Dir.h"

#include <algorithm>

namespace Vek {

Dir& Dir::root() {
  static Dir& root = []() -> Dir& {
    Ptr<Dir> const made = new Dir;
    made->referencesLeak();
    return *made;
  }();
  return root;
}

Ptr<Entity> Dir::entry(Name const& name) const {
  auto const place = entries_.find(name);
  return place == entries_.end() ? Ptr<Entity>{} : place->second;
}

std::vector<Name> Dir::names() const {
  std::vector<Name> names;
  names.reserve(entries_.size());
  for (auto const& [name, entity] : entries_) names.push_back(name);
  std::sort(names.begin(), names.end());
  return names;
}

void Dir::entryIs(Ptr<Entity> const& entity) { entries_[entity->name()] = entity; }

Ptr<Entity> Dir::entryDel(Name const& name) {
  auto const place = entries_.find(name);
  if (place == entries_.end()) return {};
  Ptr<Entity> const gone = std::move(place->second);
  entries_.erase(place);  // the entity is held: its end may reach this directory again
  return gone;
}

}  // namespace Vek
