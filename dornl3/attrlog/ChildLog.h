// ChildLog: attributes that hold children go out. A child has an adapter of its own, and its records travel under its
// own id: what the parent's log carries is a record that binds the child to that id, or says that it is gone. What an
// X::VekNboAttrLogSa defines itself are one-line calls of these.
// A change that comes from the log takes the other way here: the child that the setter has just made, or found, takes
// the id that follows in the input. Thread: the entity's. Re-entrancy: calls nobody. Throws ReadOnlyException, and
// std::bad_alloc.
#pragma once

#include "dornl3/attrlog/CollectionLog.h"

namespace Vek {

/// Binds a child to the log: its adapter is found or made, and a record with its key and id is written.
template <class A>
Ptr<typename A::Child::VekNboAttrLogSa>
bindChildRecord(Entity::VekNboAttrLogSa& adapter, PtrInterface::NotifieeConst::Vek_BitSet flags,
                Ptr<typename A::Child> const& child, U32 count, PtrInterface* channel) {
  using ChildSa = typename A::Child::VekNboAttrLogSa;
  Ptr<ChildSa> bound = ptrCast<ChildSa>(adapter.childAdapterOf(child));
  if (bound) {
    bound->vek_bitSetIs(flags);
    if (bound->hasFlag(StreamAdapter::childRecordSuppressed)) return bound;
  } else {
    bound = make<ChildSa>(flags, child, count, adapter.boundLog(), channel);
    adapter.childIsOnLog(*bound);
  }
  if constexpr (holdsChildrenByKey<A>) {
    adapter.childRecordIs(A::number, String8(child->key()), *bound);
  } else {
    adapter.childRecordIs(A::number, String8(child->name()), *bound);
  }
  return bound;
}

/// Takes a child's adapter off the log, and those below it; null where it has none.
template <class A>
Ptr<typename A::Child::VekNboAttrLogSa> remountChild(Entity::VekNboAttrLogSa& adapter,
                                                     Ptr<typename A::Child> const& child) {
  auto const bound = ptrCast<typename A::Child::VekNboAttrLogSa>(adapter.childAdapterOf(child));
  if (bound) bound->doRemountSelf(nullptr);
  return bound;
}

namespace detail {

template <class A, class Sa>
[[nodiscard]] bool bindPresent(Sa& adapter, U32 slot, Ptr<typename A::Child> const& child) {
  auto const bind = [&](PtrInterface::NotifieeConst::Vek_BitSet flags) {
    return (adapter.*A::logBind)(flags, child, 1, adapter.boundLog(), adapter.channel());
  };
  return adapter.bindChild(A::number, slot, Entity::VekNboAttrLogSa::ChildBinder(bind));
}

}  // namespace detail

/// The one child of an attribute has come, changed or gone.
template <class Attr, class A, class Sa>
void logChild(Sa& adapter) {
  Ptr<Sa> const held(&adapter);
  Ptr<typename A::Child> const child = A::field(entityOn<typename A::Owner>(adapter));
  if (adapter.receivesChild()) {
    adapter.receiveChildId(child);
    return;
  }
  constexpr U32 slot = logSlot<Attr, A>;
  if (adapter.scalarTurn(A::number, slot) != Entity::VekNboAttrLogSa::Turn::write) return;
  try {
    if (child) {
      static_cast<void>(detail::bindPresent<A>(adapter, slot, child));
    } else {
      static_cast<void>(adapter.recordIs(-static_cast<int>(A::number), 0, false));
      adapter.recordClosed();
    }
  } catch (...) {
    adapter.scalarOwed(slot);
    throw;
  }
}

/// The child at a key has come or gone, which is null then.
template <class A, class Sa>
void serializeChild(Sa& adapter, typename A::Key const& key, Ptr<typename A::Child> const& child) {
  using Turn = Entity::VekNboAttrLogSa::Turn;
  Ptr<Sa> const held(&adapter);
  if (adapter.receivesChild()) {
    adapter.receiveChildId(child);
    return;
  }
  Turn const turn = adapter.keyTurn(A::number);
  if (turn == Turn::silent) return;
  auto const mark = [&] {
    if (!adapter.hasFlag(StreamAdapter::noFlowOut)) dirtyKeyIs(A::dirty(detail::owedBy(adapter)), key, true);
  };
  if (turn == Turn::mark) {
    mark();
    auto const members = A::field(entityOn<typename A::Owner>(adapter)).count();
    boundMarks(adapter, A::number, A::dirty(detail::owedBy(adapter)), members);
    return;
  }
  if (!adapter.hasFlag(StreamAdapter::noFlowOut)) dirtyKeyDel(A::dirty(detail::owedBy(adapter)), key);
  try {
    if (!child) {
      adapter.recordIs(-static_cast<int>(A::number), 0, true) << String8(key);
      adapter.recordClosed();
    } else if (!detail::bindPresent<A>(adapter, 0, child)) {
      mark();
    }
  } catch (...) {
    mark();
    throw;
  }
}

}  // namespace Vek
