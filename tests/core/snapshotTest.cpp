#include "dornl3/core/SnapshotIterator.h"
#include "tests/core/AllocationCount.h"
#include "tests/core/Counted.h"
#include "tests/core/LeakCheck.h"

#include <vector>

using namespace Vek;

namespace {

using List = Vek::ListRaw<PlainReactor>;
using Snapshot = Vek::SnapshotIterator<List>;

struct Lists : LeakCheck {
  // `count` reactors on the list, each held by `held` alone.
  void fill(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      held.push_back(make<PlainReactor>());
      list.insert(*held.back());
    }
  }
  static std::vector<PlainReactor*> walked(List const& list) {
    std::vector<PlainReactor*> members;
    for (List::LrIterator it{list}; it; ++it) members.push_back(it.ptr());
    return members;
  }
  std::vector<PlainReactor*> order(std::initializer_list<std::size_t> which) const {
    std::vector<PlainReactor*> members;
    for (std::size_t i : which) members.push_back(held[i].ptr());
    return members;
  }

  std::vector<Ptr<PlainReactor>> held;
  List list;
};

TEST_F(Lists, DeleteAllClearsEveryLinkAndCountsAVersion) {
  list.deleteAll();
  EXPECT_EQ(list.version(), 1U);
  fill(3);
  Ptr<Vek::PtrInterface> const notifier = make<PlainReactor>();
  for (auto const& reactor : held) reactor->notifierIs(notifier);
  held[1]->isWeakReferenceIs(true);
  list.deleteAll();
  for (auto const& reactor : held) EXPECT_EQ(reactor->rawNotifier() == nullptr, reactor == held[1]);
  EXPECT_EQ(list.version(), 5U);
  EXPECT_EQ(list.count(), 0U);
  EXPECT_EQ(list.head(), nullptr);
  for (auto const& reactor : held) {
    EXPECT_EQ(Vek::ReactorChain::next(*reactor), nullptr);
    EXPECT_EQ(reactor->references(), 1U);
  }
  EXPECT_FALSE(list.remove(*held[0]));
  EXPECT_EQ(list.version(), 5U) << "a member that is not found changes nothing";
  list.insert(*held[2]);
  EXPECT_EQ(list.tail(), held[2].ptr());
}

TEST_F(Lists, AnIteratorHoldsItsMemberAndRemovesAsItGoes) {
  fill(5);
  {
    List::LrIterator it{list};
    EXPECT_EQ(it.version(), 5U);
    EXPECT_EQ(held[0]->references(), 2U);
    ++it;
    EXPECT_EQ(held[0]->references(), 2U) << "the one before is held too";
    it.remove(list);
    EXPECT_EQ(it.ptr(), held[2].ptr());
    ++it;
    EXPECT_EQ(it.ptr(), held[2].ptr()) << "it stood on the next one already";
  }
  EXPECT_EQ(walked(list), order({0, 2, 3, 4}));
  for (auto const& reactor : held) EXPECT_EQ(reactor->references(), 1U);
}

struct Snapshots : Lists, testing::WithParamInterface<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(Of, Snapshots, testing::Values(0, 3, 16, 17));

TEST_P(Snapshots, HoldEachReactorUntilItsTurnIsOver) {
  fill(GetParam());
  int const before = allocationCount();
  int const expected = countsAllocations && GetParam() > 16 ? 1 : 0;
  {
    Snapshot walk{list};
    EXPECT_EQ(allocationCount() - before, expected);
    std::size_t turn = 0;
    for (; walk; ++walk, ++turn) {
      ASSERT_LT(turn, held.size());
      EXPECT_EQ(&*walk, held[turn].ptr());
      for (std::size_t i = 0; i < held.size(); ++i) ASSERT_EQ(held[i]->references(), i < turn ? 1U : 2U) << i;
    }
    EXPECT_EQ(turn, held.size());
  }
  EXPECT_EQ(allocationCount() - before, expected);
}

}  // namespace
