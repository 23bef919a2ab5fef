// LogSlots: which attributes travel on a log, and the bit of each in a flow-out: bit 1 for the first, and so on by
// rising number, without gaps. A scalar's bit says that it is owed, a collection's that it has been walked.
#pragma once

#include "dornl3/frame/Attribute.h"

namespace Vek {

/// Whether an attribute has a bit: it can change after construction.
template <class A>
inline constexpr bool isLogged = requires {
  A::slot;
};

template <class A>
inline constexpr bool holdsChildren = requires {
  typename A::Child;
};
template <class A>
inline constexpr bool holdsKeys = isLogged<A>&& requires {
  typename A::Key;
};
template <class A>
inline constexpr bool holdsValuesByKey = holdsKeys<A> && !holdsChildren<A>;
template <class A>
inline constexpr bool holdsChildrenByKey = holdsKeys<A>&& holdsChildren<A>;
template <class A>
inline constexpr bool holdsOneChild = isLogged<A>&& holdsChildren<A> && !holdsKeys<A>;

/// Whether it is a text, which goes out in pieces.
template <class A>
inline constexpr bool isLongText = isLogged<A> && !holdsKeys<A> && std::is_same_v<typename A::Value, String8>;
/// Whether it is a plain value that goes out as one record.
template <class A>
inline constexpr bool isScalarRecord = isLogged<A> && !holdsKeys<A> && !holdsChildren<A> && !isLongText<A>;

namespace detail {

template <class... A>
constexpr U32 loggedBelow(List<A...>, AttributeId number) noexcept {
  return ((isLogged<A> && A::number < number ? 1U : 0U) + ... + 0U);
}

}  // namespace detail

/// The bit of an attribute.
template <class Attr, class A>
inline constexpr U32 logSlot = detail::loggedBelow(typename Attr::All{}, A::number) + 1;

}  // namespace Vek
