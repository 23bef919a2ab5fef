// FlowOutFrame: the part of a flow-out that depends on the entity's type: a bit for each attribute, and the keys that
// are owed of each collection. What an X::VekNboAttrLogSa::FlowOut defines itself are one-line calls of these. Its
// descriptors tell `dirty(flowOut)`, the keys owed of a collection.
#pragma once

#include "dornl3/attrlog/WalkSteps.h"
#include "dornl3/core/HashMap.h"
#include "dornl3/core/RbTreeMap.h"
#include "dornl3/platform/attrlog/FlowOut.h"

namespace Vek {

/// The bits themselves, as each type names them.
template <U32 Words>
class DirtyBits {
 public:
  [[nodiscard]] U32 word(U32 at) const noexcept { return words_[at]; }

 protected:
  void bitIs(U32 slot, bool on) noexcept {
    U32 const bit = U32{1} << (slot % 32);
    words_[slot / 32] = on ? words_[slot / 32] | bit : words_[slot / 32] & ~bit;
  }

 public:
  [[nodiscard]] U32* words() noexcept { return words_; }

 private:
  U32 words_[Words] = {};
};

/// Sets the bits of a new flow-out: owed is every attribute from `start` on.
template <class Attr>
void oweFrom(NboAttrLog::FlowOut& flowOut, AttributeId start) noexcept {
  flowOut.oweFrom(walkTable<Attr>, start);
}

/// Whether anything is owed.
template <class Attr, class F>
[[nodiscard]] bool owesAnything(F const& flowOut) {
  bool owes = flowOut.NboAttrLog::FlowOut::hasDirtyAttributes();
  forEach(typename Attr::All{}, [&](auto attribute) {
    using A = decltype(attribute);
    if constexpr (holdsKeys<A>) {
      owes = owes || !flowOut.slotBit(logSlot<Attr, A>) || A::dirty(flowOut).count() != 0;
    } else if constexpr (isLogged<A>) {
      owes = owes || flowOut.slotBit(logSlot<Attr, A>);
    }
  });
  return owes;
}

/// Drops the bookmark of the collection, or the place in the text, that the flow-out stands on.
template <class Attr>
void freeWalkState(NboAttrLog::FlowOut& flowOut) {
  flowOut.placeDel(walkTable<Attr>);
}

/// A key that is owed of a hashed collection: one class for all that have keys of that type.
template <class K>
class DirtyHashElement final : public HashElement<K, bool> {
 public:
  using Map = HashMap<DirtyHashElement, K, bool>;
  using HashElement<K, bool>::HashElement;
};

/// The same of an ordered one.
template <class K>
class DirtyRbElement final : public RbElement<K, bool> {
 public:
  using Map = RbTreeMap<DirtyRbElement, K, bool>;
  using RbElement<K, bool>::RbElement;
};

// The keys owed of one collection; what is kept with a key decides nothing.

/// Enters a key that is not there.
template <class Map>
Ptr<typename Map::Member> dirtyKeyNew(Map& map, typename Map::Key const& key, bool on) {
  auto const member = make<typename Map::Member>(key, on);
  map.newMember(member);
  return member;
}

template <class Map>
void dirtyKeyIs(Map& map, typename Map::Key const& key, bool on) {
  if (auto* const member = map[key]) {
    member->valueIs(on);
  } else {
    dirtyKeyNew(map, key, on);
  }
}

/// Takes a key out; false where it was not there.
template <class Map>
bool dirtyKeyDel(Map& map, typename Map::Key const& key) {
  Ptr<typename Map::Member> const member = map[key];
  if (!member) return false;
  map.deleteMember(member);
  return member->value();
}

/// A key of a collection of so many members has been marked: the marks go where there are too many.
template <class Map>
void boundMarks(Entity::VekNboAttrLogSa& adapter, AttributeId attr, Map& marks, U32 members) {
  if (!adapter.owesAllForMarks(attr, marks.count(), members)) return;
  for (typename Map::IteratorConst it(&marks); it; ++it) dirtyKeyDel(marks, it->key());
}

}  // namespace Vek
