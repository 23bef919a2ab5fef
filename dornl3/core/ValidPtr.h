// ValidPtr: a Ptr that is never null. It has no move, since a moved-from one would be null.
#pragma once

#include "dornl3/core/Ptr.h"
#include "dornl3/core/Throwers.h"

namespace Vek {

template <class T>
class ValidPtr {
 public:
  using Element = T;

  /// Takes a reference. Throws RangeException "null ValidPtr", and holds nothing then.
  ValidPtr(T* p) : ptr_(p) { check(); }
  ValidPtr(Ptr<T> const& p) : ptr_(p) { check(); }
  ValidPtr(ValidPtr const&) noexcept = default;
  ValidPtr& operator=(ValidPtr const&) noexcept = default;
  ~ValidPtr() = default;

  operator Ptr<T> const&() const noexcept { return ptr_; }
  T* operator->() const noexcept { return ptr_.ptr(); }
  T& operator*() const noexcept { return *ptr_; }
  [[nodiscard]] T* ptr() const noexcept { return ptr_.ptr(); }

  template <class U>
  bool operator==(ValidPtr<U> const& other) const noexcept {
    return ptr_.ptr() == other.ptr();
  }
  template <class U>
  bool operator==(Ptr<U> const& other) const noexcept {
    return ptr_ == other;
  }

 private:
  void check() const {
    if (!ptr_) throwRangeException("null ValidPtr");
  }

  Ptr<T> ptr_;
};

}  // namespace Vek
