#include "dornl3/core/LinkQueue.h"

#include "tests/core/LeakCheck.h"
#include "tests/core/Property.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <optional>
#include <vector>

using Vek::make;
using Vek::Ptr;
using Vek::U32;

namespace {

struct Numbered : Vek::PtrInterface {
  explicit Numbered(U32 n) : number(n) {}
  U32 number;
};

struct Queue : Vek::LinkQueue<Queue, U32, Numbered> {
  Queue() = default;
  Queue(std::initializer_list<U32> numbers) {
    for (U32 number : numbers) add(number);
  }
  static U32 fwkQkey(Numbered const& value) { return value.number; }
  void add(U32 number) { enqueue(make<Numbered>(number)); }
  Member* member(U32 number) const {
    Member* at = head();
    while (at != nullptr && at->fwkQkey() != number) at = next(*at);
    return at;
  }
  void remove(U32 number) { deleteMember(Ptr<Member>(member(number))); }
};

constexpr U32 theEnd = 0xdead;

struct LinkQueues : LeakCheck {};

TEST_F(LinkQueues, AreWalkedAsTheyStand) {
  Queue const queue{128, 154, 258, 0};
  std::vector<U32> walked;
  for (Queue::IteratorConst it(&queue); it; ++it) walked.push_back(it->number);
  EXPECT_EQ(walked, (std::vector<U32>{128, 154, 258, 0}));
  std::vector<U32> read;
  for (Ptr<Numbered> const& value : queue) read.push_back(value->number);
  EXPECT_EQ(read, walked);
  EXPECT_EQ(queue.size(), 4U);
  EXPECT_EQ(queue[2]->number, 258U);
}

TEST_F(LinkQueues, OpenAtAMemberOrElseAtTheHead) {
  Queue const queue{5, 6};
  Queue::IteratorConst const atMember(&queue, queue.tail());
  EXPECT_EQ(atMember.ptr(), queue.tail());
  EXPECT_EQ(atMember.ptr(Vek::False{}), queue.tail()->value().ptr());
  EXPECT_EQ(Queue::IteratorConst(&queue).ptr(), queue.head());
  EXPECT_FALSE(Queue::IteratorConst(nullptr));
  EXPECT_FALSE(Queue::IteratorConst());
}

TEST_F(LinkQueues, HaveABookmarkAtAnyKeyBut0) {
  Queue const queue{7, 0};
  Queue::IteratorConst it(&queue);
  EXPECT_TRUE(it.hasBookmark());
  ++it;
  EXPECT_FALSE(it.hasBookmark());
  ++it;
  EXPECT_FALSE(it.hasBookmark());
}

// With what has come since; the law below has the rest.
TEST_F(LinkQueues, AreResumedByKey) {
  struct Case {
    char const* situation;
    std::vector<U32> keys;
    U32 standing;
    std::vector<U32> leaving;
    std::vector<U32> coming;
    U32 expected;
  };
  for (Case const& c : {
           Case{"it was the tail, and others came", {1, 2, 3}, 3, {3}, {4, 5}, 4},
           Case{"it came again", {1, 2, 3}, 3, {3}, {3, 4}, 4},
           Case{"the wrap has come since", {5, 6, 7}, 6, {6, 7}, {2}, 2},
       }) {
    SCOPED_TRACE(c.situation);
    Queue queue;
    for (U32 key : c.keys) queue.add(key);
    Queue::IteratorConst it(&queue, queue.member(c.standing));
    for (U32 key : c.leaving) queue.remove(key);
    for (U32 key : c.coming) queue.add(key);
    ++it;
    EXPECT_EQ(it ? it->number : theEnd, c.expected);
  }
}

// Keys rise from any start, wrap or not, and leave at random. What comes behind a key is told by distances from the
// head, counted around; in a queue that has not wrapped, a key below the head's stands ahead of it.
TEST(LinkQueueLaws, AnIteratorGoesOnWithTheNextKeyInTheQueuesOrder) {
  expectLaw(500, [] {
    auto const first = *rc::gen::element<U32>(0, 100, 0xffffffc0);
    auto const steps = *rc::gen::nonEmpty(rc::gen::container<std::vector<U32>>(rc::gen::inRange<U32>(1, 9)));
    Queue queue;
    std::vector<U32> standing;
    U32 key = first;
    for (U32 step : steps) {
      queue.add(key);
      standing.push_back(key);
      key += step;
    }
    auto const position = *rc::gen::inRange<std::size_t>(0, standing.size());
    U32 const k = standing[position];
    Queue::IteratorConst it(&queue, queue.member(k));
    auto const leaves = *rc::gen::container<std::vector<bool>>(standing.size(), rc::gen::arbitrary<bool>());
    for (std::size_t i = standing.size(); i-- > 0;) {
      if (!leaves[i]) continue;
      queue.remove(standing[i]);
      standing.erase(standing.begin() + static_cast<std::ptrdiff_t>(i));
    }

    std::optional<U32> expected;
    if (!standing.empty()) {
      bool const wrapped = standing.back() < standing.front();
      auto const place = [&](U32 at) { return wrapped ? at - standing.front() : at; };
      auto const behind = std::find_if(standing.begin(), standing.end(), [&](U32 at) { return place(at) > place(k); });
      if (behind != standing.end()) expected = *behind;
    }
    ++it;
    RC_ASSERT(it.operator bool() == expected.has_value());
    if (expected) RC_ASSERT(it->number == *expected);
  });
}

}  // namespace
