// RbTreeMap: an ordered collection of counted members, each with a key of its own, walked by rising key. It is
// intrusive: a member carries its key, its value and its node.
// Owner: the map holds a reference on each member. Thread: one.
// Re-entrancy: members may come and go while iterators stand: an iterator holds its member, and goes on with the next
// greater key, whatever has happened meanwhile. The map outlives its iterators.
#pragma once

#include "dornl3/core/Assertion.h"
#include "dornl3/core/RbTreeMapGeneric.h"

#include <bit>
#include <string_view>
#include <type_traits>

namespace Vek {

/// A member: a key and a value, which may be replaced in place; the key never changes.
template <class K, class V>
class RbElement : public PtrInterface {
 public:
  RbElement(K key, V value) : key_(std::move(key)), value_(std::move(value)) {}

  [[nodiscard]] K const& key() const noexcept { return key_; }
  [[nodiscard]] V const& value() const noexcept { return value_; }
  void valueIs(V value) { value_ = std::move(value); }

  [[nodiscard]] RbNode& vekNode() noexcept { return node_; }
  static constexpr auto vekNodeMember() noexcept { return &RbElement::node_; }

 private:
  K const key_;
  V value_;
  RbNode node_;
};

template <class K>
inline constexpr bool isText = std::is_convertible_v<K, std::string_view>;

/// How a key stands to another: below 0, 0, or above. Texts are compared once, not for "equal" and for "less".
template <class K>
[[nodiscard]] int compareKeys(K const& key, K const& other) noexcept {
  if constexpr (isText<K>) {
    return std::string_view(key).compare(std::string_view(other));
  } else {
    return key == other ? 0 : key < other ? -1 : 1;
  }
}

template <class M, class K, class V>
class RbTreeMap final : public RbTreeMapGeneric {
 public:
  using Member = M;
  using Key = K;
  using Value = V;
  class IteratorConstBase;
  class IteratorConst;
  class Iterator;
  class TIterator;

  ~RbTreeMap() override { Ptr<PtrInterface> const top = std::exchange(root_, Ptr<PtrInterface>{}); }

  /// The member with that key, or null.
  [[nodiscard]] M* operator[](K const& key) const noexcept {
    M* at = typed(root_);
    while (at != nullptr) {
      int const order = compare(key, *at);
      if (order == 0) break;
      at = towards(*at, order < 0);
    }
    return at;
  }

  /// Enters a member; one that has its key leaves.
  void newMember(Ptr<M> const& member) {
    K const& key = member->key();
    M* last = nullptr;
    bool onLeft = true;
    for (M* at = typed(root_); at != nullptr; at = towards(*at, onLeft)) {
      int const order = compare(key, *at);
      if (order == 0) {
        memberReplace(nodeOffset(), 0, Ptr<M>(at), member);
        return;
      }
      last = at;
      onLeft = order < 0;
    }
    memberNewChild(nodeOffset(), 0, Ptr<M>(last), member, onLeft);
  }

  /// Takes out a member that is in the map.
  void deleteMember(Ptr<M> const& member) { _memberDelG(nodeOffset(), 0, member.ptr()); }

  /// Calls at each member from a key on, or from the first, by rising key, until `call` says no: a walk that needs
  /// little code of its own for each map. Members may come and go meanwhile.
  void walk(K const* from, MemberCall const& call) const {
    auto const above = [](RbTreeMapGeneric const& map, PtrInterface const& member) -> PtrInterface* {
      return static_cast<RbTreeMap const&>(map).firstAbove(static_cast<M const&>(member).key());
    };
    walkG(nodeOffset(), from == nullptr ? leftmost(typed(root_)) : firstFrom(*from), above, call);
  }

  /// Asserts the shape and the order, and gives the depth; for tests.
  U32 verify() const;

 private:
  static M* typed(Ptr<PtrInterface> const& link) noexcept { return static_cast<M*>(link.ptr()); }
  // A pointer to a data member is the member's offset in the ABI of all our platforms.
  static U32 nodeOffset() noexcept { return static_cast<U32>(std::bit_cast<std::ptrdiff_t>(M::vekNodeMember())); }
  static M* below(M& member, RbNode::Side side) noexcept { return typed(member.vekNode().child_[side]); }

  // A member's key and its node may lie in two cache lines: both are asked for at once.
  static int compare(K const& key, M& member) noexcept {
    __builtin_prefetch(&member.vekNode().child_);
    return compareKeys(key, member.key());
  }

  // The member below one on the side of a key, which is less than the member's or greater.
  static M* towards(M& member, bool less) noexcept {
    if constexpr (isText<K>) {
      // A guess, right half of the time, fetches the next member while the texts are still being compared.
      if (less) [[likely]]
        return below(member, RbNode::left);
      return below(member, RbNode::right);
    } else {
      // No branch: nobody could guess it, and numbers are compared at once.
      return below(member, less ? RbNode::left : RbNode::right);
    }
  }
  static M* leftmost(M* at) noexcept { return static_cast<M*>(RbTreeMapGeneric::leftmost(at, nodeOffset())); }
  static M* successor(M& member) noexcept { return static_cast<M*>(RbTreeMapGeneric::successor(member, nodeOffset())); }
  // The first member whose key is greater.
  [[nodiscard]] M* firstAbove(K const& key) const noexcept {
    M* found = nullptr;
    for (M* at = typed(root_); at != nullptr;) {
      bool const less = key < at->key();
      if (less) found = at;
      at = towards(*at, less);
    }
    return found;
  }
  // The first member whose key is not less.
  [[nodiscard]] M* firstFrom(K const& key) const noexcept {
    M* const exact = (*this)[key];
    return exact != nullptr ? exact : firstAbove(key);
  }
};

template <class M, class K, class V>
class RbTreeMap<M, K, V>::IteratorConstBase : public BaseIteratorConst<M, true> {
 public:
  /// Goes on to the next greater key. Without a current member it stays at the end.
  void advance() noexcept {
    M* const current = this->ptr();
    if (current == nullptr) return;
    RbTreeMap const& map = *static_cast<RbTreeMap const*>(this->collection());
    bool const unchanged = version_ == map.version();
    version_ = map.version();
    flags_ = 0;
    // The last word: a member that dies here may change the map.
    this->moveTo(unchanged ? successor(*current) : map.firstAbove(current->key()));
  }

 protected:
  IteratorConstBase() noexcept = default;
  IteratorConstBase(RbTreeMap const* map, M* member) noexcept
      : BaseIteratorConst<M, true>(map, member), version_(map == nullptr ? 0 : map->version()) {}

  U32 version_ = 0;  // the tree's when the position was last fixed
  U32 flags_ = 0;
};

template <class M, class K, class V>
class RbTreeMap<M, K, V>::IteratorConst : public IteratorConstBase {
 public:
  IteratorConst() noexcept = default;
  /// Opens at the first member. A null map gives an empty position.
  explicit IteratorConst(RbTreeMap const* map) noexcept
      : IteratorConstBase(map, map == nullptr ? nullptr : leftmost(typed(map->root_))) {}
  /// Opens at a key: at its member, or else at the next greater one.
  IteratorConst(RbTreeMap const* map, K const& key) noexcept
      : IteratorConstBase(map, map == nullptr ? nullptr : map->firstFrom(key)) {}

  M const& operator*() const noexcept { return *this->ptr(); }
  M const* operator->() const noexcept { return this->ptr(); }
  IteratorConst& operator++() noexcept {
    this->advance();
    return *this;
  }

  /// Whether the key under the iterator can stand for the place: it is not the key type's default.
  [[nodiscard]] virtual bool hasBookmark() const { return this->ptr() != nullptr && !(this->ptr()->key() == K()); }
};

/// The same, for those who may change the members.
template <class M, class K, class V>
class RbTreeMap<M, K, V>::Iterator : public IteratorConst {
 public:
  using IteratorConst::IteratorConst;

  M& operator*() const noexcept { return *this->ptr(); }
  M* operator->() const noexcept { return this->ptr(); }
};

/// An Iterator that overloads can tell from a caller's.
template <class M, class K, class V>
class RbTreeMap<M, K, V>::TIterator : public Iterator {
 public:
  using Iterator::Iterator;
};

template <class M, class K, class V>
U32 RbTreeMap<M, K, V>::verify() const {
  U32 const depth = RbTreeMapGeneric::verify(nodeOffset());
  K const* before = nullptr;
  for (M* at = leftmost(typed(root_)); at != nullptr; at = successor(*at)) {
    if (before != nullptr && !(*before < at->key())) assertionFailed("keys rise", "RbTreeMap", 0);
    before = &at->key();
  }
  return depth;
}

}  // namespace Vek
