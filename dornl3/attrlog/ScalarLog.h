// ScalarLog: an attribute with one value goes out. What an X::VekNboAttrLogSa::on<Attr> defines itself is one call of
// this. A change is written at once where the log is in step and has room; everywhere else it is marked, and the walk
// writes what the entity holds when it comes there.
// Thread: the entity's. Re-entrancy: calls nobody. Throws ReadOnlyException, and std::bad_alloc.
#pragma once

#include "dornl3/attrlog/LogSlots.h"
#include "dornl3/attrlog/ValueWire.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

namespace Vek {

/// The entity of an adapter of type X's, which is bound.
template <class X>
[[nodiscard]] X& entityOn(Entity::VekNboAttrLogSa const& adapter) noexcept {
  return const_cast<X&>(static_cast<X const&>(*adapter.rawNotifier()));
}

template <class Attr, class A>
void logScalar(Entity::VekNboAttrLogSa& adapter) {
  using V = typename A::Value;
  if (adapter.scalarTurn(A::number, logSlot<Attr, A>) != Entity::VekNboAttrLogSa::Turn::write) return;
  try {
    auto const& out = adapter.recordIs(static_cast<int>(A::number), fixedSize<V>, fixedSize<V> == 0);
    out << A::field(entityOn<typename A::Owner>(adapter));
    adapter.recordClosed();
  } catch (...) {
    adapter.scalarOwed(logSlot<Attr, A>);
    throw;
  }
}

/// A text goes out. Whether all of it has gone.
template <class Attr, class A>
bool logText(Entity::VekNboAttrLogSa& adapter) {
  if (adapter.rawNotifier() == nullptr) return true;
  return adapter.serializeText(A::number, logSlot<Attr, A>, A::field(entityOn<typename A::Owner>(adapter)));
}

}  // namespace Vek
