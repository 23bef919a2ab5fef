#include "apps/attributes/FollowedEntity.h"

#include <algorithm>
#include <utility>

namespace Apps::Attributes {

using Vek::VekAttr;

namespace {

constexpr char const* untold = "";  // no value has that text

Generic fieldOf(Generic const& record, VekAttr const& field) {
  return record->attributeOp({field.id(), Vek::GenericIf::OpGet}, nullptr, nullptr);
}

// What is told by itself of a value: the value or, field by field, those of its fields that are filled.
void addPieces(Change const& value, Look const& look, std::vector<Change>& pieces) {
  if (isInOnePiece(*value.value->type(), look)) return pieces.push_back(value);
  for (auto const& attr : value.value->type()->attributes()) {
    Filled const& filled = look.filled->at(attr->name().view());
    if (filled.isNone()) continue;
    addPieces({attributePath(value.path, *attr), fieldOf(value.value, *attr)}, {look.depth, look.records, &filled},
              pieces);
  }
}

}  // namespace

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
  found->changed = true;
  found->changedKey = key;  // between two looks an attribute is heard of once: of several keys, without one
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
  Scope const below = scopeBelow(*place.attr);
  if (!child) {
    // At the end of a path it is None; ahead of it, what the path names cannot be.
    below.steps.empty() ? tellValue(told, place, here, changes) : tellGone(told, place.path, changes);
    return;
  }
  told.texts.clear();
  if (!told.child) told.child = std::make_unique<FollowedEntity>(following_, turn_.path, below);
  told.child->entityIs(place.path, *child, changes);
}

// What steps are left lead into a record.
void FollowedEntity::tellValue(Told& told, Place const& place, Generic const& here,
                               std::vector<Change>& changes) const {
  Change value{place.path, here};
  Scope const below = scopeBelow(*place.attr);
  for (Step const& field : below.steps) value = {field.path, fieldOf(value.value, *field.attr)};
  std::vector<Change> now;
  addPieces(value, below.look, now);
  told.child.reset();
  told.texts.resize(now.size(), untold);
  for (std::size_t i = 0; i < now.size(); ++i) {
    std::string text{now[i].value->strRep().view()};
    if (told.texts[i] == text) continue;
    told.texts[i] = std::move(text);
    changes.push_back(std::move(now[i]));
  }
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
  if (!scope_.steps.empty()) return &attr == scope_.steps.front().attr;
  return isOwn(*place_.holder->type(), attr) && !scopeBelow(attr).look.filled->isNone();
}

// A child is gone into where the path names it, and below the path only if all is wanted.
bool FollowedEntity::isGoneInto(VekAttr const& attr) const {
  if (!attr.flags().isInstantiating()) return false;
  bool const isNamed = !scope_.steps.empty() && (!attr.flags().isCollection() || scope_.steps.front().key);
  return isNamed || scope_.look.depth == Depth::all;
}

// What is filled is known of what the path ends at.
Scope FollowedEntity::scopeBelow(VekAttr const& attr) const {
  Scope below = scope_;
  if (scope_.steps.empty()) {
    below.look.filled = &scope_.look.filled->at(attr.name().view());
  } else {
    below.steps = scope_.steps.subspan(1);
  }
  return below;
}

}  // namespace Apps::Attributes
