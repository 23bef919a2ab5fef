// Ptr: a counted pointer, null allowed. A pointer that it holds carries one reference.
// T offers referencesInc() and referencesDec() on const objects: everything under PtrInterface, and string data.
// Owner: each Ptr owns the reference that it carries. Thread: a Ptr belongs to one; counts may be shared, see
// VFPtrInterface. Re-entrancy: what the end of an object sets off finds an assigned Ptr in its new state.
#pragma once

#include "dornl3/core/PtrInterface.h"

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace Vek {

template <class T>
class Ptr {
 public:
  using Element = T;

  constexpr Ptr() noexcept = default;
  constexpr Ptr(std::nullptr_t) noexcept {}

  /// Takes a reference, if `p` is not null.
  Ptr(T* p) noexcept : ptr_(p) { take(ptr_); }
  Ptr(Ptr const& other) noexcept : ptr_(other.ptr_) { take(ptr_); }
  Ptr(Ptr&& other) noexcept : ptr_(std::exchange(other.ptr_, nullptr)) {}

  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  Ptr(Ptr<U> const& other) noexcept : Ptr(static_cast<T*>(other.ptr())) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  Ptr(Ptr<U>&& other) noexcept : ptr_(other.detach()) {}

  ~Ptr() { release(ptr_); }

  /// The new pointer gets its reference first, the word is stored, and only then the old one is released: whatever
  /// the old one's end sets off sees this pointer in its new state. The pointer already held: nothing happens.
  void ptrAssign(T* p) noexcept {
    if (p == ptr_) return;
    take(p);
    release(std::exchange(ptr_, p));
  }

  Ptr& operator=(Ptr const& other) noexcept {
    ptrAssign(other.ptr_);
    return *this;
  }
  Ptr& operator=(Ptr&& other) noexcept {
    if (this != &other) release(std::exchange(ptr_, std::exchange(other.ptr_, nullptr)));
    return *this;
  }
  Ptr& operator=(T* p) noexcept {
    ptrAssign(p);
    return *this;
  }
  Ptr& operator=(std::nullptr_t) noexcept {
    ptrAssign(nullptr);
    return *this;
  }

  T* operator->() const noexcept { return ptr_; }
  T& operator*() const noexcept { return *ptr_; }
  [[nodiscard]] T* ptr() const noexcept { return ptr_; }
  explicit operator bool() const noexcept { return ptr_ != nullptr; }

  /// Hands the pointer and its reference to the caller; this pointer is null afterwards.
  [[nodiscard]] T* detach() noexcept { return std::exchange(ptr_, nullptr); }

  template <class U>
  bool operator==(Ptr<U> const& other) const noexcept {
    return ptr_ == other.ptr();
  }
  bool operator==(T const* other) const noexcept { return ptr_ == other; }
  bool operator==(std::nullptr_t) const noexcept { return ptr_ == nullptr; }

 private:
  static void take(T* p) noexcept {
    if (p != nullptr) p->referencesInc();
  }
  static void release(T* p) noexcept {
    if (p != nullptr) p->referencesDec();
  }

  T* ptr_ = nullptr;
};

/// Makes a T on the counted heap and holds it. The constructor may hand out temporary references to the new object.
template <class T, class... Arguments>
[[nodiscard]] Ptr<T> make(Arguments&&... arguments) {
  Birth birth;
  Ptr<T> made{new T(std::forward<Arguments>(arguments)...)};
  birth.done();
  return made;
}

/// The same object as a Ptr<T>, with a reference of its own; null if it is no T.
template <class T, class U>
[[nodiscard]] Ptr<T> ptrCast(Ptr<U> const& from) noexcept {
  return Ptr<T>{dynamic_cast<T*>(from.ptr())};
}

}  // namespace Vek

template <class T>
struct std::hash<Vek::Ptr<T>> {
  std::size_t operator()(Vek::Ptr<T> const& p) const noexcept { return std::hash<T*>{}(p.ptr()); }
};
