// ValidPtr: a Ptr in all but being never null. So it has no move and no detach: what is left of it would be null.
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
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  ValidPtr(ValidPtr<U> const& other) noexcept : ptr_(other.ptr()) {}
  ValidPtr(ValidPtr const&) noexcept = default;
  ValidPtr& operator=(ValidPtr const&) noexcept = default;
  ~ValidPtr() = default;

  /// As Ptr's. Throws as the constructors, and keeps what it holds then.
  void ptrAssign(T* p) { *this = ValidPtr(p); }

  operator Ptr<T> const&() const noexcept { return ptr_; }
  template <class U, class = std::enable_if_t<std::is_convertible_v<T*, U*> && !std::is_same_v<T, U>>>
  operator Ptr<U>() const noexcept {
    return ptr_;
  }
  explicit operator bool() const noexcept { return true; }

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
  bool operator==(T const* other) const noexcept { return ptr_ == other; }
  bool operator==(std::nullptr_t) const noexcept { return false; }

 private:
  void check() const {
    if (!ptr_) throwRangeException("null ValidPtr");
  }

  Ptr<T> ptr_;
};

template <class T, class U>
[[nodiscard]] Ptr<T> ptrCast(ValidPtr<U> const& from) noexcept {
  return ptrCast<T>(static_cast<Ptr<U> const&>(from));
}

}  // namespace Vek

template <class T>
struct std::hash<Vek::ValidPtr<T>> {
  std::size_t operator()(Vek::ValidPtr<T> const& p) const noexcept { return std::hash<T*>{}(p.ptr()); }
};
