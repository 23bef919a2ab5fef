// EntityGeneric: what an operation by number does to an entity: a typed call of its frames, with all their change
// detection and notification. What an X::GenericIf_ defines itself are one-line calls of these.
// Nothing is left half done: every check of key, value and list comes before the entity is touched.
// Owner: an operation holds what it works on; a position holds its member, and its iterator the entity's generic.
// Thread: the entity's. Re-entrancy: that of the frames.
#pragma once

#include "dornl3/frame/ChildFrame.h"
#include "dornl3/frame/TypeFrame.h"
#include "dornl3/generic/ArgumentList.h"
#include "dornl3/generic/GenericAdapter.h"
#include "dornl3/platform/vek/EntityText.h"

namespace Vek {

namespace detail {

using Key = Ptr<GenericIf const>;

template <class V>
Ptr<GenericIf> wrap(V const& value, bool isConst) {
  return typeOf<V>()->genericIf(static_cast<void const*>(&value), isConst);
}

template <class V>
V const& unwrap(Ptr<GenericIf const> const& generic, char const* name) {
  if (!generic) GenericIf::throwTypeException(name);
  return *static_cast<V const*>(generic->voidPtrIs(Ptr<VekType const>(typeOf<V>())));
}

/// The one argument of a child's constructor.
template <class V>
V soleArgument(GenericIf const* list, char const* argument, char const* attribute) {
  ArgumentList arguments{list};
  V const value = *static_cast<V const*>(arguments.next(argument, typeOf<V>()));
  arguments.needEnd(attribute);
  return value;
}

/// One attribute of an entity, and the operation wanted.
template <class A>
class EntityOp {
 public:
  using X = typename A::Owner;

  EntityOp(X& entity, GenericIf::OpId op, Key const& key, Ptr<GenericIf> const& value, bool isConst)
      : entity_(entity), op_(op), key_(key), value_(value), isConst_(isConst) {}

  Ptr<GenericIf> operator()() const {
    if constexpr (
        requires { typename A::Child; } && requires { typename A::Key; }) {
      return children();
    } else if constexpr (requires { typename A::Child; }) {
      return child();
    } else if constexpr (requires { typename A::Key; }) {
      return collection();
    } else {
      return scalar();
    }
  }

 private:
  Ptr<GenericIf> scalar() const {
    using V = typename A::Value;
    if (key_) GenericIf::throwBadIndexAttrException(A::name);
    if (op_ == GenericIf::OpGet) {
      if constexpr (requires { A::constant; }) {
        return wrap<V>(A::constant, isConst_);
      } else {
        V const copy = vekRead(entity_, A::field(entity_));
        return wrap(copy, isConst_);
      }
    }
    if constexpr (A::flags.isSettable()) {
      if (op_ == GenericIf::OpSet) {
        V const value = unwrap<V>(value_, A::name);
        scalarIs<A>(entity_, value);
        return {};
      }
    }
    unsupported();
  }

  Ptr<GenericIf> collection() const {
    using K = typename A::Key;
    using V = typename A::Value;
    auto& map = A::field(entity_);
    switch (op_) {
    case GenericIf::OpGet: return wrap(collectionGet(entity_, map, key<K>("vek_index")), isConst_);
    case GenericIf::OpCount: return wrap(map.count(), isConst_);
    case GenericIf::OpVersion: return wrap(map.version(), isConst_);
    case GenericIf::OpContains: return wrap(map[key<K>("vek_index")] != nullptr, isConst_);
    case GenericIf::OpSet: {
      K const k = key<K>("vek_index");
      V const value = unwrap<V>(value_, A::name);
      collectionIs<A>(entity_, k, value);
      return {};
    }
    case GenericIf::OpDel: {
      K const k = key<K>("vek_index");
      return wrap(collectionDel<A>(entity_, k), isConst_);
    }
    default: unsupported();
    }
  }

  Ptr<GenericIf> child() const {
    if (key_) GenericIf::throwBadIndexAttrException(A::name);
    switch (op_) {
    case GenericIf::OpGet: return generic(vekRead(entity_, A::field(entity_)));
    case GenericIf::OpSet: {
      Name const name = soleArgument<Name>(value_.ptr(), "name", A::name);
      return generic(childIs<A>(entity_, name));
    }
    case GenericIf::OpDel: return generic(childDel<A>(entity_));
    default: unsupported();
    }
  }

  Ptr<GenericIf> children() const {
    using K = typename A::Key;
    auto& map = A::field(entity_);
    switch (op_) {
    case GenericIf::OpGet: return generic(childrenGet(entity_, map, key<K>(A::keyName)));
    case GenericIf::OpCount: return wrap(map.count(), isConst_);
    case GenericIf::OpVersion: return wrap(map.version(), isConst_);
    case GenericIf::OpContains: return wrap(map[key<K>(A::keyName)] != nullptr, isConst_);
    case GenericIf::OpSet: {
      if (key_) GenericIf::throwBadIndexAttrException(A::name);
      K const k = soleArgument<K>(value_.ptr(), A::keyName, A::name);
      return generic(childrenIs<A>(entity_, k));
    }
    case GenericIf::OpDel: {
      K const k = key<K>(A::keyName);
      return generic(childrenDel<A>(entity_, k));
    }
    default: unsupported();
    }
  }

  template <class K>
  K const& key(char const* name) const {
    return unwrap<K>(key_, name);
  }
  template <class P>
  Ptr<GenericIf> generic(P const& object) const {
    return VekType::genericIf(object.ptr(), isConst_);
  }
  [[noreturn]] void unsupported() const { GenericIf::throwOpNotSupportedException(A::name, op_, false); }

  X& entity_;
  GenericIf::OpId op_;
  Key const& key_;
  Ptr<GenericIf> const& value_;
  bool isConst_;
};

/// A place in collection A.
template <class A>
class MapPosition final : public GenericIf::Position {
 public:
  using Map = std::remove_reference_t<decltype(A::field(std::declval<typename A::Owner&>()))>;

  explicit MapPosition(typename Map::IteratorConst const& it) : it_(it) {}

  [[nodiscard]] bool nonNull() const noexcept override { return static_cast<bool>(it_); }
  void advance() override { it_.advance(); }
  [[nodiscard]] Ptr<GenericIf const> key() const override { return wrap(it_->key(), true); }
  [[nodiscard]] Ptr<GenericIf> object(bool isConst) const override {
    if constexpr (requires { typename A::Child; }) {
      return VekType::genericIf(const_cast<typename A::Child*>(it_.ptr()), isConst);
    } else {
      return wrap(it_->value(), isConst);
    }
  }
  [[nodiscard]] GenericIf::Position* clone() const override { return new MapPosition(*this); }

 private:
  typename Map::IteratorConst it_;
};

template <class A>
GenericIf::Position* openAt(typename A::Owner& entity, GenericIf const* key) {
  if constexpr (requires { typename A::Key; }) {
    using Map = typename MapPosition<A>::Map;
    Map& map = A::field(entity);
    if (key == nullptr) return new MapPosition<A>(typename Map::IteratorConst(&map));
    auto const& k = *static_cast<typename A::Key const*>(key->voidPtrIs(Ptr<VekType const>(typeOf<typename A::Key>())));
    if (map[k] == nullptr) return new MapPosition<A>(typename Map::IteratorConst());
    return new MapPosition<A>(typename Map::IteratorConst(&map, k));
  } else {
    return nullptr;
  }
}

template <class A>
constexpr char const* keyArgument() {
  if constexpr (requires { A::keyName; }) {
    return A::keyName;
  } else {
    return "vek_index";
  }
}

}  // namespace detail

/// Does `op` on the entity of a generic.
template <class Attr, class X>
Ptr<GenericIf> entityAttributeOp(GenericIfEntity& generic, GenericIf::AttributeOp const& op,
                                 Ptr<GenericIf const> const& key, Ptr<GenericIf> const& value) {
  generic.needMutable(op);
  Ptr<GenericIf> answer;
  bool const own = visit(typename Attr::All{}, op.attribute, [&](auto attribute) {
    auto& entity = static_cast<X&>(generic.entity());
    answer = detail::EntityOp<decltype(attribute)>(entity, op.op, key, value, generic.isConst())();
  });
  return own ? answer : generic.GenericIfEntity::attributeOp(op, key, value);
}

/// Opens an iterator over a collection, at its first member.
template <class Attr, class X>
GenericIf::AttributeIteratorConst entityIterator(GenericIfEntity const& generic, AttributeId id) {
  GenericIf::Position* position = nullptr;
  visit(typename Attr::All{}, id, [&](auto attribute) {
    position = detail::openAt<decltype(attribute)>(static_cast<X&>(generic.entity()), nullptr);
  });
  if (position == nullptr) return generic.GenericIf::attributeIteratorConst(id);
  return {Ptr<GenericIf const>(&generic), id, position};
}

/// Opens an iterator at exactly that key, or at the end.
template <class Attr, class X>
GenericIf::AttributeIteratorConst entityIteratorAt(GenericIfEntity const& generic, AttributeId id,
                                                   Ptr<GenericIf const> const& key) {
  GenericIf::Position* position = nullptr;
  visit(typename Attr::All{}, id, [&](auto attribute) {
    using A = decltype(attribute);
    if constexpr (requires { typename A::Key; }) {
      if (!key) GenericIf::throwTypeException(detail::keyArgument<A>());
      position = detail::openAt<A>(static_cast<X&>(generic.entity()), key.ptr());
    }
  });
  if (position == nullptr) return generic.GenericIf::attributeIteratorKeyConst(id, key);
  return {Ptr<GenericIf const>(&generic), id, position};
}

/// Collection A has changed at a key.
template <class A>
void tellKey(GenericIfEntity& generic, typename A::Key const& key) {
  generic.tellKey(A::number, typeOf<typename A::Key>(), &key);
}

/// A generic of the entity that `object` is; of null for null, and for an object of another type.
template <class X>
Ptr<GenericIf> entityGeneric(PtrInterface* object, bool isConst) {
  return activeGeneric<typename X::GenericIf_>(Ptr<X>(dynamic_cast<X*>(object)), isConst);
}

/// The record of entity type X, with what makes its generics.
template <class X, class A>
class GenericEntityType : public EntityType<X, A> {
 public:
  using VekType::genericIf;

  [[nodiscard]] Ptr<GenericIf> genericIf(String8 const& text, bool isConst) const override {
    return genericIf_(strepToValue(text, static_cast<Ptr<X>*>(nullptr)).ptr(), isConst);
  }
  [[nodiscard]] Ptr<GenericIf> genericIf_(PtrInterface* object, bool isConst) const override {
    return entityGeneric<X>(object, isConst);
  }
};

/// The record of an entity type that stands by itself: also made from a name, or a list that holds one.
template <class X, class A>
class GenericRootEntityType : public GenericEntityType<X, A> {
 public:
  using GenericEntityType<X, A>::genericIf;

  [[nodiscard]] Ptr<Entity> newEntity(Name const& name, Dir* /*dir*/) const override { return make<X>(name); }
  [[nodiscard]] Ptr<GenericIf> genericIf(GenericIf const* list, bool /*isConst*/) const override {
    return X::GenericIf_::genericIfListConstructor(list);
  }
};

/// A new entity from a list that holds its name; an entity made so is never const.
template <class Attr, class X>
Ptr<GenericIf> entityFromList(Ptr<GenericIf const> const& list) {
  Name const name = detail::soleArgument<Name>(list.ptr(), "name", Attr::shortName);
  return VekType::genericIf(make<X>(name).ptr(), false);
}

}  // namespace Vek
