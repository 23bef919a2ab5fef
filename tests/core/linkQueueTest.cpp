#include "dornl3/core/LinkQueue.h"

#include "tests/core/LeakCheck.h"

#include <vector>

using namespace Vek;

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

TEST_F(LinkQueues, OpenAtAMemberOrElseAtTheHeadAndHaveABookmarkAtAnyKeyBut0) {
  Queue const queue{7, 0};
  Queue::IteratorConst it(&queue);
  EXPECT_EQ(it.ptr(), queue.head());
  EXPECT_TRUE(it.hasBookmark());
  Queue::IteratorConst const last(&queue, queue.tail());
  EXPECT_EQ(last.ptr(Vek::False{}), queue.tail()->value().ptr());
  EXPECT_FALSE(last.hasBookmark());
  EXPECT_FALSE(Queue::IteratorConst(nullptr).hasBookmark());
}

// In a queue that has not wrapped, a key below the head's stands ahead of it; in one that has, at its end.
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
           Case{"it has left", {1, 3, 5, 7}, 3, {3}, {}, 5},
           Case{"it has left with the next", {1, 3, 5, 7}, 3, {3, 5}, {}, 7},
           Case{"it was the head", {1, 3, 5}, 1, {1}, {}, 3},
           Case{"it was the tail", {1, 3}, 3, {3}, {}, theEnd},
           Case{"all have left", {1, 3}, 1, {1, 3}, {}, theEnd},
           Case{"another has left", {1, 3, 5}, 3, {1}, {}, 5},
           Case{"it stood ahead of the wrap", {5, 7, 9, 1, 3}, 7, {7}, {}, 9},
           Case{"it was the last ahead of the wrap", {5, 7, 1, 3}, 7, {7}, {}, 1},
           Case{"it stood behind the wrap", {5, 7, 1, 3, 4}, 3, {3}, {}, 4},
           Case{"it was the first behind the wrap", {5, 7, 1, 3}, 1, {1}, {}, 3},
           Case{"it was the head of one that wraps", {5, 7, 1}, 5, {5}, {}, theEnd},
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

}  // namespace
