// CollectionLog: an attribute with values by key goes out, one key at a time; and the walk of any collection, of values
// or of children, as a whole, between markers. What an X::VekNboAttrLogSa defines itself are one-line calls of these.
// The walk keeps no copy of the collection: its one memory is the key where it goes on. The far side drops at the end
// marker what was not mentioned since the begin marker.
// Thread: the entity's. Re-entrancy: calls nobody. Throws ReadOnlyException, and std::bad_alloc.
#pragma once

#include "dornl3/attrlog/KeyedRow.h"
#include "dornl3/attrlog/ScalarLog.h"

namespace Vek {

namespace detail {

template <class Sa>
[[nodiscard]] typename Sa::FlowOut& owedBy(Sa const& adapter) noexcept {
  return static_cast<typename Sa::FlowOut&>(*static_cast<StreamAdapter const&>(adapter).flowOut());
}

/// Writes one key, or marks it, where not all is plain.
template <class Dirty>
[[gnu::noinline]] void sendKeyInTurn(Entity::VekNboAttrLogSa& adapter, ValuesRow<Dirty> const& row,
                                     typename Dirty::Key const& key, void const* value) {
  using Sa = Entity::VekNboAttrLogSa;
  Ptr<Sa> const held(&adapter);
  Sa::Turn const turn = adapter.keyTurn(row.number);
  if (turn == Sa::Turn::silent) return;
  Ptr<NboAttrLog::FlowOut> const& owed = adapter.flowOut();
  if (turn == Sa::Turn::write) {
    if (owed) dirtyKeyDel(row.dirty(*owed), key);
    try {
      adapter.writeKey(row.form, &key, value);
      return;
    } catch (...) {
      if (owed) dirtyKeyIs(row.dirty(*owed), key, true);
      throw;
    }
  }
  Dirty& marks = row.dirty(*owed);
  dirtyKeyIs(marks, key, true);
  boundMarks(adapter, row.number, marks, row.count(entityOn<Entity>(adapter)));
}

/// Writes one key, or marks it. `value` is null where it is there no longer.
template <class Dirty>
void sendKey(Entity::VekNboAttrLogSa& adapter, ValuesRow<Dirty> const& row, typename Dirty::Key const& key,
             void const* value) {
  if (!adapter.logKey(row.form, &key, value)) sendKeyInTurn(adapter, row, key, value);
}

template <class Dirty>
void sendPresent(Entity::VekNboAttrLogSa& adapter, ValuesRow<Dirty> const& row, typename Dirty::Key const& key) {
  sendKey(adapter, row, key, row.find(entityOn<Entity>(adapter), key).value);
}

template <class A>
void sendChild(Entity::VekNboAttrLogSa& adapter, typename A::Key const& key) {
  auto& own = static_cast<typename A::Owner::VekNboAttrLogSa&>(adapter);
  (own.*A::logKey)(key, Ptr<typename A::Child>(A::field(entityOn<typename A::Owner>(adapter))[key]));
}
template <class A>
void sendValue(Entity::VekNboAttrLogSa& adapter, typename A::Key const& key);

template <class A>
inline constexpr KeyedRow<DirtyOf<A>> childrenRow{A::number,       &RowOf<A>::dirty, &RowOf<A>::count,
                                                  &RowOf<A>::walk, &RowOf<A>::keyOf, &sendChild<A>};
template <class A>
inline constexpr ValuesRow<DirtyOf<A>> valuesRow{
    {A::number, &RowOf<A>::dirty, &RowOf<A>::count, &RowOf<A>::walk, &RowOf<A>::keyOf, &sendValue<A>},
    &RowOf<A>::find,
    &RowOf<A>::set,
    &RowOf<A>::remove,
    keyFormOf<A>()};

template <class A>
void sendValue(Entity::VekNboAttrLogSa& adapter, typename A::Key const& key) {
  sendPresent(adapter, valuesRow<A>, key);
}

template <class A>
[[nodiscard]] KeyedRow<DirtyOf<A>> const& rowOf() noexcept {
  if constexpr (holdsChildren<A>) {
    return childrenRow<A>;
  } else {
    return valuesRow<A>;
  }
}

/// Writes one key in a walk, and takes its mark, but that of a child that waits for an id. Whether the walk stops at
/// it.
template <class Dirty>
[[nodiscard]] bool walkStopsAt(Entity::VekNboAttrLogSa& adapter, KeyedRow<Dirty> const& row, NboAttrLog::FlowOut& owed,
                               typename Dirty::Key const& key) {
  U32 const waiting = owed.waiting();
  row.send(adapter, key);
  if (owed.yieldRequested()) return true;
  if (owed.waiting() == waiting) dirtyKeyDel(row.dirty(owed), key);
  return false;
}

/// The members from the bookmark on. Whether the walk came to the end of the collection; else `done` is what the caller
/// answers.
template <class Dirty>
[[nodiscard]] bool walkMembers(Entity::VekNboAttrLogSa& adapter, KeyedRow<Dirty> const& row, U32 slot,
                               NboAttrLog::FlowOut* owed, bool& done) {
  using Key = typename Dirty::Key;
  bool const resumes = owed != nullptr && owed->bookmark() != nullptr;
  if (owed != nullptr && !resumes) adapter.sendTransactionMarker(row.number, StreamAdapter::beginMarker, 0);
  bool stops = false;
  bool isMarked = false;
  auto step = [&](PtrInterface& member) {
    Key const key = row.keyOf(member);
    if (!stops) {
      if (owed == nullptr) {
        row.send(adapter, key);
        return true;
      }
      stops = walkStopsAt(adapter, row, *owed, key);
      if (!stops) {
        stops = !adapter.continueFlowOut();
        return true;
      }
    }
    NboAttrLog::vekFlowOutBookmarkEnq(*owed, key);
    isMarked = true;
    return false;
  };
  Key const from = resumes ? NboAttrLog::vekFlowOutBookmarkDeq<Key>(*owed) : Key{};
  row.walk(entityOn<Entity>(adapter), resumes ? &from : nullptr, step);
  if (!stops) return true;
  done = false;
  if (!isMarked) {
    adapter.sendTransactionMarker(row.number, StreamAdapter::endMarker, 0);
    owed->slotBitIs(slot, true);
    done = row.dirty(*owed).count() == 0;
  }
  return false;
}

/// The walk of a collection. Returns whether nothing more is owed of it in this visit.
template <class Dirty>
[[nodiscard]] bool walkCollection(Entity::VekNboAttrLogSa& adapter, KeyedRow<Dirty> const& row, U32 slot) {
  bool done = false;
  if (!adapter.walkMayBegin(row.number, done)) return done;
  Ptr<NboAttrLog::FlowOut> const owed = static_cast<StreamAdapter&>(adapter).flowOut();
  bool const walks = !owed || (!owed->keysOnly() && !owed->slotBit(slot));
  if (walks && !walkMembers(adapter, row, slot, owed.ptr(), done)) return done;
  if (!owed || owed->attrId() != row.number) return true;
  if (!owed->slotBit(slot)) {
    owed->slotBitIs(slot, true);
    adapter.sendTransactionMarker(row.number, StreamAdapter::endMarker, 0);
  }
  // It goes on behind what was written last: keys that change all the time keep none behind them waiting.
  using Key = typename Dirty::Key;
  Dirty& dirty = row.dirty(*owed);
  bool stops = false;
  auto step = [&](PtrInterface& member) {
    Key const key = static_cast<typename Dirty::Member&>(member).key();
    stops = !adapter.continueFlowOut() || walkStopsAt(adapter, row, *owed, key);
    if (stops) NboAttrLog::vekFlowOutBookmarkEnq(*owed, key);
    return !stops;
  };
  bool const resumes = owed->bookmark() != nullptr;
  Key const from = NboAttrLog::vekFlowOutBookmarkDeq<Key>(*owed);
  dirty.walk(resumes ? &from : nullptr, step);
  return !stops;
}

}  // namespace detail

/// Writes one key, or marks it. `deleted`: it is there no longer, and `value` does not count.
template <class A>
void serializeKey(Entity::VekNboAttrLogSa& adapter, typename A::Key const& key, typename A::Value const& value,
                  bool deleted) {
  detail::sendKey(adapter, detail::valuesRow<A>, key, deleted ? nullptr : &value);
}

/// Reports what stands at a key now.
template <class A>
void serializePresent(Entity::VekNboAttrLogSa& adapter, typename A::Key const& key) {
  detail::rowOf<A>().send(adapter, key);
}

/// See detail::walkCollection.
template <class Attr, class A>
bool serializeCollection(Entity::VekNboAttrLogSa& adapter) {
  return detail::walkCollection(adapter, detail::rowOf<A>(), logSlot<Attr, A>);
}

}  // namespace Vek
