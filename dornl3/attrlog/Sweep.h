// Sweep: what a peer no longer mentions goes. A begin marker marks all members of a collection, each record clears the mark
// of its key, and the end marker removes what is still marked.
// Thread: the entity's. Re-entrancy: reactors of a removal may change the collection; the pass is then made again.
#pragma once

#include "dornl3/attrlog/Receive.h"

namespace Vek {

namespace detail {

template <class A>
void sweepMember(Entity::VekNboAttrLogSa& adapter, typename A::Owner& entity, typename A::Member& member,
                 StreamAdapter::AttrTransactionType type) {
  if (type == StreamAdapter::beginMarker) {
    member.vekMarkedForDeletionIs(true);
  } else if (type == StreamAdapter::endMarker && member.vekMarkedForDeletion()) {
    Entity::VekNboAttrLogSa::IsActiveAnchor active;
    active.telIs(&adapter);
    WritePass const pass{entity};
    collectionDel<A>(entity, member.key());
  }
}

template <class A>
void sweep(Entity::VekNboAttrLogSa& adapter, StreamAdapter::AttrTransactionType type) {
  using Map = MapOf<A>;
  Ptr<Entity> const held = adapter.vekNotifierEntity();
  auto& entity = static_cast<typename A::Owner&>(*held);
  Map& map = A::field(entity);
  U32 version = 0;
  do {
    version = map.version();
    for (typename Map::Iterator it(&map); it; ++it) sweepMember<A>(adapter, entity, *it, type);
  } while (map.version() != version);
}

}  // namespace detail

/// See StreamAdapter::handleAttrTransaction.
template <class Attr>
void applyTransaction(Entity::VekNboAttrLogSa& adapter, AttributeId attr, StreamAdapter::AttrTransactionType type,
                      U32 argument) {
  Ptr<Entity::VekNboAttrLogSa> const held(&adapter);
  if (adapter.rawNotifier() == nullptr) return;
  adapter.transactionHead(attr, type);
  visit(typename Attr::All{}, attr, [&](auto attribute) {
    if constexpr (holdsValuesByKey<decltype(attribute)>) detail::sweep<decltype(attribute)>(adapter, type);
  });
  adapter.Entity::VekNboAttrLogSa::handleAttrTransaction(attr, type, argument);
}

/// Begins or ends a transaction on every collection, as the adapter's sync mode says.
template <class Attr, class Sa>
void transactionsFollowMode(Sa& adapter) {
  auto const type = adapter.syncMode() == StreamAdapter::synchronising ? StreamAdapter::beginMarker
                                                                       : StreamAdapter::endMarker;
  forEach(typename Attr::All{}, [&](auto attribute) {
    using A = decltype(attribute);
    if constexpr (holdsValuesByKey<A>) adapter.handleAttrTransaction(A::number, type, 0);
  });
}

/// See StreamAdapter::syncModeIs.
template <class Attr, class Sa>
void syncModeFollows(Sa& adapter, StreamAdapter::SyncMode mode) {
  adapter.StreamAdapter::syncModeIs(mode);
  if (adapter.modeOpensTransactions()) transactionsFollowMode<Attr>(adapter);
}

}  // namespace Vek
