// KeyedRow: what a collection tells of itself, for the halves of the log that are the same for all
// collections with keys of one type. A collection adds to the library what stands in its row, and not a copy of those
// halves. Owner: rows are constants. Thread: any.
#pragma once

#include "dornl3/attrlog/FlowOutFrame.h"
#include "dornl3/attrlog/ValueWire.h"
#include "dornl3/frame/CollectionFrame.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

namespace Vek {

/// `Dirty`: the map of the keys that are owed.
template <class Dirty>
struct KeyedRow {
  using Key = typename Dirty::Key;

  AttributeId number;
  Dirty& (*dirty)(NboAttrLog::FlowOut& flowOut);
  /// How many members there are.
  U32 (*count)(Entity& entity);
  /// Walks the members from a key on, or from the first.
  void (*walk)(Entity& entity, Key const* from, MemberCall const& call);
  Key (*keyOf)(PtrInterface& member);
  /// Writes what stands at a key, or marks the key.
  void (*send)(Entity::VekNboAttrLogSa& adapter, Key const& key);
};

/// What it tells beside where its members are values.
template <class Dirty>
struct ValuesRow : KeyedRow<Dirty> {
  using Key = typename Dirty::Key;
  struct Found {
    PtrInterface* member;  ///< null where the key is absent
    void const* value;
  };

  Found (*find)(Entity& entity, Key const& key);
  /// Sets a value that the log of an adapter has brought.
  void (*set)(Entity& entity, Key const& key, void const* value, Entity::VekNboAttrLogSa const& adapter);
  void (*remove)(Entity& entity, Key const& key);
  Entity::VekNboAttrLogSa::KeyForm form;
};

namespace detail {

template <class A>
using MapOf = std::remove_reference_t<decltype(A::field(std::declval<typename A::Owner&>()))>;

template <class A>
using FlowOutOf = typename A::Owner::VekNboAttrLogSa::FlowOut;

template <class A>
using DirtyOf = std::remove_reference_t<decltype(A::dirty(std::declval<FlowOutOf<A>&>()))>;

/// A record of a numbered switch has a size that is known ahead; all others say theirs.
template <class A>
inline constexpr bool hasFixedKeyRecord = std::is_base_of_v<HashMapGeneric, MapOf<A>>&&
    std::is_same_v<typename A::Key, U32>&& std::is_same_v<typename A::Value, bool>;

/// The functions of a row.
template <class A>
struct RowOf {
  using Key = typename A::Key;
  using Found = typename ValuesRow<DirtyOf<A>>::Found;

  static MapOf<A>& map(Entity& entity) noexcept { return A::field(static_cast<typename A::Owner&>(entity)); }

  static DirtyOf<A>& dirty(NboAttrLog::FlowOut& flowOut) noexcept {
    return A::dirty(static_cast<FlowOutOf<A>&>(flowOut));
  }
  static U32 count(Entity& entity) { return map(entity).count(); }
  static void walk(Entity& entity, Key const* from, MemberCall const& call) { map(entity).walk(from, call); }
  static Key keyOf(PtrInterface& member) { return static_cast<typename MapOf<A>::Member&>(member).key(); }
  static Found find(Entity& entity, Key const& key) {
    auto* const member = map(entity)[key];
    return {member, member == nullptr ? nullptr : &member->value()};
  }
  static void set(Entity& entity, Key const& key, void const* value, Entity::VekNboAttrLogSa const& adapter) {
    auto& owner = static_cast<typename A::Owner&>(entity);
    if (!collectionStore<A>(owner, key, *static_cast<typename A::Value const*>(value))) return;
    if (!adapter.isAloneOn(reactorsOf<typename A::Owner>(owner))) notifyKey<A>(owner, key);
  }
  static void remove(Entity& entity, Key const& key) { collectionDel<A>(static_cast<typename A::Owner&>(entity), key); }
};

template <class V>
void writeField(NboAttrLog::OutPtr const& out, void const* field) {
  out << *static_cast<V const*>(field);
}

template <class V>
void putField(char* at, void const* field) noexcept {
  putValueFields<typename V::Attr>(at, *static_cast<V const*>(field));
}

/// Whether V is a value of numbers alone.
template <class V>
constexpr bool hasNumbersOnly() noexcept {
  if constexpr (requires { typename V::Attr::All; }) {
    return areNumbers(typename V::Attr::All{});
  } else {
    return false;
  }
}

template <class V>
[[nodiscard]] constexpr Entity::VekNboAttrLogSa::FieldForm formOf() noexcept {
  if constexpr (numberBytes<V> != 0) {
    return {numberBytes<V>, nullptr, nullptr};
  } else if constexpr (hasNumbersOnly<V>()) {
    return {numbersSize(typename V::Attr::All{}), &putField<V>, nullptr};
  } else {
    return {0, nullptr, &writeField<V>};
  }
}
template <class V>
inline constexpr Entity::VekNboAttrLogSa::FieldForm fieldForm = formOf<V>();

template <class A>
[[nodiscard]] constexpr Entity::VekNboAttrLogSa::KeyForm keyFormOf() noexcept {
  constexpr auto number = static_cast<int>(A::number);
  constexpr auto key = fieldForm<typename A::Key>;
  constexpr auto value = fieldForm<typename A::Value>;
  constexpr bool isVariable = !hasFixedKeyRecord<A>;
  return {{number, key.bytes + value.bytes, isVariable}, {-number, key.bytes, isVariable}, key, value};
}

}  // namespace detail

}  // namespace Vek
