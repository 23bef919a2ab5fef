// Attribute: how a type's attributes stand in code. Each is a descriptor, a tag type with static members; a type's
// nested struct Attr holds them, in number order, and the frames are templates over it:
//
//   struct Toy::Attr {
//     static constexpr char const* shortName = "Toy";
//     struct size : Vek::Scalar<Toy, Vek::U32, 258> {
//       static constexpr char const* name = "size";
//       static auto& field(auto& owner) { return owner.size_; }
//       static constexpr auto slot = &NotifieeConst::onSize;
//     };
//     using All = Vek::List<size>;
//   };
//
// A type declares its Attr and defines it in its source, so that the descriptors see privates and stay hidden.
// Thread: any; descriptors are constants.
#pragma once

#include "dornl3/core/Integers.h"
#include "dornl3/platform/vek/VekAttr.h"

#include <type_traits>

namespace Vek {

/// A list of types; carries nothing.
template <class... T>
struct List {};

/// Calls f(descriptor) for the attribute of that number, and tells whether there is one. A jump table, not a search.
template <class... A, class F>
constexpr bool visit(List<A...>, AttributeId number, F&& f) {
  return ((number == A::number && (void(f(A{})), true)) || ...);
}

/// Calls f(descriptor) for every attribute, in number order.
template <class... A, class F>
constexpr void forEach(List<A...>, F&& f) {
  (void(f(A{})), ...);
}

/// What every descriptor tells beside its name.
template <class O, class V, AttributeId N>
struct Described {
  using Owner = O;
  using Value = V;
  static constexpr AttributeId number = N;
};

/// A plain attribute of an entity: it has a setter and a slot.
template <class O, class V, AttributeId N>
struct Scalar : Described<O, V, N> {
  static constexpr auto flags = VekAttr::AttrFlags::scalar();
  static constexpr auto introspectionFlags = VekAttr::declaredFlags;
};

/// An attribute fixed by the constructor: every attribute of a value, and some of an entity.
template <class O, class V, AttributeId N>
struct Fixed : Described<O, V, N> {
  static constexpr auto flags = VekAttr::AttrFlags::fixed();
  static constexpr auto introspectionFlags = VekAttr::declaredFlags;
};

/// A constant of the schema: it has neither storage nor setter nor slot.
template <class O, class V, AttributeId N>
struct Constant : Described<O, V, N> {
  static constexpr auto flags = VekAttr::AttrFlags::constant();
  static constexpr auto introspectionFlags = VekAttr::hiddenFlags;
};

/// A keyed attribute whose elements are values.
template <class O, class K, class V, AttributeId N>
struct Collection : Described<O, V, N> {
  using Key = K;
  static constexpr auto flags = VekAttr::AttrFlags::collection();
  static constexpr auto introspectionFlags = VekAttr::declaredFlags;
};

/// An attribute that makes its one target.
template <class O, class C, AttributeId N>
struct SingleChild : Described<O, Ptr<C>, N> {
  using Child = C;
  static constexpr auto flags = VekAttr::AttrFlags::instantiatingScalar();
};

/// A keyed attribute that makes its targets. `keyName` is the target's attribute that is the key.
template <class O, class K, class C, AttributeId N>
struct KeyedChildren : Described<O, Ptr<C>, N> {
  using Key = K;
  using Child = C;
  static constexpr auto flags = VekAttr::AttrFlags::instantiatingCollection();
};

/// The name under which a type appears among constructor arguments: its own, unless it is a builtin.
template <class V>
struct DeclaredName {
  static constexpr char const* value = V::vekDeclaredName;
};
template <>
struct DeclaredName<U8> {
  static constexpr char const* value = "U8";
};
template <>
struct DeclaredName<U32> {
  static constexpr char const* value = "U32";
};
template <>
struct DeclaredName<U64> {
  static constexpr char const* value = "U64";
};
template <>
struct DeclaredName<bool> {
  static constexpr char const* value = "bool";
};
template <>
struct DeclaredName<Seconds> {
  static constexpr char const* value = "Vek::Seconds";
};
template <>
struct DeclaredName<String8> {
  static constexpr char const* value = "Vek::String";
};
template <>
struct DeclaredName<Name> {
  static constexpr char const* value = "Vek::Name";
};

}  // namespace Vek
