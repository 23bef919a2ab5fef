// Place: what a path denotes, and what can be done there: an entity, an attribute of an entity or value, or one member
// of a collection. All of it goes through the registry and the generic interface; no type is known here.
// Owner: whoever made it; it holds its entity. Thread: the entity's.
#pragma once

#include "dornl3/platform/vek/GenericIfEntity.h"

#include <optional>
#include <string>
#include <string_view>

namespace Apps::Attributes {

using Generic = Vek::Ptr<Vek::GenericIf>;
using GenericConst = Vek::Ptr<Vek::GenericIf const>;

enum class Kind {
  readOnly,  // one value that never changes, or changes by itself
  scalar,    // one value
  elements,  // values by key
  child,     // one entity, or none
  children   // entities by key
};

[[nodiscard]] Kind kindOf(Vek::VekType const& owner, Vek::VekAttr const& attr);

struct Place {
  std::string path;  // as the entity itself would write it
  Generic holder;    // of the attribute; without one, the entity that is the place
  Vek::VekAttr const* attr = nullptr;
  GenericConst key = {};  // of one member of a collection

  /// Of a place that is an attribute or a member.
  [[nodiscard]] Kind kind() const { return kindOf(*holder->type(), *attr); }
  [[nodiscard]] bool isCollection() const { return attr != nullptr && attr->flags().isCollection() && !key; }
  [[nodiscard]] bool isMember() const { return static_cast<bool>(key); }
};

/// How the places inside another are written.
[[nodiscard]] std::string attributePath(std::string_view owner, Vek::VekAttr const& attr);
[[nodiscard]] std::string memberPath(std::string_view collection, std::string_view keyText);

[[nodiscard]] Place attributeOf(Place const& owner, Generic const& holder, Vek::VekAttr const& attr);
[[nodiscard]] Place memberOf(Place const& collection, GenericConst const& key);

/// Whether keys of that type are texts, which stand in a path as they are.
[[nodiscard]] bool isText(Vek::VekType const& type);
/// What a key is called: its bytes where it is a text, else the text of its value.
[[nodiscard]] std::string keyName(Vek::GenericIf const& key);
/// The same as it stands in a path.
[[nodiscard]] std::string keyText(Vek::GenericIf const& key);

/// What is there. Throws Misfit for a member that is not there; the place must not be a collection.
[[nodiscard]] Generic valueAt(Place const& place);
/// The entity that a generic stands for; null where it stands for a value, or for none.
[[nodiscard]] Vek::Ptr<Vek::Entity> entityOf(Vek::GenericIf& generic);
[[nodiscard]] Vek::U32 countAt(Place const& collection);
[[nodiscard]] bool isThere(Place const& member);

/// Whether a value of that type has fields, which are read one by one.
[[nodiscard]] bool isRecord(Vek::VekType const& type);

/// Calls `each` with every member of a collection, in its order.
template <class Each>
void forEachMember(Place const& collection, Each const& each) {
  for (auto it = collection.holder->attributeIteratorConst(collection.attr->id()); it; ++it) {
    each(memberOf(collection, it.key()));
  }
}

void assign(Place const& place, Generic const& value);
/// Makes the child of that place. `name`: of a child without a key; it is called after its attribute without one.
Generic makeChild(Place const& place, std::optional<Vek::Name> const& name);
void remove(Place const& place);

/// A value of that type from its text. Throws Misfit, which names `what` the text is for.
[[nodiscard]] Generic fromText(Vek::VekType const& type, std::string_view text, std::string const& what);
/// What a text for a value of that type looks like: "a U32, such as 0".
[[nodiscard]] std::string wanted(Vek::VekType const& type);

}  // namespace Apps::Attributes
