// Sweep: what a peer no longer mentions goes. A begin marker marks all members of a collection, each record clears the
// mark of its key, and the end marker removes what is still marked. Thread: the entity's. Re-entrancy: reactors of a
// removal may change the collection; the pass is then made again.
#pragma once

#include "dornl3/attrlog/Receive.h"

#include <exception>

namespace Vek {

namespace detail {

/// What reactors throw on does not end a sweep: the first of it is thrown behind the last step.
class FirstFailure {
 public:
  template <class Step>
  void of(Step const& step) {
    try {
      step();
    } catch (...) {
      if (!first_) first_ = std::current_exception();
    }
  }
  void throwOn() const {
    if (first_) std::rethrow_exception(first_);
  }

 private:
  std::exception_ptr first_;
};

template <class Dirty>
void sweepValues(Entity::VekNboAttrLogSa& adapter, ValuesRow<Dirty> const& row,
                 StreamAdapter::AttrTransactionType type) {
  if (type == StreamAdapter::abortMarker) return;  // a peer may say that as often as it likes
  Ptr<Entity> const entity = adapter.vekNotifierEntity();
  FirstFailure failure;
  bool isSwept = false;
  auto step = [&](PtrInterface& member) {
    if (type == StreamAdapter::beginMarker) {
      member.vekMarkedForDeletionIs(true);
    } else if (type == StreamAdapter::endMarker && member.vekMarkedForDeletion()) {
      member.vekMarkedForDeletionIs(false);
      if (owesKey(adapter, row, row.keyOf(member))) return true;
      Entity::VekNboAttrLogSa::IsActiveAnchor active;
      active.telIs(&adapter);
      WritePass const pass{*entity};
      isSwept = true;
      failure.of([&] { row.remove(*entity, row.keyOf(member)); });
    }
    return true;
  };
  do {
    isSwept = false;
    row.walk(*entity, nullptr, step);
  } while (isSwept);
  failure.throwOn();
}

/// A child is marked on its adapter for this log. Without one at the end it was not mentioned either; one that was made
/// here, and waits for its binding, is our own news.
template <class A, class Sa>
void sweepMember(Sa& adapter, typename A::Owner& entity, typename A::Child& child,
                 StreamAdapter::AttrTransactionType type) {
  auto const bound = adapter.childAdapterOf(Ptr<Entity>(&child));
  if (type == StreamAdapter::beginMarker) {
    if (bound) bound->flagsIs(StreamAdapter::resyncStale, true);
  } else if (type == StreamAdapter::endMarker && (!bound || bound->hasFlag(StreamAdapter::resyncStale))) {
    typename A::Key const key = child.key();
    bool const isOwed = !adapter.hasFlag(StreamAdapter::noFlowOut) && A::dirty(owedBy(adapter))[key] != nullptr;
    bool const isUnderWay = bound && adapter.streamDemuxer()->isBindUnderWay(*bound, adapter);
    if ((isOwed || isUnderWay) && adapter.side() != StreamAdapter::Side::plain) {
      if (bound) bound->flagsIs(StreamAdapter::resyncStale, false);
      return;
    }
    Entity::VekNboAttrLogSa::IsActiveAnchor active;
    active.telIs(&adapter);
    WritePass const pass{entity};
    childrenDel<A>(entity, key);
  }
}

/// The one child of an attribute has no sweep: marked, it stays silent until a record for it comes.
template <class A>
void markOneChild(Entity::VekNboAttrLogSa& adapter, StreamAdapter::AttrTransactionType type) {
  if (type != StreamAdapter::beginMarker) return;
  Ptr<Entity> const child = A::field(entityOn<typename A::Owner>(adapter));
  if (auto const bound = adapter.childAdapterOf(child)) bound->flagsIs(StreamAdapter::resyncStale, true);
}

template <class A, class Sa>
void sweepChildren(Sa& adapter, StreamAdapter::AttrTransactionType type) {
  using Map = MapOf<A>;
  if (type == StreamAdapter::abortMarker) return;
  Ptr<Entity> const held = adapter.vekNotifierEntity();
  auto& entity = static_cast<typename A::Owner&>(*held);
  Map& map = A::field(entity);
  FirstFailure failure;
  U32 version = 0;
  do {
    version = map.version();
    for (typename Map::Iterator it(&map); it; ++it) {
      failure.of([&] { sweepMember<A>(adapter, entity, *it, type); });
    }
  } while (map.version() != version);
  failure.throwOn();
}

}  // namespace detail

/// See StreamAdapter::handleAttrTransaction.
template <class Attr, class Sa>
void applyTransaction(Sa& adapter, AttributeId attr, StreamAdapter::AttrTransactionType type, U32 argument) {
  Ptr<Entity::VekNboAttrLogSa> const held(&adapter);
  if (adapter.rawNotifier() == nullptr) return;
  adapter.transactionHead(attr, type);
  bool baseFollows = true;
  visit(typename Attr::All{}, attr, [&](auto attribute) {
    using A = decltype(attribute);
    if constexpr (holdsValuesByKey<A>) {
      detail::sweepValues(adapter, detail::valuesRow<A>, type);
    } else if constexpr (holdsChildrenByKey<A>) {
      detail::sweepChildren<A>(adapter, type);
    } else if constexpr (holdsOneChild<A>) {
      detail::markOneChild<A>(adapter, type);
    } else if constexpr (isLongText<A>) {
      baseFollows = adapter.textTransaction(attr, type);
    }
  });
  if (!baseFollows) return;
  adapter.Entity::VekNboAttrLogSa::handleAttrTransaction(attr, type, argument);
}

/// Begins or ends a transaction on every collection, as the adapter's sync mode says.
template <class Attr, class Sa>
void transactionsFollowMode(Sa& adapter) {
  auto const type =
      adapter.syncMode() == StreamAdapter::synchronising ? StreamAdapter::beginMarker : StreamAdapter::endMarker;
  detail::FirstFailure failure;
  forEach(typename Attr::All{}, [&](auto attribute) {
    using A = decltype(attribute);
    if constexpr (holdsKeys<A> || holdsOneChild<A>) {
      failure.of([&] { adapter.handleAttrTransaction(A::number, type, 0); });
    }
  });
  failure.throwOn();
}

/// See StreamAdapter::syncModeIs.
template <class Attr, class Sa>
void syncModeFollows(Sa& adapter, StreamAdapter::SyncMode mode) {
  adapter.StreamAdapter::syncModeIs(mode);
  if (adapter.modeOpensTransactions()) transactionsFollowMode<Attr>(adapter);
}

}  // namespace Vek
