// LinkQueue: a queue of counted values in rising order of a number that each has, its key. The numbers may wrap: from a
// member whose key is lower than that of the one ahead, they rise anew, up to below the head's.
// Owner: the queue holds its members, each member its value. Thread: one; a queue that no longer changes may be read by
// any, through begin() and end(), which take no reference.
// Re-entrancy: members may come and go while iterators stand: an iterator holds its member, and goes on by key.
#pragma once

#include "dornl3/core/LinkedQueue.h"

#include <cstddef>
#include <iterator>

namespace Vek {

/// A member. Q tells the key of its value.
template <class Q, class K, class V>
class LinkQueueElement final : public LinkedQueueElement<Ptr<V>> {
 public:
  using LinkedQueueElement<Ptr<V>>::LinkedQueueElement;
  [[nodiscard]] K fwkQkey() const noexcept { return Q::fwkQkey(*this->value()); }
};

/// Picks the value, not the member, under an iterator.
struct False {};

/// A queue of class Q, which derives from this and has a static function K fwkQkey(V const&); K is unsigned.
template <class Q, class K, class V>
class LinkQueue : public LinkedQueue<LinkQueueElement<Q, K, V>, V, Ptr<V>> {
 public:
  using Member = LinkQueueElement<Q, K, V>;
  class IteratorConstBase;
  class IteratorConst;
  class Cursor;

  LinkQueue() noexcept = default;
  LinkQueue(LinkQueue const&) = delete;
  LinkQueue& operator=(LinkQueue const&) = delete;
  ~LinkQueue() override = default;

  /// The values, for those who only read; the queue must not change meanwhile.
  [[nodiscard]] Cursor begin() const noexcept { return Cursor{this->head()}; }
  [[nodiscard]] Cursor end() const noexcept { return Cursor{}; }
  [[nodiscard]] std::size_t size() const noexcept { return this->count(); }
  [[nodiscard]] bool empty() const noexcept { return this->count() == 0; }
  /// The value at that position, below size(), found by as many steps.
  [[nodiscard]] Ptr<V> const& operator[](std::size_t position) const noexcept {
    return *std::next(begin(), static_cast<std::ptrdiff_t>(position));
  }

 private:
  // The member behind the place of a key, which may have left the queue. Of a queue that has wrapped, keys below the
  // head's stand behind the wrap.
  [[nodiscard]] Member* firstBehind(K key) const noexcept;
};

/// A position of a range-based loop.
template <class Q, class K, class V>
class LinkQueue<Q, K, V>::Cursor {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = Ptr<V>;
  using difference_type = std::ptrdiff_t;
  using pointer = Ptr<V> const*;
  using reference = Ptr<V> const&;

  Cursor() noexcept = default;
  explicit Cursor(Member const* member) noexcept : member_(member) {}

  reference operator*() const noexcept { return member_->value(); }
  pointer operator->() const noexcept { return &member_->value(); }
  Cursor& operator++() noexcept {
    member_ = LinkQueue::next(*member_);
    return *this;
  }
  Cursor operator++(int) noexcept {
    Cursor const old = *this;
    ++*this;
    return old;
  }
  bool operator==(Cursor const&) const noexcept = default;

 private:
  Member const* member_ = nullptr;
};

template <class Q, class K, class V>
class LinkQueue<Q, K, V>::IteratorConstBase : public BaseIteratorConst<Member, true> {
 public:
  /// Goes on to the member behind the current one, which there is, in the queue or no longer.
  void advance() noexcept {
    LinkQueue const& queue = *static_cast<LinkQueue const*>(this->collection());
    Member* const current = this->ptr();
    bool const unchanged = version_ == queue.version();
    version_ = queue.version();
    flags_ = 0;
    this->moveTo(unchanged ? LinkQueue::next(*current) : queue.firstBehind(current->fwkQkey()));
  }

 protected:
  IteratorConstBase() noexcept = default;
  IteratorConstBase(LinkQueue const* queue, Member* member) noexcept
      : BaseIteratorConst<Member, true>(queue, member), version_(queue == nullptr ? 0 : queue->version()) {}

  U32 version_ = 0;  // the queue's when the position was last fixed
  U32 flags_ = 0;
};

template <class Q, class K, class V>
class LinkQueue<Q, K, V>::IteratorConst : public IteratorConstBase {
 public:
  IteratorConst() noexcept = default;
  /// Opens at that member, or for null at the head. Null for both gives an empty position.
  explicit IteratorConst(LinkQueue const* queue, Member* member = nullptr) noexcept
      : IteratorConstBase(queue, member != nullptr || queue == nullptr ? member : queue->head()) {}

  using IteratorConstBase::ptr;
  [[nodiscard]] V const* ptr(False) const noexcept { return this->ptr()->value().ptr(); }
  V const& operator*() const noexcept { return *ptr(False{}); }
  V const* operator->() const noexcept { return ptr(False{}); }
  IteratorConst& operator++() noexcept {
    this->advance();
    return *this;
  }

  /// Whether the key under the iterator can stand for the place: it is not 0.
  [[nodiscard]] virtual bool hasBookmark() const { return this->ptr() != nullptr && this->ptr()->fwkQkey() != K{}; }
};

template <class Q, class K, class V>
auto LinkQueue<Q, K, V>::firstBehind(K key) const noexcept -> Member* {
  Member* at = this->head();
  if (at == nullptr) return nullptr;
  K const head = at->fwkQkey();
  K const tail = this->tail()->fwkQkey();
  if (key == head) return LinkQueue::next(*at);
  if (key == tail) return nullptr;

  bool const wrapped = tail < head;
  bool const behindTheWrap = wrapped && key < head;
  if ((!wrapped || behindTheWrap) && tail < key) return nullptr;

  // From here on some member ends each walk: at the latest the tail, or the first one behind the wrap.
  auto const step = [&at] {
    K const before = at->fwkQkey();
    at = LinkQueue::next(*at);
    return before;
  };
  K before = head;
  if (behindTheWrap) {
    while (at->fwkQkey() >= before) before = step();
    while (at->fwkQkey() < key) step();
  } else {
    while (at->fwkQkey() < key && at->fwkQkey() >= (wrapped ? before : head)) before = step();
  }
  return at->fwkQkey() == key ? LinkQueue::next(*at) : at;
}

}  // namespace Vek
