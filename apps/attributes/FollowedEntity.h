// FollowedEntity: what a watch follows of one entity, and what it has told of it. It hears the entity's events, put off
// so that a burst is one, and reads again what they name; what is told is how that differs from what was told last, so
// that what did not change is never told, and the last state never lost.
// Owner: the watch, or the one of the parent. It holds its entity, which may leave its place: the parent's events then
// bring another, or the end. Thread: the entities'.
#pragma once

#include "apps/attributes/Change.h"
#include "apps/attributes/TypedPath.h"
#include "dornl3/platform/vek/Activity.h"

#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace Apps::Attributes {

class FollowedEntity;

/// Which part of an entity is followed: what the steps lead to; where none are left, all of it that `look` has.
struct Scope {
  std::span<Step const> steps;  // not owned
  Look look;
};

/// When one is asked what has changed: by path, and then by age, for a parent is older than what it holds.
struct Turn {
  std::size_t path;
  std::size_t birth;
  [[nodiscard]] auto operator<=>(Turn const&) const noexcept = default;
};

/// What those that one watch follows share. Owner: the watch; it outlives them.
struct Following {
  Vek::Ptr<Vek::Activity> activity;
  std::map<Turn, FollowedEntity*> changed = {};  // who has heard something and has not been asked yet
  std::size_t births = 0;
};

class FollowedEntity final : private Vek::GenericIf::Subscriber {
 public:
  /// `path`: which one of the watch. Follows nothing yet.
  FollowedEntity(Following& following, std::size_t path, Scope scope);
  ~FollowedEntity() override;

  /// Follows the entity that is at `place` now, which may be the same as before, and tells how it differs.
  void entityIs(std::string const& place, Vek::Entity& entity, std::vector<Change>& changes);
  /// Tells what has changed in the attributes that were heard of.
  void tell(std::vector<Change>& changes);
  /// Whether anything stands told.
  [[nodiscard]] bool hasTold() const;

 private:
  // Of one place: the text of its value, or those of its fields, or the child that is gone into; nothing before
  // anything was told.
  struct Told {
    std::vector<std::string> texts;
    std::unique_ptr<FollowedEntity> child;
    [[nodiscard]] bool isSomething() const { return !texts.empty() || (child && child->hasTold()); }
  };
  struct Attribute {
    Vek::VekAttr const* attr;
    std::map<std::string, Told> told = {};  // by the text of the key; of what is no collection, the one without a text
    bool changed = false;
    GenericConst changedKey = {};  // where; null where it may be anywhere
  };

  void onAttribute(Vek::AttributeId id, GenericConst const& key) override;

  void tell(Attribute& attribute, GenericConst const& key, std::vector<Change>& changes);
  void tellMember(Attribute& attribute, Place const& member, std::vector<Change>& changes);
  void tellMembers(Attribute& attribute, Place const& collection, std::vector<Change>& changes);
  void tellPlace(Told& told, Place const& place, std::vector<Change>& changes);
  void tellValue(Told& told, Place const& place, Generic const& here, std::vector<Change>& changes) const;
  static void tellGone(Told& told, std::string const& place, std::vector<Change>& changes);

  [[nodiscard]] bool isWanted(Vek::VekAttr const& attr) const;
  [[nodiscard]] bool isGoneInto(Vek::VekAttr const& attr) const;
  [[nodiscard]] Scope scopeBelow(Vek::VekAttr const& attr) const;

  Following& following_;
  Turn const turn_;
  Scope const scope_;
  Place place_;                        // its holder is the generic of this alone
  std::vector<Attribute> attributes_;  // those in the scope, in their order
};

}  // namespace Apps::Attributes
