#include "dornl3/platform/vek/Dir.h"

#include <algorithm>

namespace Vek {

namespace {

void leave(Ptr<Entity> const& entity, Dir const* dir) {
  if (entity->parent() == dir) entity->parentIs(nullptr);
}

}  // namespace

Dir::Entry::~Entry() = default;

void Dir::Entry::stateIs(State state) { state_ = state; }

Dir::Dir() : Entity(Name{}) {}

Dir::~Dir() {
  for (auto const& [name, entry] : entries_) leave(entry->entity(), this);
}

Dir& Dir::root() {
  static Dir& root = []() -> Dir& {
    Ptr<Dir> const made = new Dir;
    made->referencesLeak();
    return *made;
  }();
  return root;
}

Ptr<Dir::Entry> Dir::entry(Name const& name) const {
  auto const place = entries_.find(name);
  return place == entries_.end() ? Ptr<Entry>{} : place->second;
}

Ptr<Entity> Dir::entity(Name const& name) const {
  auto const place = entries_.find(name);
  return place == entries_.end() ? Ptr<Entity>{} : place->second->entity();
}

Dir::State Dir::stateOf(Entity const& root) {
  Ptr<Dir const> const dir = ptrCast<Dir const>(root.parent());
  Ptr<Entry> const entry = dir ? dir->entry(root.name()) : Ptr<Entry>{};
  return entry && entry->entity() == &root ? entry->state() : inStep;
}

std::vector<Name> Dir::names() const {
  std::vector<Name> names;
  names.reserve(entries_.size());
  for (auto const& [name, entry] : entries_) names.push_back(name);
  std::sort(names.begin(), names.end());
  return names;
}

Ptr<Dir::Entry> Dir::entryIs(Ptr<Entity> const& entity) {
  Ptr<Entry>& place = entries_[entity->name()];
  if (place && place->entity() == entity) return place;
  Ptr<Entry> const old = std::exchange(place, make<Entry>(entity));
  Ptr<Entry> const entered = place;
  if (old) leave(old->entity(), this);
  entity->parentAttrIdIs(noParentAttr);
  entity->parentIs(Ptr<Entity>(this));
  return entered;
}

Ptr<Entity> Dir::entryDel(Name const& name) {
  auto const place = entries_.find(name);
  if (place == entries_.end()) return {};
  Ptr<Entry> const gone = std::move(place->second);
  entries_.erase(place);  // the entity is held: its end may reach this directory again
  leave(gone->entity(), this);
  return gone->entity();
}

}  // namespace Vek
