// Dir: root entities by name.
// Owner: whoever holds a reference; a directory holds one on each of its entries. Thread: the entities'.
// Re-entrancy: what an entity's end sets off may use the directory.
#pragma once

#include "dornl3/platform/vek/Entity.h"

#include <unordered_map>
#include <vector>

namespace Vek {

class Dir : public PtrInterface {
 public:
  /// The directory in which a text that refers to an entity is looked up.
  [[nodiscard]] static Dir& root();

  /// The entity of that name, or null.
  [[nodiscard]] Ptr<Entity> entry(Name const& name) const;
  /// Enters the entity under its own name; one that had the name leaves.
  void entryIs(Ptr<Entity> const& entity);
  /// Takes the entry out; returns it, or null where there was none.
  Ptr<Entity> entryDel(Name const& name);

  /// The names of the entries, in their order.
  [[nodiscard]] std::vector<Name> names() const;
  [[nodiscard]] U32 entryCount() const noexcept { return static_cast<U32>(entries_.size()); }

 private:
  std::unordered_map<Name, Ptr<Entity>> entries_;
};

}  // namespace Vek
