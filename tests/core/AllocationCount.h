// AllocationCount: how often the whole program, libraries included, has asked the heap for a block.
#pragma once

// Sanitizers bring a heap of their own, which nothing may replace.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define DORNL3_HEAP_IS_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define DORNL3_HEAP_IS_SANITIZED 1
#endif
#endif

#ifdef DORNL3_HEAP_IS_SANITIZED
inline constexpr bool countsAllocations = false;
#else
inline constexpr bool countsAllocations = true;
#endif

/// Stays 0 where countsAllocations is false.
[[nodiscard]] int allocationCount() noexcept;
