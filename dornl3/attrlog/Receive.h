// Receive: applies a record to its entity, through the ordinary setters: all reactors and all other logs hear of it,
// only the adapter that it came to stays silent. Everything is read before anything is touched. Thread: the entity's.
// Re-entrancy: reactors may do anything; another record on the same adapter is refused meanwhile.
#pragma once

#include "dornl3/attrlog/Walk.h"
#include "dornl3/frame/ChildFrame.h"
#include "dornl3/platform/attrlog/InboundRecord.h"

namespace Vek {

namespace detail {

template <class A>
[[nodiscard]] typename A::Owner& entityOf(InboundRecord const& record) noexcept {
  return static_cast<typename A::Owner&>(record.entity());
}

/// Where a received scalar goes.
template <class V>
struct ScalarPlace {
  V& field;
  ReactorChain const& reactors;
  AttributeId number;
  ReactorSlot slot;
  U32 owedBit;
};

template <class V>
void receiveScalar(Entity::VekNboAttrLogSa& adapter, InboundRecord const& record, ScalarPlace<V> const& place) {
  auto const value = nextField<V>(record.in());
  if (!record.applies()) {
    adapter.doNotification(static_cast<int>(place.number), nullptr);
    return;
  }
  record.decoded();
  // What a replica has changed and not written yet is newer: the owner hears of it, and says again what it holds then.
  bool const isReplica = adapter.side() == StreamAdapter::Side::replica;
  if (isReplica && adapter.flowOut() && adapter.flowOut()->slotBit(place.owedBit)) return;
  Entity& entity = record.entity();
  if (place.field == value) return;
  storeOther(entity, place.field, value);  // it is the owner who says so, or one who may: no guard is asked
  if (adapter.isAloneOn(place.reactors)) return;
  notifyReactors(entity, place.reactors, place.number, place.slot);
}

/// Keeps a member from the sweep that follows, however the scope ends. On an owner nothing is swept, and a mark there
/// is that of a mount upstream, which its peer has not mentioned yet.
template <class Dirty>
class Mentioned {
 public:
  using Key = typename Dirty::Key;
  Mentioned(StreamAdapter const& adapter, ValuesRow<Dirty> const& row, Entity& entity, Key const& key) noexcept
      : adapter_(adapter), row_(row), entity_(entity), key_(key) {}
  Mentioned(Mentioned const&) = delete;
  Mentioned& operator=(Mentioned const&) = delete;
  ~Mentioned() {
    if (adapter_.side() == StreamAdapter::Side::owner) return;
    if (auto* const member = row_.find(entity_, key_).member) member->vekMarkedForDeletionIs(false);
  }

 private:
  StreamAdapter const& adapter_;
  ValuesRow<Dirty> const& row_;
  Entity& entity_;
  Key const& key_;
};

/// Whether a replica owes its owner what has become of a key here: what a walk repeats is older then. The owner hears
/// of it behind the walk, and says again what it holds.
template <class Dirty>
[[nodiscard]] bool owesKey(Entity::VekNboAttrLogSa const& adapter, ValuesRow<Dirty> const& row,
                           typename Dirty::Key const& key) {
  Ptr<NboAttrLog::FlowOut> const& owed = adapter.flowOut();
  return adapter.side() == StreamAdapter::Side::replica && owed && row.dirty(*owed)[key] != nullptr;
}

template <class V, class Dirty>
void receiveKey(Entity::VekNboAttrLogSa& adapter, ValuesRow<Dirty> const& row, InboundRecord const& record,
                bool deleted) {
  using Key = typename Dirty::Key;
  Key const key = nextField<Key>(record.in());
  V const value = deleted ? V{} : nextValue<V>(record.in());
  if (!record.applies()) {
    adapter.doNotification(static_cast<int>(row.number), &key);
    return;
  }
  record.decoded();
  Ptr<Entity> const held(&record.entity());
  Entity& entity = *held;
  WritePass const pass{entity};
  if (deleted) {
    row.remove(entity, key);
  } else {
    Mentioned<Dirty> const mentioned{adapter, row, entity, key};
    if (adapter.isInWalkOf(row.number) && owesKey(adapter, row, key)) return;
    row.set(entity, key, &value, adapter);
  }
}

template <class Attr, class A, class Sa>
void receiveLongText(Sa& adapter, InboundRecord const& record) {
  if (!record.applies() || adapter.passesOverText(A::number)) {
    bool const isOver = adapter.textPassedOver(record, A::number);
    if (record.applies()) adapter.flagsIs(StreamAdapter::entityReactorActive, false);  // what stands is to go out
    if (isOver) (adapter.*A::logHandler)();
    return;
  }
  String8 text;
  if (!adapter.receiveText(record, A::number, logSlot<Attr, A>, text)) return;
  Ptr<typename A::Owner> const held(&entityOf<A>(record));
  auto& entity = *held;
  WritePass const pass{entity};
  scalarIs<A>(entity, text);
}

/// Makes the child at a key, or finds it, so that it takes the id that follows in the input.
template <class A, class Sa>
void childAtKeyIs(Sa& adapter, typename A::Owner& entity, typename A::Key const& key) {
  {
    WritePass const pass{entity};
    childrenIs<A>(entity, key);
  }
  // It stood there already, and no change was told: the id is to be taken all the same.
  if (adapter.hasFlag(StreamAdapter::entityReactorActive)) (adapter.*A::logHandler)(key);
}

/// The child there makes way for another of its name.
template <class A, class Sa>
void childAtKeyIsReplaced(Sa& adapter, typename A::Owner& entity, typename A::Key const& key) {
  {
    Entity::VekNboAttrLogSa::IsActiveAnchor active;
    active.telIs(&adapter);
    WritePass const pass{entity};
    childrenDel<A>(entity, key);
  }
  adapter.flagsIs(StreamAdapter::entityReactorActive, true);
  childAtKeyIs<A>(adapter, entity, key);
}

/// Says what is at a key here, to a far side that has made a child there or removed it.
template <class A, class Sa>
void answerChildAtKey(Sa& adapter, typename A::Owner& entity, typename A::Key const& key) {
  adapter.bindsAnew(Ptr<typename A::Child>(A::field(entity)[key]));
  (adapter.*A::logHandler)(key);
}

/// The same of a single child.
template <class A, class Sa>
void answerOneChild(Sa& adapter, typename A::Owner& entity) {
  adapter.bindsAnew(A::field(entity));
  (adapter.*A::logHandler)();
}

template <class A, class Sa>
void receiveChildAtKey(Sa& adapter, InboundRecord const& record, U32 idAt) {
  typename A::Key const key(record.in().nextString());
  if (idAt != 0) record.in().positionIs(idAt);
  if (!record.applies()) {
    answerChildAtKey<A>(adapter, entityOf<A>(record), key);
    return;
  }
  Ptr<typename A::Owner> const held(&entityOf<A>(record));
  auto& entity = *held;
  Ptr<typename A::Child> const present = A::field(entity)[key];
  Expect const expect{NameInUseException::id};
  EntityId const id = adapter.peekChildId(record, present);
  try {
    static_cast<void>(adapter.mustMakeWay(present, id, true));
    MsgChannel::DeserializingEidAnchor const anchor{id, held};
    childAtKeyIs<A>(adapter, entity, key);
  } catch (NameInUseException const&) {
    childAtKeyIsReplaced<A>(adapter, entity, key);
  }
  if (Ptr<typename A::Child> const child = A::field(entity)[key]) child->vekMarkedForDeletionIs(false);
}

template <class A, class Sa>
void receiveOneChild(Sa& adapter, InboundRecord const& record, U32 idAt) {
  Name const name(record.in().nextString());
  if (idAt != 0) record.in().positionIs(idAt);
  if (!record.applies()) {
    answerOneChild<A>(adapter, entityOf<A>(record));
    return;
  }
  Ptr<typename A::Owner> const held(&entityOf<A>(record));
  auto& entity = *held;
  Ptr<typename A::Child> const present = A::field(entity);
  bool const sameName = present && present->name() == name;
  EntityId const id = adapter.peekChildId(record, sameName ? present : Ptr<typename A::Child>{});
  {
    MsgChannel::DeserializingEidAnchor const anchor{id, held};
    WritePass const pass{entity};
    childIs<A>(entity, name);
  }
  if (!adapter.hasFlag(StreamAdapter::entityReactorActive)) return;
  if (adapter.mustMakeWay(A::field(entity), id, false)) {
    {
      WritePass const pass{entity};
      childDel<A>(entity);
    }
    adapter.flagsIs(StreamAdapter::entityReactorActive, true);
    WritePass const pass{entity};
    childIs<A>(entity, name);
  } else {
    (adapter.*A::logHandler)();
  }
}

template <class A, class Sa>
void receiveChildGone(Sa& adapter, InboundRecord const& record) {
  Ptr<typename A::Owner> const held(&entityOf<A>(record));
  auto& entity = *held;
  if constexpr (holdsKeys<A>) {
    typename A::Key const key(record.in().nextString());
    if (!record.applies()) return answerChildAtKey<A>(adapter, entity, key);
    record.decoded();
    WritePass const pass{entity};
    childrenDel<A>(entity, key);
  } else {
    if (!record.applies()) return answerOneChild<A>(adapter, entity);
    record.decoded();
    WritePass const pass{entity};
    childDel<A>(entity);
  }
}

/// Whether the attribute has such a record. `idAt`: where a child's id stands, 0 for behind its key.
template <class Attr, class A, class Sa>
[[nodiscard]] bool receiveAttribute(Sa& adapter, InboundRecord const& record, bool negative, U32 idAt) {
  if constexpr (!isLogged<A>) {
    return false;
  } else if constexpr (holdsChildren<A>) {
    if (negative) {
      receiveChildGone<A>(adapter, record);
      return true;
    }
    if constexpr (holdsKeys<A>) {
      receiveChildAtKey<A>(adapter, record, idAt);
    } else {
      receiveOneChild<A>(adapter, record, idAt);
    }
    if (record.applies() && adapter.channel() != nullptr) adapter.channel()->modeIs(1);
    return true;
  } else if constexpr (holdsKeys<A>) {
    receiveKey<typename A::Value>(adapter, valuesRow<A>, record, negative);
    return true;
  } else if (negative) {
    return false;
  } else if constexpr (isLongText<A>) {
    receiveLongText<Attr, A>(adapter, record);
    return true;
  } else {
    auto& entity = entityOf<A>(record);
    ReactorChain const& reactors = reactorsOf<typename A::Owner>(entity);
    receiveScalar<typename A::Value>(
        adapter, record, {A::field(entity), reactors, A::number, static_cast<ReactorSlot>(A::slot), logSlot<Attr, A>});
    return true;
  }
}

template <class... A>
[[nodiscard]] constexpr bool isChildAttribute(List<A...>, AttributeId number) noexcept {
  return ((isLogged<A> && holdsChildren<A> && A::number == number) || ...);
}

/// The number of the child record that a wrapper holds, or the wrapper's own where it holds none of this type.
template <class Attr>
[[nodiscard]] int unwrapped(NboAttrLog::In& in, int attr, U32& idAt) {
  return in.unwrapped(attr, idAt, [](AttributeId number) { return isChildAttribute(typename Attr::All{}, number); });
}

template <class... A>
[[nodiscard]] constexpr bool hasChildAttributes(List<A...>) noexcept {
  return ((isLogged<A> && holdsChildren<A>) || ...);
}

}  // namespace detail

/// See StreamAdapter::handleAttrDeserialization.
template <class Attr, class Sa>
void receiveRecord(Sa& adapter, int attr, StreamAdapter::DeserializationOptions options, U32 length,
                   Ptr<NboAttrLog::In> const& in) {
  InboundRecord const record{adapter, attr, in};
  if (!record) return;
  if (attr == NboAttrLog::syncModeRecord) {
    if (record.applies()) adapter.receiveSyncMode(record.in());
    return;
  }
  U32 idAt = 0;
  if constexpr (detail::hasChildAttributes(typename Attr::All{})) {
    bool const wraps = attr == NboAttrLog::wrapperRecord || attr == -NboAttrLog::wrapperRecord;
    if (wraps) attr = detail::unwrapped<Attr>(record.in(), attr, idAt);
  }
  bool known = false;
  bool const negative = attr < 0;
  AttributeId const number =
      negative ? AttributeId{0} - static_cast<AttributeId>(attr) : static_cast<AttributeId>(attr);
  visit(typename Attr::All{}, number, [&](auto attribute) {
    known = detail::receiveAttribute<Attr, decltype(attribute)>(adapter, record, negative, idAt);
  });
  if (!known) adapter.doBaseVekNboAttrLogSaMsg(attr, options, length, in);
}

}  // namespace Vek
