// ValueWire: the wire form of values. The fields stand one behind the other, in the order of the attributes, with
// nothing between them. A peer with an older schema sends fewer fields: what it does not send keeps its default. One
// with a newer schema sends more: the rest of the record is passed over.
#pragma once

#include "dornl3/frame/Attribute.h"
#include "dornl3/platform/attrlog/In.h"

#include <bit>

namespace Vek {

/// Reads a field, key or value of that type. Throws ShortRecordException, and what the type throws for a value that it
/// does not take.
template <class V>
[[nodiscard]] V nextField(NboAttrLog::In& in) {
  if constexpr (std::is_same_v<V, bool>) {
    return in.nextbool();
  } else if constexpr (std::is_same_v<V, U8>) {
    return in.nextU8();
  } else if constexpr (std::is_same_v<V, U32>) {
    return in.nextU32();
  } else if constexpr (std::is_same_v<V, U64>) {
    return in.nextU64();
  } else if constexpr (std::is_same_v<V, Seconds>) {
    return in.nextSeconds();
  } else if constexpr (std::is_same_v<V, String8>) {
    return in.nextString();
  } else if constexpr (std::is_same_v<V, Name>) {
    return Name(in.nextString());
  } else if constexpr (std::is_constructible_v<V, NboAttrLog::In*, StreamBogon>) {
    return V(&in, StreamBogon{});
  } else {
    return V(in.nextU16());
  }
}

namespace detail {

/// Bytes of a field that is a number; 0 for another.
template <class V>
inline constexpr std::size_t numberSize = std::is_same_v<V, U8> || std::is_same_v<V, U32> || std::is_same_v<V, U64> ||
                                                  std::is_same_v<V, Seconds>
                                              ? sizeof(V)
                                              : 0;

template <class... A>
constexpr bool areNumbers(List<A...>) noexcept {
  return ((numberSize<typename A::Value> != 0) && ...);
}
template <class... A>
constexpr std::size_t numbersSize(List<A...>) noexcept {
  return (numberSize<typename A::Value> + ... + 0);
}

template <class V>
using Unsigned = std::conditional_t<std::is_same_v<V, Seconds>, U64, V>;

}  // namespace detail

/// Reads the fields of a value that holds its defaults, as far as the record goes.
template <class Attr, class X>
void readValueFields(X& value, NboAttrLog::In& in) {
  using All = typename Attr::All;
  if constexpr (detail::areNumbers(All{})) {
    if (char const* at = in.fields(detail::numbersSize(All{}))) {
      forEach(All{}, [&](auto attribute) {
        using V = typename decltype(attribute)::Value;
        decltype(attribute)::field(value) = std::bit_cast<V>(NboAttrLog::takeNumber<detail::Unsigned<V>>(at));
        at += sizeof(V);
      });
      return;
    }
  }
  forEach(All{}, [&](auto attribute) {
    using A = decltype(attribute);
    if (!in.isAtLimit()) A::field(value) = nextField<typename A::Value>(in);
  });
}

/// Writes the fields of a value that are all numbers, where there is room for them.
template <class Attr, class X>
void putValueFields(char* at, X const& value) noexcept {
  forEach(typename Attr::All{}, [&](auto attribute) {
    using V = typename decltype(attribute)::Value;
    NboAttrLog::putNumber(at, std::bit_cast<detail::Unsigned<V>>(decltype(attribute)::field(value)));
    at += sizeof(V);
  });
}

/// Writes the fields of a value.
template <class Attr, class X>
NboAttrLog::OutPtr const& writeValueFields(NboAttrLog::OutPtr const& out, X const& value) {
  using All = typename Attr::All;
  if constexpr (detail::areNumbers(All{})) {
    if (char* const at = out->fieldsIs(detail::numbersSize(All{}))) putValueFields<Attr>(at, value);
  } else {
    forEach(All{}, [&](auto attribute) { out << decltype(attribute)::field(value); });
  }
  return out;
}

/// The value behind a key, or the default where the record ends there.
template <class V>
[[nodiscard]] V nextValue(NboAttrLog::In& in) {
  return in.isAtLimit() ? V{} : nextField<V>(in);
}

/// Bytes of a field that is one number, in memory as on a log; 0 for another.
template <class V>
inline constexpr U32 numberBytes = static_cast<U32>(detail::numberSize<V>);
template <>
inline constexpr U32 numberBytes<bool> = 1;
template <class V>
requires(sizeof(V) == sizeof(unsigned short) && std::is_class_v<V> && std::is_trivially_copyable_v<V> &&
         std::is_constructible_v<V, unsigned short>) inline constexpr U32 numberBytes<V> = sizeof(V);

/// Bytes of a scalar record where they are known ahead; 0 where they are not.
template <class V>
inline constexpr U32 fixedSize = std::is_same_v<V, bool>  ? 1
                                 : std::is_same_v<V, U32> ? 4
                                 : std::is_same_v<V, U64> ? 8
                                                          : 0;

}  // namespace Vek
