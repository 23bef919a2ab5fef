#include "apps/attributes/FollowedEntity.h"

#include <algorithm>
#include <utility>

namespace Apps::Attributes {

using Vek::VekAttr;

FollowedEntity::FollowedEntity(Following& following, std::size_t path, Scope scope)
    : following_{following}, turn_{path, following.births++}, scope_{scope} {}

FollowedEntity::~FollowedEntity() { following_.changed.erase(turn_); }

void FollowedEntity::entityIs(std::string const& place, Vek::Entity& entity, std::vector<Change>& changes) {
  if (place_.holder && entityOf(*place_.holder).ptr() == &entity) return;  // it speaks for itself
  Generic const generic = Vek::VekType::genericIf(&entity, true);
  static_cast<Vek::GenericIfEntity&>(*generic).activityIs(following_.activity);
  genericIs(generic.ptr());
  place_ = {place, generic};
  if (attributes_.empty()) {
    for (auto const& attr : generic->type()->attributes()) {
      if (isWanted(*attr)) attributes_.push_back({attr.ptr()});
    }
  }
  for (Attribute& attribute : attributes_) tell(attribute, nullptr, changes);
}

void FollowedEntity::onAttribute(Vek::AttributeId id, GenericConst const& key) {
  auto const found =
      std::find_if(attributes_.begin(), attributes_.end(), [id](Attribute const& a) { return a.attr->id() == id; });
  if (found == attributes_.end()) return;
  found->changedKey = found->changed ? nullptr : key;  // one key cannot stand for two
  found->changed = true;
  following_.changed.emplace(turn_, this);
}

void FollowedEntity::tell(std::vector<Change>& changes) {
  for (Attribute& attribute : attributes_) {
    if (!std::exchange(attribute.changed, false)) continue;
    tell(attribute, std::exchange(attribute.changedKey, nullptr), changes);
  }
}

void FollowedEntity::tell(Attribute& attribute, GenericConst const& key, std::vector<Change>& changes) {
  Place const place = attributeOf(place_, place_.holder, *attribute.attr);
  if (!place.isCollection()) return tellPlace(attribute.told[""], place, changes);
  GenericConst const wanted = scope_.steps.empty() ? nullptr : scope_.steps.front().key;
  if (wanted || key) return tellMember(attribute, memberOf(place, wanted ? wanted : key), changes);
  tellMembers(attribute, place, changes);
}

void FollowedEntity::tellMember(Attribute& attribute, Place const& member, std::vector<Change>& changes) {
  std::string const key = keyText(*member.key);
  if (isThere(member)) return tellPlace(attribute.told[key], member, changes);
  auto const found = attribute.told.find(key);
  if (found == attribute.told.end()) return;
  tellGone(found->second, member.path, changes);
  attribute.told.erase(found);
}

void FollowedEntity::tellMembers(Attribute& attribute, Place const& collection, std::vector<Change>& changes) {
  auto before = std::exchange(attribute.told, {});
  forEachMember(collection, [&](Place const& member) {
    std::string const key = keyText(*member.key);
    auto node = before.extract(key);
    Told& told = node ? attribute.told.insert(std::move(node)).position->second : attribute.told[key];
    tellPlace(told, member, changes);
  });
  for (auto& [key, told] : before) tellGone(told, memberPath(collection.path, key), changes);
}

void FollowedEntity::tellPlace(Told& told, Place const& place, std::vector<Change>& changes) {
  Generic const here = valueAt(place);
  if (!isGoneInto(*place.attr)) return tellValue(told, place, here, changes);
  Vek::Ptr<Vek::Entity> const child = entityOf(*here);
  if (!child) {
    // At the end of a path it is None; ahead of it, what the path names cannot be.
    stepsBelow().empty() ? tellValue(told, place, here, changes) : tellGone(told, place.path, changes);
    return;
  }
  told.text.reset();
  if (!told.child) {
    Scope const below{stepsBelow(), scope_.depth};
    told.child = std::make_unique<FollowedEntity>(following_, turn_.path, below);
  }
  told.child->entityIs(place.path, *child, changes);
}

// What steps are left lead into a record.
void FollowedEntity::tellValue(Told& told, Place const& place, Generic const& here,
                               std::vector<Change>& changes) const {
  Change change{place.path, here};
  for (Step const& field : stepsBelow()) {
    change = {field.path, change.value->attributeOp({field.attr->id(), Vek::GenericIf::OpGet}, nullptr, nullptr)};
  }
  std::string text{change.value->strRep().view()};
  told.child.reset();
  if (told.text == text) return;
  told.text = std::move(text);
  changes.push_back(std::move(change));
}

void FollowedEntity::tellGone(Told& told, std::string const& place, std::vector<Change>& changes) {
  if (told.isSomething()) changes.push_back({place, nullptr});
  told = {};
}

bool FollowedEntity::hasTold() const {
  return std::any_of(attributes_.begin(), attributes_.end(), [](Attribute const& attribute) {
    return std::any_of(attribute.told.begin(), attribute.told.end(),
                       [](auto const& entry) { return entry.second.isSomething(); });
  });
}

bool FollowedEntity::isWanted(VekAttr const& attr) const {
  return scope_.steps.empty() ? isOwn(*place_.holder->type(), attr) : &attr == scope_.steps.front().attr;
}

// A child is gone into where the path names it, and below the path only if all is wanted.
bool FollowedEntity::isGoneInto(VekAttr const& attr) const {
  if (!attr.flags().isInstantiating()) return false;
  bool const isNamed = !scope_.steps.empty() && (!attr.flags().isCollection() || scope_.steps.front().key);
  return isNamed || scope_.depth == Depth::all;
}

std::span<Step const> FollowedEntity::stepsBelow() const {
  return scope_.steps.empty() ? scope_.steps : scope_.steps.subspan(1);
}

}  // namespace Apps::Attributes
