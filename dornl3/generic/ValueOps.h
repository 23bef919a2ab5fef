// ValueOps: what an operation by number does to a value, and how values are built from lists of arguments. What an
// X::GenericIf_ defines itself are one-line calls of these.
// Thread: any, one at a time for each generic.
#pragma once

#include "dornl3/frame/TypeFrame.h"
#include "dornl3/generic/ArgumentList.h"
#include "dornl3/generic/ValueGeneric.h"
#include "dornl3/platform/vek/PlainGeneric.h"
#include "dornl3/text/ValueText.h"

namespace Vek {

namespace detail {

template <class A, class X>
Ptr<GenericIf> valueAttribute(X const& value, GenericIf::AttributeOp const& op, bool hasKey, bool isConst) {
  if (hasKey) GenericIf::throwBadIndexAttrException(A::name);
  if (op.op != GenericIf::OpGet) GenericIf::throwOpNotSupportedException(A::name, op.op, false);
  typename A::Value const copy = A::field(value);
  return typeOf<typename A::Value>()->genericIf(&copy, isConst);
}

}  // namespace detail

/// Does `op` on the value that a generic holds: reads an attribute, or compares the whole.
template <class Attr, class X, class Passed>
Ptr<GenericIf> valueAttributeOp(ValueGeneric<X, Passed>& generic, GenericIf::AttributeOp const& op,
                                Ptr<GenericIf const> const& key, Ptr<GenericIf> const& value) {
  generic.needMutable(op);
  if (op.attribute == 0 && op.op == GenericIf::OpEquals) {
    if (!key) GenericIf::throwTypeException("vekOpArg");
    auto const* const other = static_cast<X const*>(key->voidPtrIs(Ptr<VekType const>(X::_fwkType())));
    return boolGeneric(*other == generic.value(), generic.isConst());
  }
  Ptr<GenericIf> answer;
  bool const own = visit(typename Attr::All{}, op.attribute, [&](auto attribute) {
    using A = decltype(attribute);
    answer = detail::valueAttribute<A>(generic.value(), op, static_cast<bool>(key), generic.isConst());
  });
  return own ? answer : generic.GenericIf::attributeOp(op, key, value);
}

/// A value from a list of either no argument at all or one for each attribute, in their order.
template <class Attr, class X>
[[nodiscard]] X valueFromList(GenericIf const* list) {
  ArgumentList arguments{list};
  X value;
  if (arguments.empty()) return value;
  forEach(typename Attr::All{}, [&](auto attribute) {
    using A = decltype(attribute);
    using V = typename A::Value;
    A::field(value) = *static_cast<V const*>(arguments.next(A::name, typeOf<V>()));
  });
  arguments.needEnd(Attr::shortName);
  checkLimits<Attr>(value);
  return value;
}

/// The record of value type X, with what makes its generics.
template <class X, class A>
class GenericValueType : public ValueType<X, A> {
 public:
  using VekType::genericIf;

  [[nodiscard]] Ptr<GenericIf> genericIf(void const* value, bool isConst) const override {
    return X::GenericIf_::GenericIf_Is(value == nullptr ? X() : *static_cast<X const*>(value), isConst);
  }
  [[nodiscard]] Ptr<GenericIf> genericIf(GenericIf const* list, bool /*isConst*/) const override {
    return X::GenericIf_::genericIfListConstructor(list);
  }
  [[nodiscard]] Ptr<GenericIf> genericIf(String8 const& text, bool isConst) const override {
    return X::GenericIf_::GenericIf_Is(valueFromText<X>(text), isConst);
  }
};

}  // namespace Vek
