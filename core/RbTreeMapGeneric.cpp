#include "core/RbTreeMapGeneric.h"

#include "core/Assertion.h"

#include <algorithm>

namespace Vek {

// The tree's shape, in terms of nodes. Rotations and removals move the owning pointers and change no count.
class RbTreeMapGeneric::Shape {
 public:
  Shape(Ptr<PtrInterface>& root, U32 nodeOffset) noexcept : root_(root), offset_(nodeOffset) {}

  RbNode& nodeOf(PtrInterface const& member) const noexcept { return node(member, offset_); }
  RbNode* nodeOf(Ptr<PtrInterface> const& link) const noexcept { return link ? &nodeOf(*link) : nullptr; }

  // The pointer that owns the node.
  Ptr<PtrInterface>& slot(RbNode const& n) const noexcept {
    RbNode* const parent = n.parent();
    if (parent == nullptr) return root_;
    return isLeft(n) ? parent->left_ : parent->right_;
  }

  bool isLeft(RbNode const& n) const noexcept { return nodeOf(n.parent()->left_) == &n; }

  void rotate(RbNode& x, bool toLeft) const noexcept {
    Ptr<PtrInterface>& outer = toLeft ? x.right_ : x.left_;
    RbNode& y = *nodeOf(outer);
    Ptr<PtrInterface>& inner = toLeft ? y.left_ : y.right_;
    Ptr<PtrInterface>& place = slot(x);
    Ptr<PtrInterface> risen = std::move(outer);
    outer = std::move(inner);
    if (RbNode* const moved = nodeOf(outer)) moved->parentIs(&x);
    inner = std::move(place);
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
      bool const parentIsLeft = isLeft(parent);
      RbNode* const uncle = nodeOf(parentIsLeft ? grandparent.right_ : grandparent.left_);
      if (isRed(uncle)) {
        parent.redIs(false);
        uncle->redIs(false);
        grandparent.redIs(true);
        n = &grandparent;
        continue;
      }
      RbNode* upper = &parent;
      if (isLeft(*n) != parentIsLeft) {
        rotate(parent, parentIsLeft);
        upper = n;
      }
      upper->redIs(false);
      grandparent.redIs(true);
      rotate(grandparent, !parentIsLeft);
      break;
    }
    nodeOf(root_)->redIs(false);
  }

  // Puts what `n` owns on its one side in its place; returns the pointer that owned n.
  Ptr<PtrInterface> unhook(RbNode& n, Ptr<PtrInterface>& only) const noexcept {
    Ptr<PtrInterface>& place = slot(n);
    RbNode* const below = nodeOf(only);
    if (below != nullptr) below->parentIs(n.parent());
    Ptr<PtrInterface> owned = std::exchange(place, Ptr<PtrInterface>{});
    place = std::move(only);
    return owned;
  }

  // Takes n out; the returned pointer owns it.
  Ptr<PtrInterface> remove(RbNode& n) const noexcept {
    if (n.left_ && n.right_) exchangeWithSuccessor(n);
    Ptr<PtrInterface>& only = n.left_ ? n.left_ : n.right_;
    RbNode* const below = nodeOf(only);
    RbNode* const parent = n.parent();
    bool const wasLeft = parent != nullptr && isLeft(n);
    bool const wasRed = n.red();
    Ptr<PtrInterface> owned = unhook(n, only);
    if (!wasRed) balanceAfterRemoval(below, parent, wasLeft);
    n.parentIs(nullptr);
    n.redIs(false);
    return owned;
  }

 private:
  static bool isRed(RbNode const* n) noexcept { return n != nullptr && n->red(); }

  // n and the node behind it change places and colours, so that n has a free side.
  void exchangeWithSuccessor(RbNode& n) const noexcept {
    RbNode* next = nodeOf(n.right_);
    while (next->left_) next = nodeOf(next->left_);
    RbNode& successor = *next;
    bool const direct = successor.parent() == &n;
    Ptr<PtrInterface>& upperPlace = slot(n);
    RbNode* const upperParent = n.parent();
    RbNode* const lowerParent = successor.parent();
    Ptr<PtrInterface> lower = std::exchange(slot(successor), Ptr<PtrInterface>{});
    Ptr<PtrInterface> upper = std::exchange(upperPlace, Ptr<PtrInterface>{});

    std::swap(n.left_, successor.left_);    // the successor has none
    std::swap(n.right_, successor.right_);  // if direct, n's is empty now
    upperPlace = std::move(lower);
    (direct ? successor.right_ : lowerParent->left_) = std::move(upper);

    bool const nRed = n.red();
    n.redIs(successor.red());
    successor.redIs(nRed);
    successor.parentIs(upperParent);
    n.parentIs(direct ? &successor : lowerParent);
    for (RbNode* changed : {&n, &successor}) {
      if (RbNode* const left = nodeOf(changed->left_)) left->parentIs(changed);
      if (RbNode* const right = nodeOf(changed->right_)) right->parentIs(changed);
    }
  }

  // The subtree at `n`, perhaps empty, under `parent` lacks one black node.
  void balanceAfterRemoval(RbNode* n, RbNode* parent, bool left) const noexcept {
    while (parent != nullptr && !isRed(n)) {
      RbNode* sibling = nodeOf(left ? parent->right_ : parent->left_);  // not empty: its side has a black node more
      if (sibling->red()) {
        sibling->redIs(false);
        parent->redIs(true);
        rotate(*parent, left);
        sibling = nodeOf(left ? parent->right_ : parent->left_);
      }
      RbNode* const near = nodeOf(left ? sibling->left_ : sibling->right_);
      RbNode* far = nodeOf(left ? sibling->right_ : sibling->left_);
      if (!isRed(near) && !isRed(far)) {
        sibling->redIs(true);
        n = parent;
        parent = n->parent();
        left = parent != nullptr && isLeft(*n);
        continue;
      }
      if (!isRed(far)) {
        near->redIs(false);
        sibling->redIs(true);
        rotate(*sibling, !left);
        far = sibling;
        sibling = near;
      }
      sibling->redIs(parent->red());
      parent->redIs(false);
      far->redIs(false);
      rotate(*parent, left);
      return;
    }
    if (n != nullptr) n->redIs(false);
  }

  Ptr<PtrInterface>& root_;
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
    (left ? above.left_ : above.right_) = member;
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
  to.left_ = std::move(from.left_);
  to.right_ = std::move(from.right_);
  for (RbNode* below : {shape.nodeOf(to.left_), shape.nodeOf(to.right_)}) {
    if (below != nullptr) below->parentIs(&to);
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
      Measured const left = (*this)(n.left_, &n);
      Measured const right = (*this)(n.right_, &n);
      if (left.blacks != right.blacks) broken("both sides have the same black depth");
      return {left.count + right.count + 1, std::max(left.depth, right.depth) + 1, left.blacks + (n.red() ? 0U : 1U)};
    }
  };
  Measured const measured = Measure{nodeOffset}(root_, nullptr);
  if (measured.count != count_) broken("found == count");
  return measured.depth;
}

}  // namespace Vek
