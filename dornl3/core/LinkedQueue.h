// LinkedQueue: counted members in the order in which they came, each holding the next.
// Owner: the queue holds a reference on its head and its tail, and each member on the one behind it. A member is in at
// most one queue at a time. Thread: one.
// Re-entrancy: members may be appended while iterators stand, and an iterator may take out the member under it; another
// iterator on that member ends there. A member that dies may do as it likes. The queue outlives its iterators.
#pragma once

#include "dornl3/core/BaseCollection.h"

namespace Vek {

/// What a queue's members derive from: a value and a link.
template <class V>
class LinkedQueueElement : public PtrInterface {
 public:
  explicit LinkedQueueElement(V value) : value_(std::move(value)) {}

  [[nodiscard]] V const& value() const noexcept { return value_; }

 private:
  template <class M, class T, class Value>
  friend class LinkedQueue;

  V value_;
  Ptr<PtrInterface> next_;  // released ahead of the value; whoever takes a member out has cleared it
};

/// A queue of members of class M, each made from a value of type V, which is or points to a T.
template <class M, class T, class V>
class LinkedQueue : public BaseRefCollection<M> {
 public:
  using Member = M;
  using Element = T;
  using Value = V;
  class Iterator;

  LinkedQueue() noexcept = default;
  /// Makes members of its own, which hold the same values.
  LinkedQueue(LinkedQueue const& other) : LinkedQueue() { *this = other; }
  /// The members here go, and new ones come that hold the other's values. The same queue: nothing happens. Throws
  /// std::bad_alloc, with as many of them as there was room for.
  LinkedQueue& operator=(LinkedQueue const& other) {
    if (this == &other) return *this;
    deleteAll();
    for (M* at = other.head(); at != nullptr; at = next(*at)) enqueue(at->value());
    return *this;
  }
  ~LinkedQueue() override { deleteAll(); }

  /// 0 in a new queue; changes with each insertion, each removal and each deleteAll.
  [[nodiscard]] U32 version() const noexcept { return version_; }
  [[nodiscard]] U32 count() const noexcept { return count_; }
  [[nodiscard]] M* head() const noexcept { return typed(head_); }
  [[nodiscard]] M* tail() const noexcept { return typed(tail_); }
  /// The member behind that one, or null.
  [[nodiscard]] static M* next(M const& member) noexcept { return typed(member.next_); }

  /// Appends a new member with that value.
  void enqueue(V const& value) { newMember(make<M>(value)); }

  /// Appends a member that is in no queue.
  void newMember(Ptr<M> const& member) noexcept {
    linkBehind(tail()) = member;
    tail_ = member;
    ++version_;
    ++count_;
  }

  /// Takes out a member. One that is not in this queue changes nothing and is told to onDeleteMemberNotFound.
  void deleteMember(Ptr<M> const& member) {
    M* before = nullptr;
    if (find(*member, before)) {
      takeOutBehind(before);
    } else {
      onDeleteMemberNotFound(*member);
    }
  }
  /// The same for the member under an iterator, which then stands on the one behind it: its next step stays there.
  void deleteMember(Iterator& it);
  virtual void onDeleteMemberNotFound(M const& /*member*/) {}

  /// Releases every member, one by one: the longest queue needs no recursion.
  void deleteAll() noexcept {
    Link member = std::move(head_);
    tail_ = nullptr;
    ++version_;
    count_ = 0;
    while (member) member = Link{std::move(typed(member)->next_)};
  }

 private:
  using Link = Ptr<PtrInterface>;

  static M* typed(Link const& link) noexcept { return static_cast<M*>(link.ptr()); }
  [[nodiscard]] Link& linkBehind(M* before) noexcept { return before == nullptr ? head_ : before->next_; }

  // Whether the member is here; `before` becomes the one ahead of it, null at the head.
  bool find(M const& member, M*& before) const noexcept {
    before = nullptr;
    M* at = head();
    for (; at != nullptr && at != &member; at = next(*at)) before = at;
    return at != nullptr;
  }

  void takeOutBehind(M* before) noexcept {
    Link& place = linkBehind(before);
    Link const member = std::move(place);
    place = std::move(typed(member)->next_);
    if (!place) tail_ = before;
    ++version_;
    --count_;
  }

  U32 version_ = 0;
  U32 count_ = 0;
  Link head_;
  Link tail_;
};

/// Steps along the links; it does not compare the queue's version.
template <class M, class T, class V>
class LinkedQueue<M, T, V>::Iterator : public BaseIteratorConst<M, true> {
 public:
  Iterator() noexcept = default;
  /// Opens at the head. A null queue gives an empty position.
  explicit Iterator(LinkedQueue const* queue) noexcept
      : BaseIteratorConst<M, true>(queue, queue == nullptr ? nullptr : queue->head()),
        version_(queue == nullptr ? 0 : queue->version()) {}

  /// Goes on to the member behind the current one, which there is.
  Iterator& operator++() noexcept {
    if (onNext_) {
      onNext_ = false;
    } else {
      previous_ = this->ptr();
      this->moveTo(next(*previous_));
    }
    return *this;
  }

 private:
  friend class LinkedQueue;

  U32 version_ = 0;  // the queue's when the previous member was surely the one ahead
  Ptr<M> previous_;
  bool onNext_ = false;
};

template <class M, class T, class V>
void LinkedQueue<M, T, V>::deleteMember(Iterator& it) {
  Ptr<M> const member = it.ptr();
  M* before = it.previous_.ptr();
  if (it.version_ != version_ && !find(*member, before)) {
    onDeleteMemberNotFound(*member);
    return;
  }
  it.previous_ = before;
  it.moveTo(next(*member));
  it.onNext_ = true;
  takeOutBehind(before);
  it.version_ = version_;
}

}  // namespace Vek
