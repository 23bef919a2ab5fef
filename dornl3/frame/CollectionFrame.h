// CollectionFrame: keyed attributes whose elements are plain values. What an entity defines itself are one-line calls
// of these. A descriptor A of such an attribute tells beside its name and number: Owner, Key, Value, Member (the
// element class), field(owner) (its map, hashed or ordered) and slot. Owner: the collection holds a reference on each
// element. Thread: the entity's. Re-entrancy: a reactor may change the same collection, during a walk of it too.
// A missing key is no error: reading it gives the default, removing it does nothing.
#pragma once

#include "dornl3/frame/EntityFrame.h"

namespace Vek {

/// Tells the reactors of an entity that something has happened at `key` of attribute A. Changes and counts nothing.
template <class A>
void notifyKey(typename A::Owner& entity, typename A::Key const& key) {
  notifyReactors<typename A::Key>(entity, reactorsOf<typename A::Owner>(entity), A::number,
                                  static_cast<KeyedReactorSlot<typename A::Key>>(A::slot), key);
}

/// Counts a read, of a missing key too, and gives the value or the default.
template <class Map>
typename Map::Value collectionGet(Entity const& entity, Map const& map, typename Map::Key const& key) {
  entity.vekReadCountInc();
  auto const* const member = map[key];
  return member != nullptr ? member->value() : typename Map::Value{};
}

namespace detail {

template <class A>
Ptr<typename A::Member> enter(typename A::Owner& entity, typename A::Key const& key, typename A::Value const& value) {
  auto const member = make<typename A::Member>(key, value);
  A::field(entity).newMember(member);
  return member;
}

/// Takes out a member that is in the collection, counts and tells; the value is read when all reactors have run.
template <class A>
typename A::Value removeMember(typename A::Owner& entity, Ptr<typename A::Member> const& member) {
  typename A::Key const key = member->key();
  entity.vekNeedWritable(A::number);
  A::field(entity).deleteMember(member);
  entity.vekWriteCountInc();
  notifyKey<A>(entity, key);
  return member->value();
}

}  // namespace detail

/// Enters a new element; one that has the key leaves. Counts nothing and tells nobody.
template <class A>
Ptr<typename A::Member> collectionNew(typename A::Owner& entity, typename A::Key const& key,
                                      typename A::Value const& value) {
  entity.vekNeedWritable(A::number);
  auto& map = A::field(entity);
  if (Ptr<typename A::Member> const old = map[key]) map.deleteMember(old);
  return detail::enter<A>(entity, key, value);
}

/// The part of a setter at a key that comes before the reactors: whether there is something to tell them.
template <class A>
bool collectionStore(typename A::Owner& entity, typename A::Key const& key, typename A::Value const& value) {
  typename A::Member* const member = A::field(entity)[key];
  if (member != nullptr && member->value() == value) return false;
  entity.vekNeedWritable(A::number);
  if (member != nullptr) {
    member->valueIs(value);
  } else {
    static_cast<void>(detail::enter<A>(entity, key, value));
  }
  entity.vekWriteCountInc();
  return true;
}

/// Sets the value at a key. An equal value: nothing happens. Otherwise it is stored, in a new element if there was
/// none, and the write is counted before any reactor runs. Throws what a reactor's onNotificationException throws.
template <class A>
void collectionIs(typename A::Owner& entity, typename A::Key const& key, typename A::Value const& value) {
  if (collectionStore<A>(entity, key, value)) notifyKey<A>(entity, key);
}

/// Removes the element at a key and gives its value, or the default where there is none.
template <class A>
typename A::Value collectionDel(typename A::Owner& entity, typename A::Key const& key) {
  Ptr<typename A::Member> const member = A::field(entity)[key];
  return member ? detail::removeMember<A>(entity, member) : typename A::Value{};
}

/// Removes the element under an iterator and gives its value; the default where the iterator is at its end, or stands
/// on an element that has left the collection. The iterator keeps its place.
template <class A, class Iterator>
typename A::Value collectionDelAt(typename A::Owner& entity, Iterator const& it) {
  Ptr<typename A::Member> const member = it.ptr();
  bool const present = member && A::field(entity)[member->key()] == member.ptr();
  return present ? detail::removeMember<A>(entity, member) : typename A::Value{};
}

/// Removes every element, one write and one call of the reactors each, in the order of a walk. Elements that a reactor
/// adds meanwhile can be met by it.
template <class A>
void collectionDelAll(typename A::Owner& entity) {
  auto const held = holdOver(entity);
  using Map = std::remove_reference_t<decltype(A::field(entity))>;
  for (typename Map::Iterator it(&A::field(entity)); it; ++it) collectionDelAt<A>(entity, it);
}

}  // namespace Vek
