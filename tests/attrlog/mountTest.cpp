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
  Vek::Ptr<Dir> dir = Vek::make<Dir>();
  Vek::Ptr<Mount> mount;

  Vek::Ptr<Mount> mounted(Access access, Access allowed) {
    pair.owner().exports().exportIs(toy, allowed);
    mount = Vek::make<Mount>("toy", *Toy::_fwkType(), access, dir);
    pair.reader().mounts().mountIs(mount);
    pair.settle();
    return mount;
  }
  Vek::Ptr<Toy> replica() { return Vek::ptrCast<Toy>(dir->entity("toy")); }
};

TEST_F(MountTest, ReadOnlyReplicaRefusesAndStoresNothing) {
  mounted(Access::readOnly, Access::readOnly);
  auto const writes = replica()->writeCount();
  EXPECT_THROW(replica()->sizeIs(4), Vek::ReadOnlyException);
  EXPECT_EQ(replica()->size(), 0U);
  EXPECT_EQ(replica()->writeCount(), writes);

  Calls calls;  // nor does it from a reactor that hears of the owner's change
  auto const listener = Toys::listen<ToyListener>(replica(), calls, "L");
  listener->nextDo({[this] { EXPECT_THROW(replica()->brokenIs(true), Vek::ReadOnlyException); }});
  toy->sizeIs(5);
  pair.settle();
  EXPECT_EQ(calls, (Calls{"L size"}));
  EXPECT_FALSE(replica()->broken());
}

TEST_F(MountTest, CutAndBoundAgainTellsOnlyWhatIsDifferent) {
  toy->sizeIs(7);
  mounted(Access::readOnly, Access::readOnly);
  Vek::Ptr<Toy> const before = replica();
  Calls calls;
  auto const listener = Vek::make<ToyListener>(calls, "L");
  listener->notifierIs(before);
  listener->isRegisteredNotifieeIs(true);
  pair.cut();
  EXPECT_EQ(mount->state(), Dir::stale);
  toy->brokenIs(true);
  pair.connect();
  mounted(Access::readOnly, Access::readOnly);
  EXPECT_EQ(replica(), before);
  EXPECT_EQ(mount->state(), Dir::inStep);
  EXPECT_EQ(calls, (Calls{"L broken"}));
  listener->notifierIs(nullptr);
}

TEST_F(MountTest, IsInStepWhenAllChildrenAreAndGuardsThoseToo) {
  PairOptions options;
  options.turnBytes = 50;
  LogPair narrow(options);
  Vek::Ptr<ToyBox> const box = Toys::toyBoxFactory("box");
  auto const shelf = box->shelvesIs("shelf");  // which takes longer than all else
  for (char label = 'a'; label < 'z'; ++label) shelf->drawersIs(std::string_view(&label, 1))->thingsIs(3);
  narrow.owner().exports().exportIs(box, Access::readOnly);
  mount = Vek::make<Mount>("box", *ToyBox::_fwkType(), Access::readOnly, dir);
  narrow.reader().mounts().mountIs(mount);
  for (int steps = 0; steps < 10000 && mount->state() != Dir::inStep; ++steps) narrow.step();
  ASSERT_TRUE(mount->entity());
  EXPECT_EQ(Vek::digest(*mount->entity()), Vek::digest(*box));
  box->lidIs("comes later");
  narrow.settle();
  auto const copy = Vek::ptrCast<ToyBox>(dir->entity("box"));
  EXPECT_THROW(copy->lid()->openIs(false), Vek::ReadOnlyException);
  EXPECT_THROW(copy->shelves("shelf")->drawersDel("d"), Vek::ReadOnlyException);
  EXPECT_EQ(Vek::digest(*copy), Vek::digest(*box)) << "nothing was stored";
}

// What a mount may come to, one after the other.
TEST_F(MountTest, RefusalsSayWhy) {
  mounted(Access::writable, Access::readOnly);
  EXPECT_EQ(mount->refusal(), "it may be mounted read-only");
  EXPECT_THROW(pair.reader().mounts().mountIs(mount), Vek::InternalException);
  pair.reader().mounts().mountDel(*mount);
  auto const ofAnotherType = Vek::make<Mount>("toy", *ToyBox::_fwkType(), Access::readOnly, dir);
  pair.reader().mounts().mountIs(ofAnotherType);
  pair.settle();
  EXPECT_EQ(ofAnotherType->refusal(), "it is a Toys::Toy, not a Toys::ToyBox");
  EXPECT_EQ(ofAnotherType->state(), Dir::neverSynced);
}

TEST_F(MountTest, IsExportedNoMoreWritableThanItIsMounted) {
  mounted(Access::readOnly, Access::readOnly);
  LogPair below;
  below.owner().exports().exportIs(replica(), Access::writable);
  auto const writable = Vek::make<Mount>("toy", *Toy::_fwkType(), Access::writable, Vek::make<Dir>());
  below.reader().mounts().mountIs(writable);
  below.settle();
  EXPECT_EQ(writable->refusal(), "it may be mounted read-only");
}

TEST_F(MountTest, AnEntityThatIsTakenBackOrDiesIsStaleWhereItWasMounted) {
  mounted(Access::readOnly, Access::readOnly);
  toy = nullptr;
  pair.owner().exports().exportDel("toy");
  pair.settle();
  EXPECT_EQ(mount->state(), Dir::stale);
  EXPECT_TRUE(replica());
  EXPECT_THROW(replica()->sizeIs(1), Vek::ReadOnlyException);
}

TEST_F(MountTest, SilenceForThreeHeartbeatsEndsAConnection) {
  mounted(Access::readOnly, Access::readOnly);
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
  EXPECT_EQ(mount->state(), Dir::stale);
}

// In the middle of a chain: what it mounts is stale while it has no owner, and takes no changes from below.
TEST_F(MountTest, AChainKnowsThatItsBeginningIsCut) {
  mounted(Access::writable, Access::writable);
  LogPair below;
  Vek::Ptr<Dir> const belowDir = Vek::make<Dir>();
  below.owner().exports().exportIs(replica(), Access::writable);
  auto const belowMount = Vek::make<Mount>("toy", *Toy::_fwkType(), Access::writable, belowDir);
  below.reader().mounts().mountIs(belowMount);
  below.settle();
  ASSERT_EQ(belowMount->state(), Dir::inStep);
  auto const end = Vek::ptrCast<Toy>(belowDir->entity("toy"));
  end->sizeIs(3);
  below.settle();
  pair.settle();
  EXPECT_EQ(toy->size(), 3U);
  pair.cut();
  below.settle();
  EXPECT_EQ(belowMount->state(), Dir::stale);
  EXPECT_THROW(end->sizeIs(4), Vek::ReadOnlyException);
  pair.connect();
  mounted(Access::writable, Access::writable);
  below.settle();
  EXPECT_EQ(belowMount->state(), Dir::inStep);
}

TEST_F(MountTest, WhatIsTooLongForThePeerIsNamedAndTheRestGoesOn) {
  PairOptions options;
  options.limits.recordBytes = 1024;
  LogPair narrow(options);
  toy->placeIs({1, 2, Vek::String8(std::string_view(std::string(2000, 'x')))});
  narrow.owner().exports().exportIs(toy, Access::readOnly);
  mount = Vek::make<Mount>("toy", *Toy::_fwkType(), Access::readOnly, dir);
  narrow.reader().mounts().mountIs(mount);
  narrow.settle();
  EXPECT_EQ(mount->state(), Dir::inStep);
  ASSERT_EQ(narrow.owner().demuxer().notReplicated().size(), 1U);
  EXPECT_EQ(narrow.owner().demuxer().notReplicated()[0], "toy.place");
  toy->placeIs({1, 2, "short"});
  narrow.settle();
  EXPECT_TRUE(narrow.owner().demuxer().notReplicated().empty());
  EXPECT_EQ(replica()->place(), toy->place());
}

}  // namespace
}  // namespace LogTest
