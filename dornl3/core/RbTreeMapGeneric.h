// RbTreeMapGeneric: the half of an ordered collection that changes the shape of its tree: a red-black tree, whose depth
// stays below twice the binary logarithm of its size.
// Owner: the tree holds a reference on its root, and each member on the members below it; releasing the root tears the
// tree down, as deep in recursion as the tree is. Thread: one. Re-entrancy: it calls nobody; a member that dies may do
// as it likes.
#pragma once

#include "dornl3/core/BaseCollection.h"
#include "dornl3/core/MemberCall.h"

#include <cstdint>

namespace Vek {

/// What a member carries behind its key and value.
class RbNode {
 public:
  RbNode() noexcept = default;
  RbNode(RbNode const&) = delete;
  RbNode& operator=(RbNode const&) = delete;
  ~RbNode() = default;

  [[nodiscard]] RbNode* parent() const noexcept { return reinterpret_cast<RbNode*>(parentAndColour_ & ~redBit); }
  [[nodiscard]] bool red() const noexcept { return (parentAndColour_ & redBit) != 0; }

 private:
  friend class RbTreeMapGeneric;
  template <class M, class K, class V>
  friend class RbTreeMap;

  enum Side : unsigned char { left, right };
  static Side opposite(Side side) noexcept { return side == left ? right : left; }

  static constexpr std::uintptr_t redBit = 1;
  void parentIs(RbNode* parent) noexcept {
    parentAndColour_ = reinterpret_cast<std::uintptr_t>(parent) | (parentAndColour_ & redBit);
  }
  void redIs(bool red) noexcept { parentAndColour_ = (parentAndColour_ & ~redBit) | (red ? redBit : 0); }

  std::uintptr_t parentAndColour_ = 0;  // the parent's node; the lowest bit is set in a red one
  Ptr<PtrInterface> child_[2];          // left: keys below this one; right: keys above, released first
};

/// Each operation takes the byte position of the node inside a member, and 0.
class RbTreeMapGeneric : public BaseRefCollection<PtrInterface> {
 public:
  RbTreeMapGeneric() noexcept = default;
  ~RbTreeMapGeneric() override;

  /// 1 in a new tree; changes with each insertion, replacement and removal.
  [[nodiscard]] U32 version() const noexcept { return version_; }
  [[nodiscard]] U32 count() const noexcept { return count_; }

  /// Hangs a new member under `parent`, null in an empty tree.
  void memberNewChild(U32 nodeOffset, int, Ptr<PtrInterface> const& parent, Ptr<PtrInterface> const& member, bool left);
  /// Puts a new member in the place of one with the same key, which is released.
  void memberReplace(U32 nodeOffset, int, Ptr<PtrInterface> const& old, Ptr<PtrInterface> const& member);
  /// Takes out a member that is in the tree.
  void _memberDelG(U32 nodeOffset, int, PtrInterface const* member);

  /// The member behind another that is in the tree no longer; null at the end.
  using Above = PtrInterface* (*)(RbTreeMapGeneric const& map, PtrInterface const& member);
  /// Calls at `first`, and then at each member behind the one before, until that says no. Members may come and go
  /// meanwhile.
  void walkG(U32 nodeOffset, PtrInterface* first, Above above, MemberCall const& call) const;

  /// Asserts colours, parents and counts, and gives the depth; for tests.
  U32 verify(U32 nodeOffset) const;

 protected:
  static RbNode& node(PtrInterface const& member, U32 nodeOffset) noexcept {
    return *reinterpret_cast<RbNode*>(reinterpret_cast<std::uintptr_t>(&member) + nodeOffset);
  }
  // The first of the members from `at` downwards. A walk comes to those on the right of the way soon.
  static PtrInterface* leftmost(PtrInterface* at, U32 nodeOffset) noexcept {
    for (PtrInterface* next = at; next != nullptr; next = node(*at, nodeOffset).child_[RbNode::left].ptr()) {
      at = next;
      __builtin_prefetch(node(*at, nodeOffset).child_[RbNode::right].ptr());
    }
    return at;
  }
  // The member behind one that is in the tree.
  static PtrInterface* successor(PtrInterface& member, U32 nodeOffset) noexcept {
    PtrInterface* at = &member;
    if (PtrInterface* const right = node(*at, nodeOffset).child_[RbNode::right].ptr()) {
      return leftmost(right, nodeOffset);
    }
    while (RbNode const* const parent = node(*at, nodeOffset).parent()) {
      PtrInterface* const above = memberOf(*parent, nodeOffset);
      if (parent->child_[RbNode::left] == at) return above;
      at = above;
    }
    return nullptr;
  }
  static PtrInterface* memberOf(RbNode const& node, U32 nodeOffset) noexcept {
    return reinterpret_cast<PtrInterface*>(reinterpret_cast<std::uintptr_t>(&node) - nodeOffset);
  }

  U32 version_ = 1;
  U32 count_ = 0;
  Ptr<PtrInterface> root_;

 private:
  class Shape;
};

}  // namespace Vek
