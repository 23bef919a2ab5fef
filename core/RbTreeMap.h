// RbTreeMap: an ordered collection of counted members, each with a key of its own, walked by rising key. It is
// intrusive: a member carries its key, its value and its node.
// Owner: the map holds a reference on each member. Thread: one.
// Re-entrancy: members may come and go while iterators stand: an iterator holds its member, and goes on with the next
// greater key, whatever has happened meanwhile. The map outlives its iterators.
#pragma once

#include "core/Assertion.h"
#include "core/RbTreeMapGeneric.h"

#include <bit>

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

template <class M, class K, class V>
class RbTreeMap final : public RbTreeMapGeneric {
 public:
  using Member = M;
  using Key = K;
  using Value = V;
  class IteratorConstBase;
  class IteratorConst;
  class Iterator;

  ~RbTreeMap() override { Ptr<PtrInterface> const top = std::exchange(root_, Ptr<PtrInterface>{}); }

  /// The member with that key, or null.
  [[nodiscard]] M* operator[](K const& key) const noexcept {
    M* at = typed(root_);
    while (at != nullptr && !(key == at->key()))
      at = typed(key < at->key() ? at->vekNode().left_ : at->vekNode().right_);
    return at;
  }

  /// Enters a member; one that has its key leaves.
  void newMember(Ptr<M> const& member) {
    K const& key = member->key();
    M* last = nullptr;
    for (M* at = typed(root_); at != nullptr;) {
      last = at;
      if (key == at->key()) {
        memberReplace(nodeOffset(), 0, Ptr<M>(at), member);
        return;
      }
      at = typed(key < at->key() ? at->vekNode().left_ : at->vekNode().right_);
    }
    memberNewChild(nodeOffset(), 0, Ptr<M>(last), member, last == nullptr || key < last->key());
  }

  /// Takes out a member that is in the map.
  void deleteMember(Ptr<M> const& member) { _memberDelG(nodeOffset(), 0, member.ptr()); }

  /// Asserts the shape and the order, and gives the depth; for tests.
  U32 verify() const;

 private:
  static M* typed(Ptr<PtrInterface> const& link) noexcept { return static_cast<M*>(link.ptr()); }
  // A pointer to a data member is the member's offset in the ABI of all our platforms.
  static U32 nodeOffset() noexcept { return static_cast<U32>(std::bit_cast<std::ptrdiff_t>(M::vekNodeMember())); }
  static M* leftmost(M* at) noexcept {
    while (at != nullptr && at->vekNode().left_) at = typed(at->vekNode().left_);
    return at;
  }
  // The member behind one that is in the tree.
  static M* successor(M& member) noexcept {
    RbNode* n = &member.vekNode();
    if (n->right_) return leftmost(typed(n->right_));
    for (RbNode* above = n->parent(); above != nullptr; n = above, above = above->parent()) {
      M* const upper = static_cast<M*>(memberOf(*above, nodeOffset()));
      if (above->left_ && &typed(above->left_)->vekNode() == n) return upper;
    }
    return nullptr;
  }
  // The first member whose key is greater.
  [[nodiscard]] M* firstAbove(K const& key) const noexcept {
    M* found = nullptr;
    for (M* at = typed(root_); at != nullptr;) {
      if (key < at->key()) {
        found = at;
        at = typed(at->vekNode().left_);
      } else {
        at = typed(at->vekNode().right_);
      }
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
    if (version_ == map.version()) {
      this->moveTo(successor(*current));
      return;
    }
    this->moveTo(map.firstAbove(current->key()));
    version_ = map.version();
    flags_ = 0;
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
