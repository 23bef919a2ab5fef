// SnapshotIterator: the walk of a notification. It goes over the reactors that stood on the list when it began, in list
// order, while reactors come and go:
// - one that is added now is not called in this walk;
// - one that leaves but is held elsewhere is still called; one held only by this walk is skipped at its turn and dies
//   there (the first is never skipped);
// - none is destroyed during its own call, and each reference is given back as soon as its turn ends.
// Thread: the entity's. Up to 16 reactors need no heap.
#pragma once

#include <memory>

#include "core/ListRaw.h"

namespace Vek {

/// The untyped half.
class [[gnu::visibility("default")]] ReactorSnapshot {
 public:
  using Reactor = PtrInterface::NotifieeConst;

  /// Takes a reference on every reactor of the list. Throws std::bad_alloc above 16 of them, and holds none then.
  explicit ReactorSnapshot(ReactorChain const& chain);
  ~ReactorSnapshot();
  ReactorSnapshot(ReactorSnapshot const&) = delete;
  ReactorSnapshot& operator=(ReactorSnapshot const&) = delete;

  explicit operator bool() const noexcept { return index_ < size_; }
  /// The reactor whose turn it is; only while there is one.
  [[nodiscard]] Reactor& current() const noexcept { return *reactors_[index_]; }

  /// Ends the turn of the current reactor, and passes over those that only this walk still holds.
  void advance() noexcept {
    release();
    while (index_ < size_ && reactors_[index_]->references() == 1) release();
  }

 private:
  void release() noexcept { reactors_[index_++]->referencesDec(); }

  static constexpr U32 inPlace = 16;

  U32 size_ = 0;
  U32 index_ = 0;
  Reactor** reactors_ = few_;
  std::unique_ptr<Reactor*[]> many_;
  Reactor* few_[inPlace];  // filled up to size_
};

template <class List>
class SnapshotIterator;

template <class T>
class SnapshotIterator<ListRaw<T>> {
 public:
  explicit SnapshotIterator(ListRaw<T> const& list) : snapshot_(list.chain()) {}

  explicit operator bool() const noexcept { return static_cast<bool>(snapshot_); }
  T& operator*() const noexcept { return static_cast<T&>(snapshot_.current()); }
  T* operator->() const noexcept { return &**this; }
  SnapshotIterator& operator++() noexcept {
    snapshot_.advance();
    return *this;
  }

 private:
  ReactorSnapshot snapshot_;
};

}  // namespace Vek
