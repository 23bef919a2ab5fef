// SnapshotIterator: the walk of a notification. It goes over the reactors that stood on the list when it began, in list
// order, while reactors come and go:
// - one that is added now is not called in this walk;
// - one that leaves but is held elsewhere is still called; one held only by this walk is skipped at its turn and dies
//   there (the first is never skipped);
// - none is destroyed during its own call, and each reference is given back as soon as its turn ends.
// Owner: the walk, of these references. Thread: the entity's. Re-entrancy: as above. Up to 16 reactors need no heap.
#pragma once

#include "dornl3/core/ListRaw.h"

#include <memory>

namespace Vek {

/// The reactors of a list as it stands, each with a reference that ReactorTurns gives back.
class HeldReactors {
 public:
  using Reactor = PtrInterface::NotifieeConst;

  /// Throws std::bad_alloc above 16 reactors, and holds none then.
  explicit HeldReactors(ReactorChain const& chain) {
    if (chain.count() > inPlace) makeRoom(chain.count());
    Reactor** end = begin_;
    for (ReactorChain::Member* member = chain.head(); member != nullptr; member = ReactorChain::next(*member)) {
      member->referencesInc();
      *end++ = const_cast<Reactor*>(member);
    }
    end_ = end;
  }
  HeldReactors(HeldReactors const&) = delete;
  HeldReactors& operator=(HeldReactors const&) = delete;
  ~HeldReactors() = default;

  [[nodiscard]] Reactor* const* begin() const noexcept { return begin_; }
  [[nodiscard]] Reactor* const* end() const noexcept { return end_; }

 private:
  static constexpr U32 inPlace = 16;
  void makeRoom(U32 count);

  Reactor** begin_ = few_;
  Reactor** end_ = few_;
  std::unique_ptr<Reactor*[]> many_;
  Reactor* few_[inPlace];  // filled up to end_
};

/// Their turns, one after the other. It stands apart from the array so that compilers keep it in registers.
class ReactorTurns {
 public:
  using Reactor = HeldReactors::Reactor;

  explicit ReactorTurns(HeldReactors const& held) noexcept : at_(held.begin()), end_(held.end()) {}
  ~ReactorTurns() {
    while (at_ != end_) release();
  }
  ReactorTurns(ReactorTurns const&) = delete;
  ReactorTurns& operator=(ReactorTurns const&) = delete;

  explicit operator bool() const noexcept { return at_ != end_; }
  /// The reactor whose turn it is; only while there is one.
  [[nodiscard]] Reactor& current() const noexcept { return **at_; }

  /// Ends the turn of the current reactor, and passes over those that only this walk still holds.
  void advance() noexcept {
    release();
    while (at_ != end_ && (*at_)->references() == 1) release();
  }

 private:
  void release() noexcept { (*at_++)->referencesDec(); }

  Reactor* const* at_;
  Reactor* const* end_;
};

template <class List>
class SnapshotIterator;

template <class T>
class SnapshotIterator<ListRaw<T>> {
 public:
  explicit SnapshotIterator(ListRaw<T> const& list) : held_(list.chain()), turns_(held_) {}

  explicit operator bool() const noexcept { return static_cast<bool>(turns_); }
  T& operator*() const noexcept { return static_cast<T&>(turns_.current()); }
  T* operator->() const noexcept { return &**this; }
  SnapshotIterator& operator++() noexcept {
    turns_.advance();
    return *this;
  }

 private:
  HeldReactors held_;
  ReactorTurns turns_;
};

}  // namespace Vek
