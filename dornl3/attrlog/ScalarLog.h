// ScalarLog: an attribute with one value goes out. What an X::VekNboAttrLogSa::on<Attr> defines itself is one call of
// this. A change is written at once where the log is in step and has room; everywhere else it is marked, and the walk
// writes what the entity holds when it comes there.
// Thread: the entity's. Re-entrancy: calls nobody. Throws ReadOnlyException, and std::bad_alloc.
#pragma once

#include "dornl3/attrlog/KeyedRow.h"
#include "dornl3/attrlog/LogSlots.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

namespace Vek {

/// The entity of an adapter of type X's, which is bound.
template <class X>
[[nodiscard]] X& entityOn(Entity::VekNboAttrLogSa const& adapter) noexcept {
  return const_cast<X&>(static_cast<X const&>(*adapter.rawNotifier()));
}

namespace detail {

/// Where the field of A lies; null where the adapter has no entity.
template <class A>
[[nodiscard]] auto const* fieldOn(Entity::VekNboAttrLogSa const& adapter) noexcept {
  auto const* const entity = static_cast<typename A::Owner const*>(adapter.rawNotifier());
  return entity == nullptr ? nullptr : &A::field(*entity);
}

template <class Attr, class A>
inline constexpr Entity::VekNboAttrLogSa::ScalarForm scalarForm{
    {static_cast<int>(A::number), fieldForm<typename A::Value>.bytes, fixedSize<typename A::Value> == 0},
    logSlot<Attr, A>,
    fieldForm<typename A::Value>};

}  // namespace detail

template <class Attr, class A>
void logScalar(Entity::VekNboAttrLogSa& adapter) {
  adapter.logField<numberBytes<typename A::Value>>(detail::scalarForm<Attr, A>, detail::fieldOn<A>(adapter));
}

/// A text goes out. Whether all of it has gone.
template <class Attr, class A>
bool logText(Entity::VekNboAttrLogSa& adapter) {
  if (adapter.rawNotifier() == nullptr) return true;
  return adapter.serializeText(A::number, logSlot<Attr, A>, A::field(entityOn<typename A::Owner>(adapter)));
}

}  // namespace Vek
