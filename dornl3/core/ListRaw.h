// ListRaw: the reactors of one entity; log adapters first, the newest ahead, then the others as they came.
// Owner: the entity. Members: not owned; a reactor leaves the list before it dies.
// Thread: the entity's. Re-entrancy: notifications walk a snapshot, see SnapshotIterator. LrIterator is for look-ups
// that call nobody on the way.
#pragma once

#include "dornl3/core/BaseCollection.h"
#include "dornl3/core/ReactorChain.h"

namespace Vek {

template <class T>
class ListRaw final : public BaseRefCollection<T> {
 public:
  class LrIteratorConst;
  class LrIterator;

  ~ListRaw() override { deleteAll(); }

  [[nodiscard]] U32 version() const noexcept { return chain_.version(); }
  [[nodiscard]] U32 count() const noexcept { return chain_.count(); }
  [[nodiscard]] T* head() const noexcept { return typed(chain_.head()); }
  [[nodiscard]] T* tail() const noexcept { return typed(chain_.tail()); }

  void insert(T& member) noexcept { chain_.insert(member); }         // links; takes no reference
  bool remove(T& member) noexcept { return chain_.remove(member); }  // unlinks; false where it was not on the list
  void deleteAll() noexcept { chain_.deleteAll(); }  // clears all links, lets weak members go; tells nobody

  [[nodiscard]] ReactorChain& chain() noexcept { return chain_; }
  [[nodiscard]] ReactorChain const& chain() const noexcept { return chain_; }

 private:
  static T* typed(ReactorChain::Member* member) noexcept { return static_cast<T*>(const_cast<Reactor*>(member)); }
  using Reactor = PtrInterface::NotifieeConst;

  ReactorChain chain_;
};

template <class T>
class ListRaw<T>::LrIteratorConst : public BaseIteratorConst<T, true> {
 public:
  explicit LrIteratorConst(ListRaw const& list) noexcept : BaseIteratorConst<T, true>(&list, list.head()) {}
};

/// Steps along the links. It does not compare the list's version.
template <class T>
class ListRaw<T>::LrIterator final : public LrIteratorConst {
 public:
  explicit LrIterator(ListRaw const& list) noexcept : LrIteratorConst(list), version_(list.version()) {}

  /// The list's version when the iterator was opened.
  [[nodiscard]] U32 version() const noexcept { return version_; }

  LrIterator& operator++() noexcept {
    if (onNext_) {
      onNext_ = false;
      return *this;
    }
    previous_ = this->ptr();
    this->moveTo(typed(ReactorChain::next(*previous_)));
    return *this;
  }

  /// Takes the current member off the list; the iterator then stands on the one behind it already.
  void remove(ListRaw& list) noexcept {
    Ptr<T> const member = this->ptr();
    this->moveTo(typed(ReactorChain::next(*member)));
    list.remove(*member);
    onNext_ = true;
  }

 private:
  U32 version_;
  Ptr<T> previous_;
  bool onNext_ = false;
};

}  // namespace Vek
