// CountedHeap: where counted objects live. Size-class free lists, one set a thread; a block goes to the list of the
// thread that frees it. In sanitizer builds every block goes to the plain heap, so that each misuse is seen.
// Owner: whoever allocated a block gives it back, with its size. Thread: any. Re-entrancy: it calls nobody.
#pragma once

#include "dornl3/core/Integers.h"

#include <cstddef>

namespace Vek {

class CountedHeap {
 public:
  /// A block of at least `size` bytes, aligned for any object. Throws std::bad_alloc.
  [[nodiscard]] static void* allocate(std::size_t size);

  /// Takes back a block of allocate(size), with that same size.
  static void release(void* block, std::size_t size) noexcept;

  /// Objects alive in the whole process. Exact once other threads stand still: tests compare it before and after.
  [[nodiscard]] static U64 liveObjects() noexcept;

  /// Objects made since the process began, in the same sense.
  [[nodiscard]] static U64 madeObjects() noexcept;
};

}  // namespace Vek
