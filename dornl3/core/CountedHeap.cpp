#include "dornl3/core/CountedHeap.h"

#include <array>
#include <atomic>
#include <mutex>
#include <new>

namespace Vek {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool plainHeap = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
constexpr bool plainHeap = true;
#else
constexpr bool plainHeap = false;
#endif
#else
constexpr bool plainHeap = false;
#endif

constexpr std::size_t granule = 16;  // also the alignment of every block
constexpr std::size_t classCount = 32;
constexpr std::size_t slabSize = 16384;

struct FreeBlock {
  FreeBlock* next;
};
using FreeLists = std::array<FreeBlock*, classCount>;

constexpr std::size_t classOf(std::size_t size) noexcept { return size == 0 ? 0 : (size - 1) / granule; }
constexpr std::size_t sizeOfClass(std::size_t index) noexcept { return (index + 1) * granule; }

class ThreadHeap;

// What threads leave behind, and the list of those that live. Never destroyed: objects may go after main() ends.
struct Pool {
  std::mutex mutex;
  FreeLists orphans{};
  ThreadHeap* threads = nullptr;
  std::atomic<U64> made{0};
  std::atomic<U64> gone{0};
};

Pool& pool() noexcept {
  alignas(Pool) static std::array<unsigned char, sizeof(Pool)> storage;
  static Pool& instance = *new (storage.data()) Pool;
  return instance;
}

class ThreadHeap {
 public:
  ThreadHeap() noexcept {
    std::scoped_lock const lock{pool().mutex};
    next_ = pool().threads;
    pool().threads = this;
    mine_ = this;
  }

  ~ThreadHeap() {
    std::scoped_lock const lock{pool().mutex};
    ThreadHeap** place = &pool().threads;
    while (*place != this) place = &(*place)->next_;
    *place = next_;
    for (std::size_t i = 0; i < classCount; ++i) {
      while (FreeBlock* block = free_[i]) {
        free_[i] = block->next;
        block->next = pool().orphans[i];
        pool().orphans[i] = block;
      }
    }
    pool().made += made();
    pool().gone += gone();
    mine_ = nullptr;
    over_ = true;
  }

  ThreadHeap(ThreadHeap const&) = delete;
  ThreadHeap& operator=(ThreadHeap const&) = delete;

  // Null once the thread's heap is gone: the last objects of a thread may outlive it.
  static ThreadHeap* mine() noexcept { return mine_ != nullptr ? mine_ : begin(); }

  void* take(std::size_t index) {
    if (free_[index] == nullptr) refill(index);
    FreeBlock* block = free_[index];
    free_[index] = block->next;
    return block;
  }

  void put(void* block, std::size_t index) noexcept { free_[index] = new (block) FreeBlock{free_[index]}; }

  // Written by the owning thread alone, read by others: a plain increment that no reader tears.
  void countMade() noexcept { made_.store(made() + 1, std::memory_order_relaxed); }
  void countGone() noexcept { gone_.store(gone() + 1, std::memory_order_relaxed); }
  U64 made() const noexcept { return made_.load(std::memory_order_relaxed); }
  U64 gone() const noexcept { return gone_.load(std::memory_order_relaxed); }
  ThreadHeap const* next() const noexcept { return next_; }

 private:
  [[gnu::noinline]] static ThreadHeap* begin() noexcept {
    if (over_) return nullptr;
    static thread_local ThreadHeap heap;
    return &heap;
  }

  void refill(std::size_t index) {
    {
      std::scoped_lock const lock{pool().mutex};
      if (FreeBlock* orphans = pool().orphans[index]) {
        pool().orphans[index] = nullptr;
        free_[index] = orphans;
        return;
      }
    }
    std::size_t const size = sizeOfClass(index);
    auto* slab = static_cast<unsigned char*>(::operator new(slabSize));
    for (std::size_t at = slabSize / size; at-- > 0;) put(slab + at * size, index);
  }

  // Known from the first instruction of a thread, and so small that a library which is loaded late finds room for it:
  // each object that is made and goes asks for it.
  [[gnu::tls_model("initial-exec")]] static thread_local ThreadHeap* mine_;
  static thread_local bool over_;

  FreeLists free_{};
  ThreadHeap* next_ = nullptr;
  std::atomic<U64> made_{0};
  std::atomic<U64> gone_{0};
};

constinit thread_local ThreadHeap* ThreadHeap::mine_ = nullptr;
constinit thread_local bool ThreadHeap::over_ = false;

template <class Counter, class OfThread>
U64 sum(Counter const& ended, OfThread ofThread) noexcept {
  std::scoped_lock const lock{pool().mutex};
  U64 total = ended.load();
  for (ThreadHeap const* heap = pool().threads; heap != nullptr; heap = heap->next()) total += ofThread(*heap);
  return total;
}

}  // namespace

void* CountedHeap::allocate(std::size_t size) {
  std::size_t const index = classOf(size);
  ThreadHeap* const mine = ThreadHeap::mine();
  bool const pooled = !plainHeap && index < classCount && mine != nullptr;
  // A thread without a heap of its own still hands out whole classes: another thread may free the block into a list.
  void* const block = pooled ? mine->take(index) : ::operator new(index < classCount ? sizeOfClass(index) : size);
  if (mine != nullptr) {
    mine->countMade();
  } else {
    ++pool().made;
  }
  return block;
}

void CountedHeap::release(void* block, std::size_t size) noexcept {
  std::size_t const index = classOf(size);
  ThreadHeap* const mine = ThreadHeap::mine();
  if (mine != nullptr) {
    mine->countGone();
  } else {
    ++pool().gone;
  }
  if (plainHeap || index >= classCount) {
    ::operator delete(block);
  } else if (mine != nullptr) {
    mine->put(block, index);
  } else {
    std::scoped_lock const lock{pool().mutex};
    pool().orphans[index] = new (block) FreeBlock{pool().orphans[index]};
  }
}

U64 CountedHeap::madeObjects() noexcept {
  return sum(pool().made, [](ThreadHeap const& heap) { return heap.made(); });
}

U64 CountedHeap::liveObjects() noexcept {
  U64 const gone = sum(pool().gone, [](ThreadHeap const& heap) { return heap.gone(); });
  return madeObjects() - gone;
}

}  // namespace Vek
