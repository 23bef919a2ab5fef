#include "dornl3/core/CountedHeap.h"

#include "tests/core/Counted.h"
#include "tests/core/LeakCheck.h"

#include <atomic>
#include <cstring>
#include <set>
#include <thread>
#include <vector>

using namespace Vek;

namespace {

struct Heap : LeakCheck {};

TEST_F(Heap, BlocksOfEverySizeAreTheirOwnAndAligned) {
  struct Block {
    unsigned char* at;
    std::size_t size;
  };
  std::vector<Block> blocks;
  for (int round = 0; round < 3; ++round) {
    for (std::size_t size = 0; size < 700; size += 1 + size / 16) {
      auto* const at = static_cast<unsigned char*>(CountedHeap::allocate(size));
      EXPECT_EQ(reinterpret_cast<std::size_t>(at) % 16, 0U);
      std::memset(at, static_cast<int>(blocks.size() % 251), size);
      blocks.push_back({at, size});
    }
  }
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    for (std::size_t byte = 0; byte < blocks[i].size; ++byte) ASSERT_EQ(blocks[i].at[byte], i % 251) << blocks[i].size;
    CountedHeap::release(blocks[i].at, blocks[i].size);
  }
}

TEST_F(Heap, AThreadsBlocksAndCountsOutliveIt) {
  auto const live = CountedHeap::liveObjects();
  auto const made = CountedHeap::madeObjects();
  std::vector<void*> blocks(1000);
  auto const onThread = [](auto work) { std::thread{work}.join(); };
  onThread([&] {
    for (void*& block : blocks) block = CountedHeap::allocate(40);
  });
  EXPECT_EQ(CountedHeap::liveObjects(), live + 1000);
  onThread([&] {
    for (void* block : blocks) CountedHeap::release(block, 40);
  });
  EXPECT_EQ(CountedHeap::liveObjects(), live);
  EXPECT_EQ(CountedHeap::madeObjects(), made + 1000);
  std::set<void*> again;
  for (int i = 0; i < 3000; ++i) again.insert(CountedHeap::allocate(40));  // more than the threads left behind
  EXPECT_EQ(again.size(), 3000U) << "no block is handed out twice";
  for (void* block : again) CountedHeap::release(block, 40);
}

TEST_F(Heap, ObjectsThatGoWithTheirThreadAreCounted) {
  static int destroyed = 0;
  std::thread{[] {
    // Made before the thread's heap, so gone after it.
    static thread_local Ptr<Counted> last;
    last = make<Counted>(destroyed);
  }}.join();
  EXPECT_EQ(destroyed, 1);
}

// Both counts and blocks pass between the threads while each of them works.
TEST_F(Heap, ThreadsShareAndHandOverObjects) {
  ThreadSafePointers const threadSafe;
  constexpr int rounds = 2000;
  struct Shared : Vek::PtrInterface {
    Vek::String8 text{"shared by two threads"};
  };
  std::vector<Ptr<Shared>> inbox(rounds);
  for (auto& place : inbox) place = make<Shared>();
  auto const common = make<Shared>();
  auto const work = [&](std::vector<Ptr<Shared>> mine) {
    for (auto& object : mine) {
      Ptr<Shared> const copy = common;
      Vek::String8 const text = copy->text;
      object = make<Shared>();
      object->text = text;
    }
  };
  std::thread one{work, inbox};  // each holds a reference on the same objects, and the last gives them back
  std::thread two{work, std::move(inbox)};
  one.join();
  two.join();
  EXPECT_EQ(common->references(), 1U);
  EXPECT_EQ(common->text.data().references(), 1U);
}

// The keeper gives the object up just as the thread that dropped it sees that it is kept.
TEST_F(Heap, AnObjectKeptByAnotherThreadInItsLastWordsGoesOnce) {
  ThreadSafePointers const threadSafe;
  constexpr int rounds = 3000;
  std::atomic<Counted*> kept{nullptr};
  std::thread keeper{[&kept] {
    for (int round = 0; round < rounds; ++round) {
      Counted* object = nullptr;
      while ((object = kept.load()) == nullptr) std::this_thread::yield();
      object->referencesDec();
      kept = nullptr;
    }
  }};
  int destroyed = 0;
  for (int round = 0; round < rounds; ++round) {
    auto object = make<Counted>(destroyed);
    object->lastWords = [&kept, delay = 1 + round % 200](Counted& self) mutable {
      if (delay == 0) return;
      self.referencesInc();
      kept = &self;
      while (--delay > 0) static_cast<void>(kept.load());  // so that some round ends the words just then
    };
    object = nullptr;
    while (kept.load() != nullptr) std::this_thread::yield();
    EXPECT_EQ(destroyed, round + 1);
  }
  keeper.join();
}

}  // namespace
