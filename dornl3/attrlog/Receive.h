// Receive: applies a record to its entity, through the ordinary setters: all reactors and all other logs hear of it,
// only the adapter that it came to stays silent. Everything is read before anything is touched. Thread: the entity's.
// Re-entrancy: reactors may do anything; another record on the same adapter is refused meanwhile.
#pragma once

#include "dornl3/attrlog/Walk.h"
#include "dornl3/frame/CollectionFrame.h"
#include "dornl3/platform/attrlog/InboundRecord.h"

namespace Vek {

namespace detail {

/// Where a received scalar goes.
template <class V>
struct ScalarPlace {
  V& field;
  ReactorChain const& reactors;
  AttributeId number;
  ReactorSlot slot;
};

template <class V>
void receiveScalar(Entity::VekNboAttrLogSa& adapter, InboundRecord const& record, ScalarPlace<V> const& place) {
  auto const value = nextField<V>(record.in());
  if (!record.applies()) {
    adapter.doNotification(static_cast<int>(place.number), nullptr);
    return;
  }
  record.decoded();
  Entity& entity = *record.entity();
  WritePass const pass{entity};
  if (!storeScalar(entity, place.number, place.field, value) || adapter.isAloneOn(place.reactors)) return;
  notifyReactors(entity, place.reactors, place.number, place.slot);
}

/// Keeps a member from the sweep that follows, however the scope ends. On an owner nothing is swept, and a mark there
/// is that of a mount upstream, which its peer has not mentioned yet.
template <class Dirty>
class Mentioned {
 public:
  using Key = typename Dirty::Key;
  Mentioned(StreamAdapter const& adapter, KeyedRow<Dirty> const& row, Entity& entity, Key const& key) noexcept
      : adapter_(adapter), row_(row), entity_(entity), key_(key) {}
  Mentioned(Mentioned const&) = delete;
  Mentioned& operator=(Mentioned const&) = delete;
  ~Mentioned() {
    if (adapter_.side() == StreamAdapter::Side::owner) return;
    if (auto* const member = row_.find(entity_, key_).member) member->vekMarkedForDeletionIs(false);
  }

 private:
  StreamAdapter const& adapter_;
  KeyedRow<Dirty> const& row_;
  Entity& entity_;
  Key const& key_;
};

template <class V, class Dirty>
void receiveKey(Entity::VekNboAttrLogSa& adapter, KeyedRow<Dirty> const& row, InboundRecord const& record,
                bool deleted) {
  using Key = typename Dirty::Key;
  Key const key = nextField<Key>(record.in());
  V const value = deleted ? V{} : nextValue<V>(record.in());
  if (!record.applies()) {
    adapter.doNotification(static_cast<int>(row.number), &key);
    return;
  }
  record.decoded();
  Entity& entity = *record.entity();
  WritePass const pass{entity};
  if (deleted) {
    row.remove(entity, key);
  } else {
    Mentioned<Dirty> const mentioned{adapter, row, entity, key};
    row.set(entity, key, &value);
  }
}

template <class A, class Sa>
[[nodiscard]] bool receiveAttribute(Sa& adapter, InboundRecord const& record, bool negative) {
  if constexpr (holdsValuesByKey<A>) {
    receiveKey<typename A::Value>(adapter, keyedRow<A>, record, negative);
    return true;
  } else if constexpr (isScalarRecord<A>) {
    if (negative) return false;
    auto& entity = static_cast<typename A::Owner&>(*record.entity());
    ReactorChain const& reactors = reactorsOf<typename A::Owner>(entity);
    receiveScalar<typename A::Value>(adapter, record,
                                     {A::field(entity), reactors, A::number, static_cast<ReactorSlot>(A::slot)});
    return true;
  } else {
    return false;
  }
}

}  // namespace detail

/// See StreamAdapter::handleAttrDeserialization.
template <class Attr, class Sa>
void receiveRecord(Sa& adapter, int attr, StreamAdapter::DeserializationOptions options, U32 length,
                   Ptr<NboAttrLog::In> const& in) {
  InboundRecord const record{adapter, attr, in};
  if (!record) return;
  if (attr == NboAttrLog::syncModeRecord) {
    adapter.receiveSyncMode(record.in());
    return;
  }
  bool known = false;
  bool const negative = attr < 0;
  AttributeId const number =
      negative ? AttributeId{0} - static_cast<AttributeId>(attr) : static_cast<AttributeId>(attr);
  visit(typename Attr::All{}, number,
        [&](auto attribute) { known = detail::receiveAttribute<decltype(attribute)>(adapter, record, negative); });
  if (!known) adapter.doBaseVekNboAttrLogSaMsg(attr, options, length, in);
}

}  // namespace Vek
