// Dir: root entities by name, and how far each has come that was mounted from another process.
// Owner: whoever holds a reference. A directory holds its entries, and each entry its entity; it is their parent as
// long as they stand in it. Thread: the entities'. Re-entrancy: what an entity's end sets off may use the directory.
#pragma once

#include "dornl3/platform/vek/Entity.h"

#include <unordered_map>
#include <vector>

namespace Vek {

class Dir : public Entity {
 public:
  class Entry;

  /// How an entity stands to its owner. One that lives here is in step with itself.
  enum State : U32 {
    neverSynced = 0,  ///< nothing has come yet
    syncing = 1,      ///< the owner's state is coming in
    stale = 2,        ///< the connection to the owner has gone: what stands here is what was known then
    inStep = 3,
  };

  Dir();
  ~Dir() override;

  /// The directory in which a text that refers to an entity is looked up.
  [[nodiscard]] static Dir& root();

  /// The entry of that name, or null.
  [[nodiscard]] Ptr<Entry> entry(Name const& name) const;
  /// The entity of that name, or null.
  [[nodiscard]] Ptr<Entity> entity(Name const& name) const;
  /// Enters the entity under its own name; one that had the name leaves.
  Ptr<Entry> entryIs(Ptr<Entity> const& entity);
  /// Takes the entry out; returns its entity, or null where there was none.
  Ptr<Entity> entryDel(Name const& name);

  /// How a root entity stands to its owner: as its directory says, and in step with itself where that says nothing.
  [[nodiscard]] static State stateOf(Entity const& root);

  /// The names of the entries, in their order.
  [[nodiscard]] std::vector<Name> names() const;
  [[nodiscard]] U32 entryCount() const noexcept { return static_cast<U32>(entries_.size()); }

 private:
  std::unordered_map<Name, Ptr<Entry>> entries_;
};

/// An entity's place in a directory.
class Dir::Entry : public PtrInterface {
 public:
  explicit Entry(Ptr<Entity> const& entity) noexcept : entity_(entity) {}
  ~Entry() override;

  [[nodiscard]] Ptr<Entity> const& entity() const noexcept { return entity_; }
  [[nodiscard]] State state() const noexcept { return state_; }
  virtual void stateIs(State state);

 private:
  Ptr<Entity> const entity_;
  State state_ = inStep;
};

}  // namespace Vek
