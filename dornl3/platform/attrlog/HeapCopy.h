// HeapCopy: a copy of some value on the plain heap that knows how to end, for those who hold it without its type.
#pragma once

#include <memory>

namespace Vek {

class HeapCopy {
 public:
  HeapCopy() noexcept = default;

  template <class T>
  [[nodiscard]] static HeapCopy of(T const& value) {
    HeapCopy copy;
    copy.held_ = Held(new T(value), [](void* held) { delete static_cast<T*>(held); });
    return copy;
  }

  [[nodiscard]] void* get() const noexcept { return held_.get(); }

 private:
  using Held = std::unique_ptr<void, void (*)(void*)>;
  Held held_{nullptr, [](void*) {}};
};

}  // namespace Vek
