// CollectionCursor: the iterators that scripts move over a collection of a box. A collection C tells its Key, Member
// and Iterator, its attribute's number `id`, and how keys and values stand for the numbers of a script.
#pragma once

#include "dornl3/frame/TypeFrame.h"
#include "dornl3/platform/vek/GenericIfEntity.h"
#include "tests/frame/Toy.h"

#include <rapidcheck.h>

namespace Toys::Collecting {

/// A place in collection C, as an iterator of its type keeps it.
template <class C>
class TypedCursor {
 public:
  explicit TypedCursor(ToyBox& box) : it_(C::iterator(box)) {}
  TypedCursor(ToyBox& box, int key) : TypedCursor(box) {
    while (it_ && C::number(*it_) != key) ++it_;
  }

  explicit operator bool() const { return static_cast<bool>(it_); }
  void step() { ++it_; }
  int number() const { return C::number(*it_); }
  int value() const { return C::value(*it_); }
  typename C::Iterator& iterator() { return it_; }
  typename C::Member const& member() const { return *it_; }

 private:
  typename C::Iterator it_;
};

/// The same, kept by an iterator that a generic opened by number. One of the type goes along with it: which member it
/// is, and not just what it looks like, a generic iterator does not tell of values.
template <class C>
class NumberedCursor {
 public:
  explicit NumberedCursor(ToyBox& box) : typed_(box), it_(genericOf(box)->attributeIteratorConst(C::id)) {}
  NumberedCursor(ToyBox& box, int key)
      : typed_(box, key), it_(genericOf(box)->attributeIteratorKeyConst(C::id, genericOf(C::key(key)))) {}

  explicit operator bool() const {
    RC_ASSERT(static_cast<bool>(it_) == static_cast<bool>(typed_));
    RC_ASSERT(it_ || (!it_.key() && !it_.object()));
    return static_cast<bool>(it_);
  }
  void step() {
    typed_.step();
    ++it_;
  }
  int number() const { return C::number(valueOf<typename C::Key>(*it_.key())); }
  int value() const {
    Vek::Ptr<Vek::GenericIf const> const object = it_.object();
    if constexpr (C::holdsChildren) {
      bool const isMember = object->voidPtrIs(Vek::Entity::_fwkType()) == static_cast<Vek::Entity const*>(&member());
      RC_ASSERT(isMember);
      return 0;
    } else {
      return static_cast<int>(valueOf<typename C::Map::Value>(*object));
    }
  }
  typename C::Iterator& iterator() { return typed_.iterator(); }
  typename C::Member const& member() const { return typed_.member(); }

 private:
  static Vek::Ptr<Vek::GenericIf> genericOf(ToyBox& box) { return Vek::VekType::genericIf(&box, false); }
  static Vek::Ptr<Vek::GenericIf> genericOf(typename C::Key const& key) {
    return Vek::typeOf<typename C::Key>()->genericIf(static_cast<void const*>(&key), true);
  }
  template <class V>
  static V valueOf(Vek::GenericIf const& generic) {
    return *static_cast<V const*>(generic.voidPtrIs(Vek::Ptr<Vek::VekType const>(Vek::typeOf<V>())));
  }

  TypedCursor<C> typed_;
  Vek::GenericIf::AttributeIteratorConst it_;
};

}  // namespace Toys::Collecting
