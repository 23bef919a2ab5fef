#include "dornl3/core/RbTreeMapGeneric.h"

#include "dornl3/core/Assertion.h"

#include <algorithm>
#include <cassert>

namespace Vek {

// The tree's shape, in terms of nodes. Rotations and removals move the owning pointers and change no count.
class RbTreeMapGeneric::Shape {
 public:
  using Link = Ptr<PtrInterface>;
  using Side = RbNode::Side;
  static constexpr Side left = RbNode::left;
  static constexpr Side right = RbNode::right;

  Shape(Link& root, U32 nodeOffset) noexcept : root_(root), offset_(nodeOffset) {}

  RbNode& nodeOf(PtrInterface const& member) const noexcept { return node(member, offset_); }
  RbNode* nodeOf(Link const& link) const noexcept { return link ? &nodeOf(*link) : nullptr; }

  // On which side of its parent a node hangs; not for the root.
  Side sideOf(RbNode const& n) const noexcept {
    return n.parent()->child_[left] == memberOf(n, offset_) ? left : right;
  }
  // The pointer that owns a node.
  Link& slot(RbNode const& n) const noexcept { return n.parent() == nullptr ? root_ : n.parent()->child_[sideOf(n)]; }

  // x goes down on that side, and its other child comes up in its place.
  void rotate(RbNode& x, Side down) const noexcept {
    Side const up = RbNode::opposite(down);
    Link& place = slot(x);
    Link risen = std::move(x.child_[up]);
    RbNode& y = nodeOf(*risen);
    x.child_[up] = std::move(y.child_[down]);
    if (RbNode* const moved = nodeOf(x.child_[up])) moved->parentIs(&x);
    y.child_[down] = std::move(place);
    place = std::move(risen);
    y.parentIs(x.parent());
    x.parentIs(&y);
  }

  void balanceAfterInsertion(RbNode& inserted) const noexcept {
    RbNode* n = &inserted;
    n->redIs(true);
    while (n->parent() != nullptr && n->parent()->red()) {
      RbNode& parent = *n->parent();
      RbNode& grandparent = *parent.parent();  // a red node is no root
      Side const side = sideOf(parent);
      RbNode* const uncle = nodeOf(grandparent.child_[RbNode::opposite(side)]);
      if (isRed(uncle)) {
        parent.redIs(false);
        uncle->redIs(false);
        grandparent.redIs(true);
        n = &grandparent;
        continue;
      }
      RbNode* upper = &parent;
      if (sideOf(*n) != side) {
        rotate(parent, side);
        upper = n;
      }
      upper->redIs(false);
      grandparent.redIs(true);
      rotate(grandparent, RbNode::opposite(side));
      break;
    }
    nodeOf(*root_).redIs(false);
  }

  // Takes n out; the returned pointer owns it.
  Link remove(RbNode& n) const noexcept {
    if (n.child_[left] && n.child_[right]) exchangeWithSuccessor(n);
    Link only = std::move(n.child_[n.child_[left] ? left : right]);
    RbNode* const below = nodeOf(only);
    RbNode* const parent = n.parent();
    Side const side = parent == nullptr ? left : sideOf(n);
    if (below != nullptr) below->parentIs(parent);
    Link owned = std::exchange(slot(n), std::move(only));
    if (!n.red()) balanceAfterRemoval(below, parent, side);
    n.parentIs(nullptr);
    n.redIs(false);
    return owned;
  }

 private:
  static bool isRed(RbNode const* n) noexcept { return n != nullptr && n->red(); }

  // n and the node behind it change places and colours, so that n has a free side.
  void exchangeWithSuccessor(RbNode& n) const noexcept {
    RbNode* next = nodeOf(n.child_[right]);
    while (next->child_[left]) next = nodeOf(next->child_[left]);
    RbNode& successor = *next;
    bool const direct = successor.parent() == &n;
    Link& upperPlace = slot(n);
    RbNode* const upperParent = n.parent();
    RbNode* const lowerParent = successor.parent();
    Link lower = std::move(slot(successor));
    Link upper = std::move(upperPlace);

    std::swap(n.child_[left], successor.child_[left]);    // the successor has none
    std::swap(n.child_[right], successor.child_[right]);  // if direct, n's is empty now
    upperPlace = std::move(lower);
    (direct ? successor.child_[right] : lowerParent->child_[left]) = std::move(upper);

    bool const nRed = n.red();
    n.redIs(successor.red());
    successor.redIs(nRed);
    successor.parentIs(upperParent);
    n.parentIs(direct ? &successor : lowerParent);
    for (RbNode* changed : {&n, &successor}) {
      for (Link const& link : changed->child_) {
        if (RbNode* const below = nodeOf(link)) below->parentIs(changed);
      }
    }
  }

  // The subtree at `n`, perhaps empty, on that side of `parent`, lacks one black node.
  void balanceAfterRemoval(RbNode* n, RbNode* parent, Side side) const noexcept {
    while (parent != nullptr && !isRed(n)) {
      Side const away = RbNode::opposite(side);
      RbNode* sibling = nodeOf(parent->child_[away]);  // not empty: its side has a black node more
      if (sibling->red()) {
        sibling->redIs(false);
        parent->redIs(true);
        rotate(*parent, side);
        sibling = nodeOf(parent->child_[away]);
      }
      RbNode* const near = nodeOf(sibling->child_[side]);
      RbNode* far = nodeOf(sibling->child_[away]);
      if (!isRed(near) && !isRed(far)) {
        sibling->redIs(true);
        n = parent;
        parent = n->parent();
        if (parent != nullptr) side = sideOf(*n);
        continue;
      }
      if (!isRed(far)) {
        assert(near != nullptr && "one of a black sibling's children is red here");
        near->redIs(false);
        sibling->redIs(true);
        rotate(*sibling, away);
        far = sibling;
        sibling = near;
      }
      sibling->redIs(parent->red());
      parent->redIs(false);
      far->redIs(false);
      rotate(*parent, side);
      return;
    }
    if (n != nullptr) n->redIs(false);
  }

  Link& root_;
  U32 offset_;
};

RbTreeMapGeneric::~RbTreeMapGeneric() = default;

void RbTreeMapGeneric::memberNewChild(U32 nodeOffset, int, Ptr<PtrInterface> const& parent,
                                      Ptr<PtrInterface> const& member, bool left) {
  Shape const shape{root_, nodeOffset};
  RbNode& n = shape.nodeOf(*member);
  if (parent) {
    RbNode& above = shape.nodeOf(*parent);
    n.parentIs(&above);
    above.child_[left ? RbNode::left : RbNode::right] = member;
  } else {
    root_ = member;
  }
  shape.balanceAfterInsertion(n);
  ++count_;
  ++version_;
}

void RbTreeMapGeneric::memberReplace(U32 nodeOffset, int, Ptr<PtrInterface> const& old,
                                     Ptr<PtrInterface> const& member) {
  if (old == member) return;
  Shape const shape{root_, nodeOffset};
  RbNode& from = shape.nodeOf(*old);
  RbNode& to = shape.nodeOf(*member);
  Ptr<PtrInterface>& place = shape.slot(from);
  for (RbNode::Side const side : {RbNode::left, RbNode::right}) {
    to.child_[side] = std::move(from.child_[side]);
    if (RbNode* const below = shape.nodeOf(to.child_[side])) below->parentIs(&to);
  }
  to.parentIs(from.parent());
  to.redIs(from.red());
  from.parentIs(nullptr);
  from.redIs(false);
  ++version_;
  Ptr<PtrInterface> const released = std::exchange(place, member);
}

void RbTreeMapGeneric::_memberDelG(U32 nodeOffset, int, PtrInterface const* member) {
  Shape const shape{root_, nodeOffset};
  --count_;
  ++version_;
  Ptr<PtrInterface> const released = shape.remove(shape.nodeOf(*member));
}

namespace {

[[noreturn]] void broken(char const* rule) { assertionFailed(rule, "RbTreeMapGeneric", 0); }

}  // namespace

U32 RbTreeMapGeneric::verify(U32 nodeOffset) const {
  struct Measured {
    U32 count;
    U32 depth;
    U32 blacks;
  };
  struct Measure {
    U32 offset;
    Measured operator()(Ptr<PtrInterface> const& link, RbNode const* parent) const {
      if (!link) return {0, 0, 0};
      RbNode const& n = node(*link, offset);
      if (n.parent() != parent) broken("a node knows its parent");
      if (n.red() && (parent == nullptr || parent->red())) broken("a red node has a black parent");
      Measured const left = (*this)(n.child_[RbNode::left], &n);
      Measured const right = (*this)(n.child_[RbNode::right], &n);
      if (left.blacks != right.blacks) broken("both sides have the same black depth");
      return {left.count + right.count + 1, std::max(left.depth, right.depth) + 1, left.blacks + (n.red() ? 0U : 1U)};
    }
  };
  Measured const measured = Measure{nodeOffset}(root_, nullptr);
  if (measured.count != count_) broken("found == count");
  return measured.depth;
}

void RbTreeMapGeneric::walkG(U32 nodeOffset, PtrInterface* first, Above above, MemberCall const& call) const {
  U32 version = version_;
  for (Ptr<PtrInterface> at = first; at && call(*at);) {
    bool const unchanged = std::exchange(version, version_) == version_;
    at = unchanged ? successor(*at, nodeOffset) : above(*this, *at);
  }
}

}  // namespace Vek
