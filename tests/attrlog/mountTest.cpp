// Exports and mounts: an entity is announced, comes in step, follows its owner, and survives a cut.
#include "dornl3/generic/Digest.h"
#include "tests/attrlog/LogPair.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Listener.h"

namespace LogTest {
namespace {

using Toys::Calls;
using Toys::Toy;
using Toys::ToyBox;
using Toys::ToyListener;
using Vek::Dir;

struct MountTest : LeakCheck {
  LogPair pair;
  Vek::Ptr<Toy> toy = Toys::toyFactory("toy");
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
  toy->sizeIs(5);
  pair.settle();
  EXPECT_EQ(calls, (Calls{"L size"}));
  EXPECT_FALSE(replica->broken());
}

TEST_F(MountTest, IsInStepWhenAllChildrenAreAndGuardsThoseToo) {
  PairOptions options;
  options.turnBytes = 50;
  LogPair narrow(options);
  Vek::Ptr<ToyBox> const box = Toys::toyBoxFactory("box");
  Mounted<ToyBox> mounted(narrow, box, Access::readOnly);
  narrow.connect();
  auto const shelf = box->shelvesIs("shelf");  // which takes longer than all else
  for (char label = 'a'; label < 'z'; ++label) shelf->drawersIs(std::string_view(&label, 1))->thingsIs(3);
  mounted.bind(narrow, box);
  for (int steps = 0; steps < 10000 && mounted.mount->state() != Dir::inStep; ++steps) narrow.step();
  auto const replica = mounted.replica();
  EXPECT_EQ(Vek::digest(*replica), Vek::digest(*box));
  box->lidIs("comes later");
  narrow.settle();
  EXPECT_THROW(replica->lid()->openIs(false), Vek::ReadOnlyException);
  EXPECT_THROW(replica->shelves("shelf")->drawersDel("d"), Vek::ReadOnlyException);
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
  Mounted<Toy> const mounted(pair, toy, Access::readOnly);
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
  PairOptions options;
  options.limits.recordBytes = 1024;
  LogPair narrow(options);
  toy->placeIs({1, 2, Vek::String8(std::string_view(std::string(2000, 'x')))});
  Mounted<Toy> const mounted(narrow, toy, Access::readOnly);
  EXPECT_EQ(mounted.mount->state(), Dir::inStep);
  ASSERT_EQ(narrow.owner().demuxer().notReplicated().size(), 1U);
  EXPECT_EQ(narrow.owner().demuxer().notReplicated()[0], "toy.place");
  toy->placeIs({1, 2, "short"});
  narrow.settle();
  EXPECT_TRUE(narrow.owner().demuxer().notReplicated().empty());
  EXPECT_EQ(mounted.replica()->place(), toy->place());
}

}  // namespace
}  // namespace LogTest
