// Sweep: what a peer no longer mentions goes. A begin marker marks all members of a collection, each record clears the
// mark of its key, and the end marker removes what is still marked. Thread: the entity's. Re-entrancy: reactors of a
// removal may change the collection; the pass is then made again.
#pragma once

#include "dornl3/attrlog/Receive.h"

namespace Vek {

namespace detail {

template <class Dirty>
void sweep(Entity::VekNboAttrLogSa& adapter, KeyedRow<Dirty> const& row, StreamAdapter::AttrTransactionType type) {
  using Key = typename Dirty::Key;
  Ptr<Entity> const entity = adapter.vekNotifierEntity();
  bool isSwept = false;
  auto step = [&](Key const& key, void const*, PtrInterface& member) {
    if (type == StreamAdapter::beginMarker) {
      member.vekMarkedForDeletionIs(true);
    } else if (type == StreamAdapter::endMarker && member.vekMarkedForDeletion()) {
      Entity::VekNboAttrLogSa::IsActiveAnchor active;
      active.telIs(&adapter);
      WritePass const pass{*entity};
      row.remove(*entity, key);
      isSwept = true;
    }
    return true;
  };
  do {
    isSwept = false;
    row.walk(*entity, nullptr, step);
  } while (isSwept);
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
    if constexpr (holdsValuesByKey<decltype(attribute)>)
      detail::sweep(adapter, detail::keyedRow<decltype(attribute)>, type);
  });
  adapter.Entity::VekNboAttrLogSa::handleAttrTransaction(attr, type, argument);
}

/// Begins or ends a transaction on every collection, as the adapter's sync mode says.
template <class Attr, class Sa>
void transactionsFollowMode(Sa& adapter) {
  auto const type =
      adapter.syncMode() == StreamAdapter::synchronising ? StreamAdapter::beginMarker : StreamAdapter::endMarker;
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
