// Exports and mounts: an entity is announced, comes in step, follows its owner, and survives a cut; and what a change
// costs.
#include "dornl3/generic/Digest.h"
#include "tests/attrlog/BareLog.h"
#include "tests/core/AllocationCount.h"

namespace LogTest {
namespace {

using namespace Toys;
using Vek::Dir;

struct MountTest : LeakCheck {
  LogPair pair;
  Ptr<Toy> toy = Toys::toyFactory("toy");
};

TEST_F(MountTest, ReadOnlyReplicaRefusesAndStoresNothing) {
  Mounted<Toy> const mounted(pair, toy, Access::readOnly);
  auto const replica = mounted.replica();
  auto const writes = replica->writeCount();
  EXPECT_THROW(replica->sizeIs(4), Vek::ReadOnlyException);
  EXPECT_EQ(replica->size(), 0U);
  EXPECT_EQ(replica->writeCount(), writes);

  Calls calls;  // nor does it from a reactor that hears of the owner's change
  auto const listener = Toys::listen<ToyListener>(replica, calls, "L");
  listener->nextDo({[&] { EXPECT_THROW(replica->brokenIs(true), Vek::ReadOnlyException); }});
  toy->textIs("a text");  // which passes the guard as it comes in
  pair.settle();
  EXPECT_EQ(calls, (Calls{"L text"}));
  EXPECT_FALSE(replica->broken());
}

TEST_F(MountTest, IsInStepWhenAllChildrenAreAndGuardsThoseToo) {
  LogPair narrow({.turnBytes = 50});
  Ptr<ToyBox> const box = Toys::toyBoxFactory("box");
  Mounted<ToyBox> mounted(narrow, box, Access::readOnly);
  narrow.connect();
  auto const shelf = box->shelvesIs("shelf");  // which takes longer than all else
  for (char label = 'a'; label < 'z'; ++label) shelf->drawersIs(std::string_view(&label, 1))->thingsIs(3);
  mounted.bind(narrow, box);
  for (int steps = 0; steps < 10000 && mounted.mount->state() != Dir::inStep; ++steps) narrow.step();
  auto const replica = mounted.replica();
  EXPECT_EQ(Vek::digest(*replica), Vek::digest(*box));
  box->newShelves("comes later")->drawersIs("d")->thingsIs(9);
  box->shelvesNotify("comes later");
  narrow.settle();
  EXPECT_THROW(replica->shelves("comes later")->drawersDel("d"), Vek::ReadOnlyException);
  EXPECT_THROW(replica->shelves("shelf")->drawersDelAll(), Vek::ReadOnlyException);
  EXPECT_EQ(Vek::digest(*replica), Vek::digest(*box)) << "nothing was stored";
}

// What a mount may come to, one after the other.
TEST_F(MountTest, RefusalsSayWhy) {
  pair.owner().exports().exportIs(toy, Access::readOnly);
  auto const refusalOf = [&](LogPair& at, Vek::VekType const& type, Access access) {
    auto const mount = Vek::make<Mount>("toy", type, access, Vek::make<Dir>());
    at.reader().mounts().mountIs(mount);
    at.settle();
    EXPECT_EQ(mount->state(), Dir::neverSynced);
    EXPECT_THROW(at.reader().mounts().mountIs(mount), Vek::InternalException);
    at.reader().mounts().mountDel(*mount);
    return std::string(mount->refusal().view());
  };
  EXPECT_EQ(refusalOf(pair, *Toy::_fwkType(), Access::writable), "it may be mounted read-only");
  EXPECT_EQ(refusalOf(pair, *ToyBox::_fwkType(), Access::readOnly), "it is a Toys::Toy, not a Toys::ToyBox");
  auto const dir = Vek::make<Dir>();
  auto const mount = Vek::NboAttrLog::mountOf<Toy>("toy", Access::readOnly, dir);
  pair.reader().mounts().mountIs(mount);
  pair.settle();
  LogPair below;  // exported further, and more writable than it is mounted
  below.owner().exports().exportIs(dir->entity("toy"), Access::writable);
  EXPECT_EQ(refusalOf(below, *Toy::_fwkType(), Access::writable), "it may be mounted read-only");
}

TEST_F(MountTest, AnEntityThatIsTakenBackOrDiesIsStaleWhereItWasMounted) {
  Mounted<Toy> const mounted(pair, toy, Access::readOnly);
  toy = nullptr;
  pair.owner().exports().exportDel("toy");
  pair.settle();
  EXPECT_EQ(mounted.mount->state(), Dir::stale);
  EXPECT_THROW(mounted.replica()->sizeIs(1), Vek::ReadOnlyException);
}

TEST_F(MountTest, SilenceForThreeHeartbeatsEndsAConnection) {
  EXPECT_EQ(pair.owner().deadline(), pair.world.now + 30) << "the peer's greeting";
  Mounted<Toy> const mounted(pair, toy, Access::readOnly);
  EXPECT_EQ(pair.owner().deadline(), pair.world.now + 10) << "a word that it lives";
  for (int i = 0; i < 5; ++i) {
    pair.world.now += 10;
    pair.owner().tick();
    pair.reader().tick();
    pair.settle();
  }
  EXPECT_EQ(pair.reader().state(), Vek::NboAttrLog::open);
  pair.world.now += 30;
  pair.reader().tick();
  EXPECT_EQ(pair.reader().state(), Vek::NboAttrLog::dead);
  EXPECT_EQ(pair.reader().closeReason(), "nothing was heard for 30.0 seconds");
  EXPECT_EQ(pair.reader().deadline(), std::numeric_limits<double>::infinity()) << "it wants nothing more";
  EXPECT_EQ(mounted.mount->state(), Dir::stale);
}

// In the middle of a chain: what it mounts is stale while it has no owner, and takes no changes from below.
TEST_F(MountTest, AChainKnowsThatItsBeginningIsCut) {
  LogPair below;
  Mounted<Toy> middle(pair, toy);
  Mounted<Toy> const end(below, middle.replica());
  ASSERT_EQ(end.mount->state(), Dir::inStep);
  end.replica()->sizeIs(3);
  below.settle();
  pair.settle();
  EXPECT_EQ(toy->size(), 3U);
  pair.cut();
  below.settle();
  EXPECT_EQ(end.mount->state(), Dir::stale);
  EXPECT_THROW(end.replica()->sizeIs(4), Vek::ReadOnlyException);
  pair.connect();
  middle.bind(pair, toy);
  pair.settle();
  below.settle();
  EXPECT_EQ(end.mount->state(), Dir::inStep);
}

TEST_F(MountTest, WhatIsTooLongForThePeerIsNamedAndTheRestGoesOn) {
  LogPair narrow({.limits = {.recordBytes = 1024}});
  toy->placeIs({1, 2, Vek::String8(std::string_view(std::string(2000, 'x')))});
  Mounted<Toy> const mounted(narrow, toy, Access::readOnly);
  EXPECT_EQ(mounted.mount->state(), Dir::inStep);
  EXPECT_EQ(narrow.owner().demuxer().notReplicated(), (std::vector<Vek::String8>{"toy.place"}));
  toy->placeIs({1, 2, "short"});
  narrow.settle();
  EXPECT_TRUE(narrow.owner().demuxer().notReplicated().empty());
  EXPECT_EQ(mounted.replica()->place(), toy->place());
}

TEST_F(MountTest, AFirstSynchronisationEndsBesideKeysThatComeAndGo) {
  LogPair narrow{{.limits = {.outBytes = 400, .messageBytes = 100, .marks = 16}, .turnBytes = 300}};
  Ptr<ToyBox> const box = Toys::toyBoxFactory("box");
  Mounted<ToyBox> mounted(narrow, box, Access::readOnly);
  narrow.connect();
  for (U32 key = 0; key < 300; ++key) box->wantedIs(key, true);
  mounted.bind(narrow, box);
  for (U32 key = 0; key < 1000 && mounted.mount->state() != Dir::inStep; ++key) {
    box->countsIs(key, 1);
    box->countsDel(key);
    narrow.step();
  }
  EXPECT_EQ(mounted.mount->state(), Dir::inStep);
}

TEST_F(MountTest, WhatAReplicaChangesWhileTheOwnerWalksTheSameStays) {
  for (int gap = 0; gap < 100; ++gap) {
    SCOPED_TRACE(gap);
    LogPair narrow{{.limits = {.outBytes = 1, .messageBytes = 1, .marks = 0}, .turnBytes = 1, .slice = 7}};
    Ptr<ToyBox> const box = Toys::toyBoxFactory("box");
    for (U32 key = 0; key < 5; ++key) box->countsIs(key, 1);
    for (char const* name : {"p", "q", "r"}) box->shelvesIs(name)->drawersIs("d");
    Mounted<ToyBox> const mounted(narrow, box);
    Ptr<ToyBox> const replica = mounted.replica();
    for (U32 key = 100; key < 130; ++key) box->countsIs(key, 1), box->shelvesIs(Vek::Name(std::to_string(key).c_str()));
    for (U32 key = 100; key < 130; ++key) box->countsDel(key), box->shelvesDel(Vek::Name(std::to_string(key).c_str()));
    auto const shelf = replica->shelvesIs("s");
    replica->lidIs("lid");
    for (int steps = 0; steps < gap; ++steps) narrow.step();
    replica->countsIs(2, 1000);
    replica->countsIs(50, 1000);
    replica->countsDel(3);
    replica->shelves("q")->drawers("d")->thingsIs(1000);
    auto const drawer = shelf->drawersIs("d");
    drawer->thingsIs(1);
    replica->lid()->openIs(false);
    narrow.settle();
    EXPECT_EQ(shelf->drawers("d"), drawer);
    EXPECT_EQ(box->shelves("q")->drawers("d")->things(), 1000U);
    EXPECT_EQ((std::array{box->counts(2), box->counts(50), box->counts(3)}), (std::array{1000U, 1000U, 0U}));
    EXPECT_FALSE(box->lid()->open());
    EXPECT_EQ(Vek::digest(*box), Vek::digest(*replica));
  }
}

// A box that both ends may change, in step.
struct BothWays : LeakCheck {
  explicit BothWays(PairOptions const& options = oneRecord()) : pair(options) {}

  void expectEqual() {
    pair.settle();
    EXPECT_EQ(mounted.mount->state(), Dir::inStep);
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
  Ptr<ToyBox> replica = mounted.replica();
};

TEST_F(BothWays, AChildRemovedAndMadeAgainWhileTheLogIsFullIsAnotherAndOneMadeAtBothEndsIsTheOwners) {
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
    shelf->drawersIs("what is left of it is nobody's");
    expectEqual();
  }
  Ptr<Toys::Shelf> const owners = box->shelvesIs("both");
  Ptr<Toys::Shelf> const replicas = replica->shelvesIs("both");
  expectEqual();
  EXPECT_EQ(box->shelves("both"), owners);
  EXPECT_EQ(replica->shelves("both"), replicas);
}

TEST_F(BothWays, AChildWhoseBindIsParkedIsNotSweptAway) {
  box->shelvesIs("old");
  expectEqual();
  stall(pair.readerTransport(), *replica);
  Ptr<Toys::Shelf> const made = replica->shelvesIs("new");
  replica->countsIs(7, 7);
  box->vekNboAttrLogSa(pair.owner().out())->oweEverything();
  for (int steps = 0; steps < 100; ++steps) pair.step();
  EXPECT_EQ(replica->shelves("new"), made);
  letGo();
  expectEqual();
  EXPECT_EQ(replica->shelves("new"), made);
  EXPECT_EQ(box->counts(7), 7U);
  EXPECT_NE(box->shelves("old"), nullptr);
}

struct FewEntities : BothWays {
  FewEntities() : BothWays({.limits = {.entities = 3}}) {}
};

TEST_F(FewEntities, ChildrenThatWaitDoNotWakeEachOtherAndComeAsTheyAreWhenAnIdIsFree) {
  for (char const* name : {"a", "b"}) box->shelvesIs(name);
  for (char const* name : {"a", "b"}) box->shelves(name)->drawersIs("d");
  pair.settle();
  box->shelves("b")->drawers("d")->thingsIs(7);
  box->shelvesDel("a");
  expectEqual();
  EXPECT_EQ(replica->shelves("b")->drawers("d")->things(), 7U);
  box->shelvesDel("b"), box->shelvesIs("c"), box->lidIs("lid");
  expectEqual();
  box->lidIs("another in its place");
  expectEqual();
  for (char const* name : {"d", "e", "f"}) box->shelvesIs(name);
  pair.settle();
  box->countsIs(1, 10), box->shelvesDel("c");
  pair.settle();
  EXPECT_EQ(replica->counts(1), 10U) << "it does not wait with them";
  EXPECT_EQ(replica->shelves("c"), nullptr);
}

TEST_F(FewEntities, ATreeOfMoreNeverComesInStepAndTheReasonIsTold) {
  pair.cut();
  for (char const* name : {"a", "b", "c"}) box->shelvesIs(name);
  pair.connect();
  mounted.bind(pair, box);
  for (int steps = 0; steps < 20; ++steps) pair.step();
  EXPECT_EQ(mounted.mount->state(), Dir::stale);
  EXPECT_EQ(pair.owner().closeReason(), "box.shelves: the peer takes no more than 3 entities");
}

// What a change costs that everybody has to pay for: no memory in step, one record for a burst where the log is short.
struct CostTest : LeakCheck {
  LogPair pair;
  Ptr<ToyBox> box = Toys::toyBoxFactory("box");
  Ptr<Toy> toy = Toys::toyFactory("toy");
  Mounted<ToyBox> mountedBox{pair, box, Access::readOnly};
  Mounted<Toy> mountedToy{pair, toy, Access::readOnly};
};

TEST_F(CostTest, ChangeInStepAllocatesNothingFromTheSetterToTheReplica) {
  auto const changeAll = [this](U32 value) {
    toy->sizeIs(value);
    toy->brokenIs(value % 2 == 0);
    toy->placeIs({value, 0.5, {}});
    box->countsIs(1, value);
    box->wantedIs(7, value % 2 == 0);
    for (int i = 0; i < 4; ++i) pair.step();
  };
  for (U32 const value : {1U, 2U}) changeAll(value);
  int const before = allocationCount();
  for (U32 value = 3; value < 1000; ++value) changeAll(value);
  EXPECT_EQ(allocationCount(), before);
  EXPECT_EQ(mountedToy.replica()->size(), 999U);
}

TEST_F(CostTest, BurstWhileTheLogIsShortCostsOneRecordOfTheLastValue) {
  pair.ownerTransport().capacityIs(0);
  while (pair.owner().out()->hasSufficientBuffer()) toy->sizeInc(1);
  auto const records = pair.owner().out()->records();
  for (U32 value = 0; value < 1'000'000; ++value) toy->sizeIs(value);
  EXPECT_EQ(pair.owner().out()->records(), records);
  pair.ownerTransport().capacityIs(std::numeric_limits<std::size_t>::max());
  pair.settle();
  EXPECT_EQ(pair.owner().out()->records(), records + 1);
  EXPECT_EQ(mountedToy.replica()->size(), 999'999U);
}

}  // namespace
}  // namespace LogTest
