// ChildFrame: attributes that make their target, an entity of which the owner is the parent: one child, or children by
// key. What an entity defines itself are one-line calls of these. A descriptor A tells beside its name and number:
// Owner, Child, field(owner) and slot; of children by key also Key.
// Owner: the attribute holds a reference on its child. A child that somebody else holds outlives its removal, without a
// parent. Thread: the parent's. Re-entrancy: reactors of parent and child may do anything.
#pragma once

#include "dornl3/core/ValidPtr.h"
#include "dornl3/frame/CollectionFrame.h"

namespace Vek {

namespace detail {

template <class A>
Ptr<typename A::Child> adopt(typename A::Owner& entity, Ptr<typename A::Child> child) {
  child->parentAttrIdIs(A::number);
  child->parentIs(Ptr<Entity>(&entity));
  return child;
}

}  // namespace detail

/// A new child bound to this parent, but not stored in the attribute. Counts nothing and tells nobody.
template <class A>
Ptr<typename A::Child> childNew(typename A::Owner& entity, Name const& name) {
  entity.vekNeedWritable(A::number);
  return detail::adopt<A>(entity, make<typename A::Child>(name));
}

/// The child of that name, which the attribute holds afterwards. Each step that changes something counts a write, and
/// so does finding the present child; reactors hear of a new child only.
template <class A>
ValidPtr<typename A::Child> childIs(typename A::Owner& entity, Name const& name) {
  auto const held = holdOver(entity);
  Ptr<typename A::Child>& field = A::field(entity);
  entity.vekNeedWritable(A::number);
  if (Ptr<typename A::Child> const present = field) {
    entity.vekWriteCountInc();
    if (present->name() == name) return present;
    present->parentIs(nullptr);
  }
  Ptr<typename A::Child> const child = detail::adopt<A>(entity, make<typename A::Child>(name));
  field = child;
  entity.vekWriteCountInc();
  notifyScalar<A>(entity);
  return child;
}

/// Removes the child and gives it, or null where there is none.
template <class A>
Ptr<typename A::Child> childDel(typename A::Owner& entity) {
  auto const held = holdOver(entity);
  if (!A::field(entity)) return {};
  entity.vekNeedWritable(A::number);
  Ptr<typename A::Child> const child = std::exchange(A::field(entity), nullptr);
  entity.vekWriteCountInc();
  child->parentIs(nullptr);
  notifyScalar<A>(entity);
  return child;
}

/// Counts a read, and gives the child at a key, or null.
template <class Map>
Ptr<typename Map::Member> childrenGet(Entity const& entity, Map const& map, typename Map::Key const& key) {
  entity.vekReadCountInc();
  return map[key];
}

namespace detail {

template <class A>
Ptr<typename A::Child> enterChild(typename A::Owner& entity, typename A::Key const& key) {
  Ptr<typename A::Child> child;
  if constexpr (std::is_same_v<typename A::Key, Name>) {
    child = make<typename A::Child>(key);
  } else {
    child = make<typename A::Child>(Name(key), key);
  }
  child->parentAttrIdIs(A::number);
  A::field(entity).newMember(child);
  child->parentIs(Ptr<Entity>(&entity));
  return child;
}

template <class A>
Ptr<typename A::Child> removeChild(typename A::Owner& entity, Ptr<typename A::Child> const& child) {
  auto const held = holdOver(entity);
  typename A::Key const key = child->key();
  entity.vekNeedWritable(A::number);
  A::field(entity).deleteMember(child);
  entity.vekWriteCountInc();
  child->parentIs(nullptr);
  notifyKey<A>(entity, key);
  return child;
}

}  // namespace detail

/// A new child at a key; one that has the key leaves, without a parent. Counts nothing and tells nobody.
template <class A>
Ptr<typename A::Child> childrenNew(typename A::Owner& entity, typename A::Key const& key) {
  entity.vekNeedWritable(A::number);
  auto& map = A::field(entity);
  if (Ptr<typename A::Child> const old = map[key]) {
    map.deleteMember(old);
    old->parentIs(nullptr);
  }
  return detail::enterChild<A>(entity, key);
}

/// The child at a key, made if it is not there. Counts a write either way; reactors hear of a new child only.
template <class A>
ValidPtr<typename A::Child> childrenIs(typename A::Owner& entity, typename A::Key const& key) {
  entity.vekNeedWritable(A::number);
  if (Ptr<typename A::Child> const present = A::field(entity)[key]) {
    entity.vekWriteCountInc();
    return present;
  }
  auto const held = holdOver(entity);
  Ptr<typename A::Child> const child = detail::enterChild<A>(entity, key);
  entity.vekWriteCountInc();
  notifyKey<A>(entity, key);
  return child;
}

/// Removes the child at a key and gives it, or null where there is none.
template <class A>
Ptr<typename A::Child> childrenDel(typename A::Owner& entity, typename A::Key const& key) {
  Ptr<typename A::Child> const child = A::field(entity)[key];
  return child ? detail::removeChild<A>(entity, child) : child;
}

/// Removes the child under an iterator and gives it; null where the iterator is at its end, or stands on a child that
/// has left the collection. The iterator keeps its place.
template <class A, class Iterator>
Ptr<typename A::Child> childrenDelAt(typename A::Owner& entity, Iterator const& it) {
  Ptr<typename A::Child> const child = it.ptr();
  bool const present = child && A::field(entity)[child->key()] == child.ptr();
  return present ? detail::removeChild<A>(entity, child) : Ptr<typename A::Child>{};
}

/// Removes every child, one write and one call of the reactors each, in the order of a walk.
template <class A>
void childrenDelAll(typename A::Owner& entity) {
  auto const held = holdOver(entity);
  for (typename A::Child::Map::Iterator it(&A::field(entity)); it; ++it) childrenDelAt<A>(entity, it);
}

namespace detail {

template <class A>
inline constexpr bool makesChildren = requires {
  typename A::Child;
};
template <class A>
inline constexpr bool makesChildrenByKey = requires {
  typename A::Child;
  typename A::Key;
};

// No exception gets out: one that a reactor's onNotificationException throws ends a removal when the child is out.
template <class Removal>
void removeQuietly(Removal const& removal) noexcept {
  try {
    removal();
  } catch (...) {
    // The next child goes all the same.
  }
}

template <class A>
void orphan(typename A::Owner& entity) noexcept {
  if constexpr (makesChildrenByKey<A>) {
    typename A::Child::Map::Iterator it(&A::field(entity));
    for (; it; ++it) removeQuietly([&] { childrenDelAt<A>(entity, it); });
  } else if constexpr (makesChildren<A>) {
    removeQuietly([&] { childDel<A>(entity); });
  }
}

template <class A>
void orphanUntold(typename A::Owner& entity) noexcept {
  if constexpr (makesChildrenByKey<A>) {
    typename A::Child::Map::Iterator it(&A::field(entity));
    for (; it; ++it) {
      A::field(entity).deleteMember(it.ptr());
      it->parentIs(nullptr);
    }
  } else if constexpr (makesChildren<A>) {
    if (Ptr<typename A::Child> const child = std::exchange(A::field(entity), nullptr)) child->parentIs(nullptr);
  }
}

}  // namespace detail

/// For a destructor: removes all children, in the order of the attributes, so that each loses its parent before the
/// parent is gone. Reactors still on the list hear of it; what they put in meanwhile leaves untold, or they could keep
/// a destructor going.
template <class Attr, class X>
void orphanChildren(X& entity) noexcept {
  forEach(typename Attr::All{}, [&entity](auto attribute) { detail::orphan<decltype(attribute)>(entity); });
  forEach(typename Attr::All{}, [&entity](auto attribute) { detail::orphanUntold<decltype(attribute)>(entity); });
}

}  // namespace Vek
