// EntityFrame: how the attributes of an entity are read, set and told of. What an entity defines itself are one-line
// calls of these.
// Owner: see Entity. Thread: the entity's. Re-entrancy: see ReactorWalk; nothing here touches the entity after its
// reactors have run.
#pragma once

#include "dornl3/core/ReactorWalk.h"
#include "dornl3/frame/Attribute.h"
#include "dornl3/platform/vek/Entity.h"

namespace Vek {

/// The reactors of an entity of type X, which befriends this.
template <class X>
ReactorChain& reactorsOf(PtrInterface const& entity) noexcept {
  return static_cast<X const&>(entity).notifiees_.chain();
}

/// `object` as an X; null for null, and for an object of another type.
template <class X>
X const* entityOf(Ptr<PtrInterface const> const& object) noexcept {
  return dynamic_cast<X const*>(object.ptr());
}

/// Counts a read and gives the field.
template <class T>
T const& vekRead(Entity const& entity, T const& field) noexcept {
  entity.vekReadCountInc();
  return field;
}

/// Tells the reactors of an entity that attribute A has changed.
template <class A>
void notifyScalar(typename A::Owner& entity) {
  ReactorChain const& reactors = reactorsOf<typename A::Owner>(entity);
  if (reactors.count() == 0) return;
  notifyReactors(entity, reactors, A::number, static_cast<ReactorSlot>(A::slot));
}

/// Stores a value that differs, and counts the write; nobody is told.
template <class V>
void storeOther(Entity& entity, V& field, V const& value) {
  field = value;
  entity.vekWriteCountInc();
}

/// The part of a setter that comes before the reactors: whether there is something to tell them.
template <class V>
bool storeScalar(Entity& entity, AttributeId number, V& field, V const& value) {
  if (field == value) return false;
  entity.vekNeedWritable(number);
  storeOther(entity, field, value);
  return true;
}

/// Sets an attribute. The present value: nothing happens, no count and no call; a NaN differs from everything.
/// Otherwise the value is stored and the write counted before any reactor runs, and stays whatever they do.
/// Throws what a reactor's onNotificationException throws, and std::bad_alloc above 16 reactors, with the value stored.
template <class A>
void scalarIs(typename A::Owner& entity, typename A::Value const& value) {
  if (storeScalar(entity, A::number, A::field(entity), value)) notifyScalar<A>(entity);
}

/// Adds `delta`, with wraparound at the field's width, and gives the new value. Counts a read and never a write;
/// reactors hear of it if the value has changed. Throws as scalarIs.
template <class A>
typename A::Value scalarInc(typename A::Owner& entity, typename A::Value const& delta) {
  using Value = typename A::Value;
  Value& field = A::field(entity);
  auto const sum = static_cast<Value>(field + delta);
  if (sum != field) entity.vekNeedWritable(A::number);
  Value const old = vekRead(entity, field);
  field = sum;
  if (sum != old) notifyScalar<A>(entity);
  return sum;
}

/// The name of an attribute: the type's own, else what the framework says.
template <class Attr, class X>
String8 attributeString(X const& entity, AttributeId id) {
  char const* name = nullptr;
  visit(typename Attr::All{}, id, [&name](auto attribute) { name = decltype(attribute)::name; });
  return name != nullptr ? String8(name) : entity.Entity::attributeString(id);
}

/// Tells the reactors that the last reference on the entity has gone.
template <class X>
void notifyZeroReferences(X& entity) {
  entity.vekWriteGuardIs(false);  // its destructor lets children go
  notifyReactors(entity, reactorsOf<X>(entity), Entity::zeroReferencesEvent,
                 &PtrInterface::NotifieeConst::onZeroReferences);
}

}  // namespace Vek
