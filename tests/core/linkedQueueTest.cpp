#include "dornl3/core/LinkedQueue.h"

#include "tests/core/LeakCheck.h"
#include "tests/core/SmallStack.h"

#include <vector>

using namespace Vek;

namespace {

struct Thing : Vek::PtrInterface {
  explicit Thing(U32 n) : number(n) {}
  U32 number;
};

using Member = Vek::LinkedQueueElement<Ptr<Thing>>;

struct Queue : Vek::LinkedQueue<Member, Thing, Ptr<Thing>> {
  void onDeleteMemberNotFound(Member const& member) override { notFound.push_back(member.value()->number); }
  void add(U32 number) { enqueue(make<Thing>(number)); }
  std::vector<U32> numbers() const {
    std::vector<U32> found;
    for (Iterator it(this); it; ++it) found.push_back(it->value()->number);
    return found;
  }
  std::vector<U32> notFound;
};

struct LinkedQueues : LeakCheck {
  LinkedQueues() {
    for (U32 number : {1U, 2U, 3U, 4U}) queue.add(number);
  }
  Queue queue;
};

TEST_F(LinkedQueues, AreCopiedIntoMembersOfTheirOwnThatHoldTheSameValues) {
  Queue copy = queue;
  EXPECT_EQ(copy.numbers(), queue.numbers());
  EXPECT_EQ(copy.version(), 5U) << "one for the emptying, one a member";
  EXPECT_NE(copy.head(), queue.head());
  EXPECT_EQ(copy.head()->value(), queue.head()->value());
  EXPECT_EQ(copy.head()->value()->references(), 2U);
  copy.add(5);
  EXPECT_EQ(queue.numbers(), (std::vector<U32>{1, 2, 3, 4}));
  queue = copy;
  EXPECT_EQ(queue.numbers(), (std::vector<U32>{1, 2, 3, 4, 5}));
  Queue const& same = queue;
  queue = same;
  EXPECT_EQ(queue.numbers(), copy.numbers());
}

TEST_F(LinkedQueues, TellOfAMemberThatIsNotThere) {
  Ptr<Member> const elsewhere = make<Member>(make<Thing>(9U));
  queue.deleteMember(elsewhere);
  EXPECT_EQ(queue.notFound, (std::vector<U32>{9}));
  EXPECT_EQ(queue.version(), 4U);
  Queue::Iterator it(&queue);
  queue.deleteMember(Ptr<Member>(queue.head()));
  queue.deleteMember(it);
  EXPECT_EQ(queue.notFound, (std::vector<U32>{9, 1}));
  EXPECT_EQ(queue.numbers(), (std::vector<U32>{2, 3, 4}));
}

TEST_F(LinkedQueues, LetAnIteratorTakeOutAsItGoesAlsoWhereOthersHaveDoneSoBefore) {
  Queue::Iterator it(&queue);
  ++it;
  ++it;
  queue.deleteMember(Ptr<Member>(Queue::next(*queue.head())));  // the one that the iterator has just left
  queue.deleteMember(it);
  EXPECT_EQ(queue.numbers(), (std::vector<U32>{1, 4}));
  ASSERT_TRUE(it);
  EXPECT_EQ(it->value()->number, 4U);
  ++it;
  EXPECT_EQ(it->value()->number, 4U) << "it stood there already";
  queue.deleteMember(it);
  EXPECT_FALSE(it);
  EXPECT_EQ(queue.tail(), queue.head());
  queue.add(5);
  EXPECT_EQ(queue.numbers(), (std::vector<U32>{1, 5}));
}

TEST_F(LinkedQueues, OfAMillionGoOnASmallStackEvenUnderAnIterator) {
  withSmallStack([] {
    Queue large;
    for (U32 n = 0; n < 1'000'000; ++n) large.add(n);
    Queue copy = large;
    Queue::Iterator const it(&copy);
    copy.deleteAll();
    EXPECT_EQ(it->value()->number, 0U);
    EXPECT_EQ(Queue::next(*it), nullptr);
  });
}

}  // namespace
