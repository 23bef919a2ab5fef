// TypeFrame: the record class X::_Type of a type, and how a type describes itself while its library loads.
// An X::_Type derives from ValueType<X, Attr>, EntityType<X, Attr> or RootEntityType<X, Attr>, and adds nothing.
// Owner: the process; records stay for good. Thread: the loading thread; a record that stands may be read by any.
#pragma once

#include "dornl3/frame/Attribute.h"
#include "dornl3/platform/vek/Builtin.h"
#include "dornl3/platform/vek/Entity.h"
#include "dornl3/platform/vek/IntrospectionReactor.h"

namespace Vek {

/// The run-time type of an attribute's values.
template <class V>
VekType const* typeOf() {
  if constexpr (std::is_class_v<V> && !std::is_same_v<V, String8>) {
    return V::_fwkType();
  } else {
    return Builtin<V>::_fwkType();
  }
}

/// Where the numbers of a value type's attributes begin.
inline constexpr AttributeId firstAttributeOfAValue = 2;

/// Gives a type's record. The first call runs the init function of its schema file, which makes the records of all
/// types of that file; where that did not, because no descriptions are wanted, the record is made here, bare.
template <class Type>
VekType* typeRecord(void (*initFile)()) {
  VekType*& record = Type::Attr::record;
  if (record != nullptr) return record;
  initFile();
  if (record != nullptr) return record;
  record = make<Type>().detach();
  record->referencesLeak();
  if (record->base() != nullptr) record->base()->derivedTypeQEnq(record);
  return record;
}

namespace detail {

/// What a library tells of an attribute that makes its targets. `keyType` and `keyName` are null without a key.
void describeInstantiating(IntrospectionReactor& reactor, VekType* owner, char const* name, VekType const* targetType,
                           VekAttr::AttrFlags const& flags, AttributeId id, VekType const* keyType,
                           char const* keyName);

template <class A>
void describe(IntrospectionReactor& reactor, VekType* owner) {
  if constexpr (requires { typename A::Child; }) {
    VekType const* const target = A::Child::_fwkType();
    if constexpr (requires { typename A::Key; }) {
      describeInstantiating(reactor, owner, A::name, target, A::flags, A::number, typeOf<typename A::Key>(),
                            A::keyName);
    } else {
      describeInstantiating(reactor, owner, A::name, target, A::flags, A::number, nullptr, nullptr);
    }
  } else if constexpr (requires { typename A::Key; }) {
    reactor.defNoninstantiatingAttr(owner, A::name, typeOf<typename A::Value>(), typeOf<typename A::Key>(), A::flags,
                                    A::introspectionFlags, A::number);
  } else {
    reactor.defNoninstantiatingAttr(owner, A::name, typeOf<typename A::Value>(), nullptr, A::flags,
                                    A::introspectionFlags, A::number);
  }
}

template <class A>
void declareArgument(VekType* type) {
  type->constructorArgNameQEnq(A::name);
  type->constructorArgTypeQEnq(DeclaredName<typename A::Value>::value);
}

template <class A>
void declareFixed(VekType* type) {
  if constexpr (A::flags == VekAttr::AttrFlags::fixed()) declareArgument<A>(type);
}

/// What every entity has before its declared attributes: the framework's, and the marker that a log can watch it.
void describeEntityBase(IntrospectionReactor& reactor, VekType* type);

}  // namespace detail

/// The record of value type X.
template <class X, class A>
class ValueType : public VekType {
 public:
  using Subject = X;
  using Attr = A;

  ValueType() : VekType(A::shortName, nullptr, nullptr, {}) {}

  static void describe(IntrospectionReactor& reactor) {
    VekType* const type = A::record;
    reactor.handleType(type, nullptr);
    type->sizeIs(sizeof(X));
    type->isValueIs(true);
    type->hasGenericIfSupportIs(true);
    forEach(typename A::All{}, [type](auto attribute) { detail::declareArgument<decltype(attribute)>(type); });
    forEach(typename A::All{},
            [&reactor, type](auto attribute) { detail::describe<decltype(attribute)>(reactor, type); });
    if constexpr (A::bare) type->valAttrIs(type->attribute(firstAttributeOfAValue));
    reactor.handleScopeExit();
  }
};

/// The record of entity type X.
template <class X, class A>
class EntityType : public VekType {
 public:
  using Subject = X;
  using Attr = A;

  EntityType() : VekType(A::shortName, nullptr, Entity::_fwkType(), {}) {}

  static void describe(IntrospectionReactor& reactor) {
    VekType* const type = A::record;
    reactor.handleType(type, Entity::_fwkType());
    type->sizeIs(sizeof(X));
    type->isEntityIs(true);
    type->hasGenericIfSupportIs(true);
    type->constructorArgNameQEnq("name");
    type->constructorArgTypeQEnq("Vek::Name");
    forEach(typename A::All{}, [type](auto attribute) { detail::declareFixed<decltype(attribute)>(type); });
    detail::describeEntityBase(reactor, type);
    forEach(typename A::All{},
            [&reactor, type](auto attribute) { detail::describe<decltype(attribute)>(reactor, type); });
    if constexpr (requires { typename A::MemberKey; }) {
      reactor.defNoninstantiatingAttr(type, "fwkKey", typeOf<typename A::MemberKey>(), nullptr,
                                      VekAttr::AttrFlags::key(), VekAttr::hiddenFlags, Entity::keyAttr);
    }
    reactor.handleScopeExit();
  }
};

}  // namespace Vek
