// CollectionLog: an attribute with values by key goes out, one key at a time; and the walk of any collection, of values
// or of children, as a whole, between markers. What an X::VekNboAttrLogSa defines itself are one-line calls of these.
// The walk keeps no copy of the collection: its one memory is the key where it goes on. The far side drops at the end
// marker what was not mentioned since the begin marker.
// Thread: the entity's. Re-entrancy: calls nobody. Throws ReadOnlyException, and std::bad_alloc.
#pragma once

#include "dornl3/attrlog/FlowOutFrame.h"
#include "dornl3/attrlog/ScalarLog.h"

namespace Vek {

namespace detail {

template <class A>
using MapOf = std::remove_reference_t<decltype(A::field(std::declval<typename A::Owner&>()))>;

/// A record of a numbered switch has a size that is known ahead; all others say theirs.
template <class A>
inline constexpr bool hasFixedKeyRecord =
    std::is_base_of_v<HashMapGeneric, MapOf<A>>&& std::is_same_v<typename A::Key, U32>&& std::is_same_v<
        typename A::Value, bool>;

template <class Sa>
[[nodiscard]] typename Sa::FlowOut& owedBy(Sa const& adapter) noexcept {
  return static_cast<typename Sa::FlowOut&>(*static_cast<StreamAdapter const&>(adapter).flowOut());
}

}  // namespace detail

/// Writes one key, or marks it. `deleted`: it is there no longer, and `value` does not count.
template <class A, class Sa>
void serializeKey(Sa& adapter, typename A::Key const& key, typename A::Value const& value, bool deleted) {
  using Turn = Entity::VekNboAttrLogSa::Turn;
  Turn const turn = adapter.keyTurn(A::number);
  if (turn == Turn::silent) return;
  bool const owes = !adapter.hasFlag(StreamAdapter::noFlowOut);
  if (turn == Turn::mark) {
    auto& marks = A::dirty(detail::owedBy(adapter));
    dirtyKeyIs(marks, key, true);
    adapter.keyMarked(marks.count(), A::field(entityOn<typename A::Owner>(adapter)).count());
    return;
  }
  if (owes) dirtyKeyDel(A::dirty(detail::owedBy(adapter)), key);
  try {
    constexpr bool fixed = detail::hasFixedKeyRecord<A>;
    auto const number = static_cast<int>(A::number);
    U32 const size = !fixed ? 0 : deleted ? NboAttrLog::fixedKeyDeleteRecord : NboAttrLog::fixedKeyRecord;
    auto const& out = adapter.recordIs(deleted ? -number : number, size, !fixed);
    out << key;
    if (!deleted) out << value;
    adapter.recordClosed();
  } catch (...) {
    if (owes) dirtyKeyIs(A::dirty(detail::owedBy(adapter)), key, true);
    throw;
  }
}

/// Reports what stands at a key now.
template <class A, class Sa>
void serializePresent(Sa& adapter, typename A::Key const& key) {
  auto* const member = A::field(entityOn<typename A::Owner>(adapter))[key];
  if constexpr (holdsChildren<A>) {
    (adapter.*A::logKey)(key, Ptr<typename A::Child>(member));
  } else {
    (adapter.*A::logKey)(key, member != nullptr ? member->value() : typename A::Value{}, member == nullptr);
  }
}

namespace detail {

/// The members from the bookmark on. Whether the walk came to the end of the collection; else `done` is what the caller
/// answers.
template <class Attr, class A, class Sa>
[[nodiscard]] bool walkMembers(Sa& adapter, NboAttrLog::FlowOut* owed, bool& done) {
  using Map = MapOf<A>;
  using Key = typename A::Key;
  Map const& map = A::field(entityOn<typename A::Owner>(adapter));
  bool const resumes = owed != nullptr && owed->bookmark() != nullptr;
  if (owed != nullptr && !resumes) adapter.sendTransactionMarker(A::number, StreamAdapter::beginMarker, 0);
  typename Map::IteratorConst it =
      resumes ? typename Map::IteratorConst(&map, NboAttrLog::vekFlowOutBookmarkDeq<Key>(*owed))
              : typename Map::IteratorConst(&map);
  for (; it; ++it) {
    typename A::Key const key = it->key();
    serializePresent<A>(adapter, key);
    if (owed == nullptr) continue;
    bool const yields = owed->yieldRequested();
    if (!yields) dirtyKeyDel(A::dirty(owedBy(adapter)), key);
    if (!yields && adapter.continueFlowOut()) continue;
    if (!yields) ++it;
    done = false;
    if (it) {
      NboAttrLog::vekFlowOutBookmarkEnq(*owed, it->key());
    } else {
      adapter.sendTransactionMarker(A::number, StreamAdapter::endMarker, 0);
      owed->slotBitIs(logSlot<Attr, A>, true);
      done = A::dirty(owedBy(adapter)).count() == 0;
    }
    return false;
  }
  return true;
}

}  // namespace detail

/// The walk of a collection. Returns whether nothing more is owed of it in this visit.
template <class Attr, class A, class Sa>
bool serializeCollection(Sa& adapter) {
  bool done = false;
  if (!adapter.walkMayBegin(A::number, done)) return done;
  Ptr<NboAttrLog::FlowOut> const owed = static_cast<StreamAdapter&>(adapter).flowOut();
  constexpr U32 slot = logSlot<Attr, A>;
  bool const walks = !owed || (!owed->keysOnly() && !owed->slotBit(slot));
  if (walks && !detail::walkMembers<Attr, A>(adapter, owed.ptr(), done)) return done;
  if (!owed || owed->attrId() != A::number) return true;
  if (!owed->slotBit(slot)) {
    owed->slotBitIs(slot, true);
    adapter.sendTransactionMarker(A::number, StreamAdapter::endMarker, 0);
  }
  auto& dirty = A::dirty(detail::owedBy(adapter));
  using Dirty = std::remove_reference_t<decltype(dirty)>;
  for (typename Dirty::IteratorConst it(&dirty); it; ++it) {
    if (!adapter.continueFlowOut()) return false;
    serializePresent<A>(adapter, it->key());
    if (owed->yieldRequested()) return false;
    dirtyKeyDel(dirty, it->key());
  }
  return true;
}

}  // namespace Vek
