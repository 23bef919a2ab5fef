// Histories that a walk, a child and a log that is short of room make between them, each as it was once thought of.
#include "dornl3/generic/Digest.h"
#include "tests/attrlog/BareLog.h"

#include <algorithm>
#include <map>

namespace LogTest {
namespace {

using Vek::Dir;

// A box that both ends may change, in step.
struct Traces : LeakCheck {
  explicit Traces(PairOptions const& options = oneRecord()) : pair(options) {}

  void expectEqual() {
    pair.settle();
    EXPECT_EQ(mount->state(), Dir::inStep);
    EXPECT_EQ(Vek::digest(*box), Vek::digest(*replica));
  }
  // What an end says goes nowhere from here on, and its log is short of room.
  void stall(MemoryTransport& transport, ToyBox& its) {
    transport.capacityIs(0);
    its.countsIs(1, its.counts(1) + 1);
  }
  void letGo() {
    for (auto* const transport : {&pair.ownerTransport(), &pair.readerTransport()}) {
      transport->capacityIs(std::numeric_limits<std::size_t>::max());
    }
  }

  LogPair pair;
  Ptr<ToyBox> box = Toys::toyBoxFactory("box");
  Mounted<ToyBox> mounted{pair, box};
  Ptr<Mount> mount = mounted.mount;
  Ptr<ToyBox> replica = mounted.replica();
};

TEST_F(Traces, AChildRemovedAndMadeAgainWhileTheLogIsFullIsAnother) {
  struct {
    char const* what;
    ToyBox &near, &far;
    MemoryTransport& stream;
  } const ends[] = {{"by the replica", *replica, *box, pair.readerTransport()},
                    {"by the owner", *box, *replica, pair.ownerTransport()}};
  for (auto const& end : ends) {
    SCOPED_TRACE(end.what);
    box->shelvesIs("s")->drawersIs("d");
    box->lidIs("lid")->openIs(false);
    expectEqual();
    Ptr<Toys::Shelf> const shelf = end.far.shelves("s");
    Ptr<Toys::Lid> const lid = end.far.lid();
    stall(end.stream, end.near);
    end.near.shelvesDel("s");
    end.near.lidDel();
    Ptr<Toys::Shelf> const anotherShelf = end.near.shelvesIs("s");
    Ptr<Toys::Lid> const anotherLid = end.near.lidIs("lid");
    pair.step();
    letGo();
    expectEqual();
    EXPECT_NE(end.far.shelves("s"), shelf);
    EXPECT_NE(end.far.lid(), lid);
    EXPECT_EQ(end.near.shelves("s"), anotherShelf);
    EXPECT_EQ(end.near.lid(), anotherLid);
    EXPECT_EQ(end.far.shelves("s")->drawersCount(), 0U);
    EXPECT_TRUE(end.far.lid()->open());
    shelf->drawersIs("what is left of it is nobody's");
    expectEqual();
  }
}

TEST_F(Traces, AChildWhoseBindIsParkedIsNotSweptAway) {
  box->shelvesIs("old");
  expectEqual();
  stall(pair.readerTransport(), *replica);
  Ptr<Toys::Shelf> const made = replica->shelvesIs("new");
  box->vekNboAttrLogSa(pair.owner().out())->oweEverything();
  for (int steps = 0; steps < 100; ++steps) pair.step();
  EXPECT_EQ(replica->shelves("new"), made);
  letGo();
  expectEqual();
  EXPECT_EQ(replica->shelves("new"), made);
  EXPECT_NE(box->shelves("new"), nullptr);
  EXPECT_NE(box->shelves("old"), nullptr);
}

struct FewEntities : Traces {
  static PairOptions three() {
    PairOptions options;
    options.limits.entities = 3;
    return options;
  }
  FewEntities() : Traces(three()) {}
};

TEST_F(FewEntities, AChildWhoseBindIsParkedComesAsItIsWhenAnIdIsFree) {
  auto const other = Toys::toyFactory("other");
  Mounted<Toy> const ofOther(pair, other);
  box->shelvesIs("a");
  expectEqual();
  box->shelvesIs("b");
  box->lidIs("lid");
  pair.settle();
  EXPECT_EQ(replica->shelves("b"), nullptr);
  box->shelves("b")->drawersIs("d")->thingsIs(7);
  box->lid()->openIs(false);
  pair.settle();
  EXPECT_EQ(mount->state(), Dir::inStep);
  pair.owner().exports().exportDel("other");
  box->shelvesDel("a");
  box->lidDel();
  expectEqual();
  EXPECT_EQ(replica->shelves("b")->drawers("d")->things(), 7U);
}

TEST_F(FewEntities, ATreeOfMoreNeverComesInStepAndTheReasonIsTold) {
  pair.cut();
  for (char const* name : {"a", "b", "c"}) box->shelvesIs(name);
  pair.connect();
  mounted.bind(pair, box);
  for (int steps = 0; steps < 20; ++steps) pair.step();
  EXPECT_EQ(mount->state(), Dir::stale);
  EXPECT_EQ(pair.owner().closeReason(), "box.shelves: the peer takes no more than 3 entities");
}

// A table that takes many turns, changed in front of the walk and behind it in each of them.
TEST(LongWalk, SendsEachKeyOnceAndEachLaterChangeOnceATurn) {
  constexpr U32 keys = 100'000;
  PairOptions options;
  options.isRecorded = true;
  LogPair pair(options);
  auto const box = Toys::toyBoxFactory("box");
  for (U32 key = 0; key < keys; ++key) box->countsIs(key, 1);
  pair.owner().exports().exportIs(box, Access::readOnly);
  auto const mount = Vek::NboAttrLog::mountOf<ToyBox>("box", Access::readOnly);
  pair.reader().mounts().mountIs(mount);
  while (mount->state() == Dir::neverSynced) pair.step();
  U32 turns = 0;
  for (; mount->state() != Dir::inStep; ++turns, pair.step()) {
    bool const isInFront = turns < 20;
    for (U32 const value : {2U, 3U}) {
      box->countsIs(0, 10 * turns + value);  // behind, again and again
      box->countsIs(1 + turns, value);       // behind
      if (isInFront) box->countsIs(keys - 1 - turns, value);
      if (isInFront) box->countsIs(keys + turns, value);
    }
    box->countsDel(1000 + turns);  // behind
    if (isInFront) box->countsDel(keys / 2 + turns);
  }
  pair.settle();
  EXPECT_EQ(Vek::digest(*box), Vek::digest(*mount->entity()));
  EXPECT_GT(turns, 20U);

  std::map<U32, U32> times;
  for (Record const& each : recordsIn(pair.readerHeard)) {
    if (each.attribute == 258 || each.attribute == -258) ++times[numberAt(each.payload, 0)];
  }
  EXPECT_LE(times[0], 1 + turns);
  for (auto const& [key, count] : times) {
    if (key == 0) continue;
    bool const isBehind = key <= turns || (key >= 1000 && key < 1000 + turns);
    EXPECT_LE(count, isBehind ? 2U : 1U) << key;
  }
}

}  // namespace
}  // namespace LogTest
