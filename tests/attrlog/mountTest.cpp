// Exports and mounts: an entity is announced, comes in step, follows its owner, and survives a cut.
#include "tests/attrlog/LogPair.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Listener.h"

#include "dornl3/generic/Digest.h"

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

TEST_F(MountTest, ScalarsReachTheReplicaAndChangesFollow) {
  toy->sizeIs(7);
  toy->placeIs({3, 0.5, "shelf"});
  mounted(Access::readOnly, Access::readOnly);
  ASSERT_EQ(mount->state(), Dir::inStep);
  EXPECT_EQ(replica()->size(), 7U);
  EXPECT_EQ(replica()->place(), toy->place());

  Calls calls;
  auto const listener = Vek::make<ToyListener>(calls, "L");
  listener->notifierIs(replica());
  listener->isRegisteredNotifieeIs(true);
  toy->brokenIs(true);
  toy->sizeInc(2);
  pair.settle();
  EXPECT_EQ(calls, (Calls{"L broken", "L size"}));
  EXPECT_EQ(replica()->size(), 9U);
  listener->notifierIs(nullptr);
}

TEST_F(MountTest, ReadOnlyReplicaRefusesAndStoresNothing) {
  mounted(Access::readOnly, Access::readOnly);
  auto const writes = replica()->writeCount();
  EXPECT_THROW(replica()->sizeIs(4), Vek::ReadOnlyException);
  EXPECT_EQ(replica()->size(), 0U);
  EXPECT_EQ(replica()->writeCount(), writes);
}

TEST_F(MountTest, WritableReplicaWritesBack) {
  mounted(Access::writable, Access::writable);
  replica()->sizeIs(4);
  pair.settle();
  EXPECT_EQ(toy->size(), 4U);
}

TEST_F(MountTest, WritesThatCrossEndAsTheOwnerHasThem) {
  mounted(Access::writable, Access::writable);
  replica()->sizeIs(4);
  toy->sizeIs(5);
  pair.settle();
  EXPECT_EQ(toy->size(), replica()->size());
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

TEST_F(MountTest, KeysComeChangeAndGo) {
  Vek::Ptr<ToyBox> const box = Toys::toyBoxFactory("box");
  box->countsIs(1, 10);
  box->countsIs(2, 20);
  box->wantedIs(7, true);
  box->notesIs("a", {1, 2, "x"});
  pair.owner().exports().exportIs(box, Access::readOnly);
  auto const boxMount = Vek::make<Mount>("box", *ToyBox::_fwkType(), Access::readOnly, dir);
  pair.reader().mounts().mountIs(boxMount);
  pair.settle();
  auto const copy = Vek::ptrCast<ToyBox>(dir->entity("box"));
  ASSERT_TRUE(copy);
  EXPECT_EQ(boxMount->state(), Dir::inStep);
  EXPECT_EQ(copy->counts(2), 20U);
  EXPECT_TRUE(copy->wanted(7));
  EXPECT_EQ(copy->notes("a"), box->notes("a"));
  box->countsDel(1);
  box->wantedIs(8, true);
  pair.settle();
  EXPECT_EQ(copy->countsCount(), 1U);
  EXPECT_TRUE(copy->wanted(8));
  pair.cut();
  box->wantedDelAll();
  box->notesIs("b", {});
  pair.connect();
  pair.owner().exports().exportIs(box, Access::readOnly);
  pair.reader().mounts().mountIs(boxMount);
  pair.settle();
  EXPECT_EQ(copy->wantedCount(), 0U);
  EXPECT_EQ(copy->notesCount(), 2U);
}

}  // namespace
}  // namespace LogTest
