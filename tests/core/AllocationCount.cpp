#include "tests/core/AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<int> allocations{0};

}  // namespace

int allocationCount() noexcept { return allocations; }

#ifndef DORNL3_HEAP_IS_SANITIZED

// NOLINTBEGIN(cppcoreguidelines-no-malloc): this is the heap
void* operator new(std::size_t size) {
  ++allocations;
  if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc{};
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
// NOLINTEND(cppcoreguidelines-no-malloc)

#endif
