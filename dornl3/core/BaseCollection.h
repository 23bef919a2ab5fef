// BaseCollection: what ordered and list collections share, and the iterators that hold a member of one.
// Owner: an iterator holds a reference on the member under it; the collection, which knows the member's type, gives it
// back, and so outlives its iterators. Thread: the collection's. Re-entrancy: a member that ends when an iterator moves
// on may change the collection; the iterator stands on the next one by then.
#pragma once

#include "dornl3/core/Ptr.h"

namespace Vek {

class BaseCollection {
 public:
  /// Root of the iterators: a collection, and the member on which the iterator stands, with a reference.
  class StrepIterator {
   public:
    [[nodiscard]] BaseCollection const* collection() const noexcept { return collection_; }
    explicit operator bool() const noexcept { return current_ != nullptr; }

   protected:
    StrepIterator() noexcept = default;
    StrepIterator(BaseCollection const* collection, PtrInterface* current) noexcept
        : collection_(collection), current_(current) {}
    StrepIterator(StrepIterator const&) noexcept = default;
    StrepIterator& operator=(StrepIterator const&) noexcept = default;
    virtual ~StrepIterator();

    BaseCollection const* collection_ = nullptr;
    PtrInterface* current_ = nullptr;

   private:
    friend class BaseCollection;
  };

  BaseCollection() noexcept = default;
  BaseCollection(BaseCollection const&) = delete;
  BaseCollection& operator=(BaseCollection const&) = delete;
  virtual ~BaseCollection();

  /// Gives back the reference on the iterator's member.
  virtual void iteratorDelete(StrepIterator& it) const noexcept;
  /// Takes one more reference on the iterator's member, and gives the member.
  virtual PtrInterface* iteratorSpaceCopy(StrepIterator const& it) const noexcept;
};

/// A collection of counted members of type T.
template <class T>
class BaseRefCollection : public BaseCollection {
 protected:
  BaseRefCollection() noexcept = default;
};

/// An iterator over a collection of members of type T. A position gives its reference back through the collection, so
/// the collection outlives its iterators. `Bookmarks` says whether an equal position can be found again in a changed
/// collection.
template <class T, bool Bookmarks>
class BaseIteratorConst : public BaseCollection::StrepIterator {
 public:
  BaseIteratorConst() noexcept = default;
  BaseIteratorConst(BaseCollection const* collection, T* member) noexcept : StrepIterator(collection, member) {
    if (member != nullptr) member->referencesInc();
  }
  BaseIteratorConst(BaseIteratorConst const& other) noexcept : StrepIterator(other.collection_, nullptr) {
    if (other.collection_ != nullptr) current_ = collection_->iteratorSpaceCopy(other);
  }
  BaseIteratorConst& operator=(BaseIteratorConst const& other) noexcept {
    if (this != &other) {
      BaseIteratorConst copy(other);
      std::swap(collection_, copy.collection_);
      std::swap(current_, copy.current_);
    }
    return *this;
  }
  ~BaseIteratorConst() override {
    if (collection_ != nullptr) collection_->iteratorDelete(*this);
  }

  [[nodiscard]] T* ptr() const noexcept { return static_cast<T*>(current_); }
  T* operator->() const noexcept { return ptr(); }
  T& operator*() const noexcept { return *ptr(); }

 protected:
  /// Stands on `member`, with a reference of its own, before the old member's reference goes.
  void moveTo(T* member) noexcept {
    Ptr<T> const old = ptr();
    if (member != nullptr) member->referencesInc();
    if (old) old->referencesDec();
    current_ = member;
  }
};

}  // namespace Vek
