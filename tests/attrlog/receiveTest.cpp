// What a record that comes in does to its entity, and what stands as before where it does nothing or fails.
#include "tests/attrlog/BareLog.h"

namespace LogTest {
namespace {

using Toys::Calls;

struct Receiving : BareToys {
  Receiving() : BareToys(PairOptions{}) {}

  Ptr<Toy::VekNboAttrLogSa> toys = bound(toy);
  Ptr<ToyBox::VekNboAttrLogSa> boxes = bound(box);

  template <class Error>
  std::string complaint(Sa& adapter, int attr, std::string_view digits, bool resend = false) {
    try {
      receive(adapter, attr, digits, resend);
    } catch (Error const& error) {
      return error.what();
    }
    return "none";
  }
};

TEST_F(Receiving, RefusesASecondRecordInTheMiddleOfOne) {
  toys->flagsIs(Sa::entityReactorActive, true);
  EXPECT_EQ(complaint<Vek::InternalException>(*toys, 259, "01"), "entity reactor is already active");
  EXPECT_TRUE(toys->hasFlag(Sa::entityReactorActive));
  EXPECT_FALSE(toy->broken());
}

TEST_F(Receiving, RefusesAPeerThatMayOnlyRead) {
  toys->flagsIs(Sa::readOnlyRemote, true);
  std::string const refusal =
      "write-update from readonly proxy: " + std::string(toy->fullName().view()) + " peerName: reader";
  EXPECT_EQ(complaint<Vek::InternalException>(*toys, 259, "01"), refusal);
  EXPECT_EQ(complaint<Vek::InternalException>(*toys, 135, "00000001"), refusal);
  EXPECT_FALSE(toys->hasFlag(Sa::entityReactorActive));
  EXPECT_FALSE(toy->broken());
  receive(*toys, 259, "01", true);
  EXPECT_EQ(said(), (Records{"259:00"}));
}

TEST_F(Receiving, TellsAllButTheLogThatItCameFrom) {
  LogPair other;
  other.settle();
  LogTest::said(other.owner());
  bound(toy, 0, other.owner());
  auto const ear = Toys::listen<Toys::ToyListener>(toy, calls, "L");
  for (int times = 0; times < 2; ++times) receive(*toys, 258, "0000000000000007");
  EXPECT_EQ(calls, (Calls{"L size"}));
  EXPECT_EQ(said(), Records{});
  EXPECT_EQ(LogTest::said(other.owner()), (Records{"258:0000000000000007"}));
  toy->sizeIs(8);
  EXPECT_EQ(said(), (Records{"258:0000000000000008"})) << "the next change is not the record's";
}

TEST_F(Receiving, PassesOverAndSendsWhatStands) {
  toy->sizeIs(3);
  box->countsIs(1, 0x10);
  box->shelvesIs("s");
  said();
  struct {
    Sa& adapter;
    int attr;
    std::string digits;
    Records records;
  } const cases[] = {
      {*toys, 258, "0000000000000007", {"258:0000000000000003"}},
      {*toys, 261, "0161", {"261~:01"}},
      {*toys, 135, "00000002", {}},
      {*boxes, 258, "0000000100000077", {"258~:0000000100000010"}},
      {*boxes, -258, "00000001", {"258~:0000000100000010"}},
      {*boxes, 258, "0000000900000077", {"-258~:00000009"}},
      {*boxes, 265, textHex("lid") + peersId, {"-265:"}},
      {*boxes, -265, "", {"-265:"}},
      {*boxes, 266, textHex("t") + peersId, {"-266~:" + textHex("t")}},
      {*boxes, -266, textHex("s"), {"266~#151:" + textHex("s") + "0100019300000007"}},
      {*boxes, 144, "000800000000010a00000000" + textHex("t") + peersId, {"-266~:" + textHex("t")}},
  };
  for (auto const& each : cases) {
    SCOPED_TRACE(each.attr);
    receive(each.adapter, each.attr, each.digits, true);
    EXPECT_EQ(said(), each.records);
    EXPECT_FALSE(each.adapter.hasFlag(Sa::entityReactorActive));
  }
  EXPECT_EQ(toy->size(), 3U);
  EXPECT_EQ(toys->syncMode(), Sa::noSync);
  EXPECT_EQ(box->countsCount(), 1U);
  EXPECT_EQ(box->lid(), nullptr);
}

TEST_F(Receiving, WrappersOfChildRecords) {
  struct {
    char const* what;
    int attr;
    std::string digits;
    U32 shelves, passedOver;
  } const cases[] = {
      {"a child", 144, "000800000000010a00000000" + textHex("s") + peersId, 1, 0},
      {"gone", -144, "00080000fffffef6" + textHex("s"), 0, 0},
      {"behind another number, the id after a gap", 144,
       "000c0018000001020000010a00000000" + textHex("s") + "ffffff" + peersId, 1, 0},
      {"gone, in the form of one that is not", 144, "00080000fffffef6" + textHex("s"), 0, 0},
      {"not of this type", 144, "000800000000010200000000" + textHex("s") + peersId, 0, 1},
      {"not of this type, gone", -144, "00080000fffffefe" + textHex("s"), 0, 1},
      {"of none", 144, "0004000000000000", 0, 1},
  };
  for (auto const& each : cases) {
    SCOPED_TRACE(each.what);
    U32 const before = static_cast<U32>(log().demuxer().skipped());
    receive(*boxes, each.attr, each.digits);
    EXPECT_EQ(box->shelvesCount(), each.shelves);
    EXPECT_EQ(log().demuxer().skipped() - before, each.passedOver);
    EXPECT_FALSE(boxes->hasFlag(Sa::entityReactorActive));
  }
}

// The id of the adapter of a child, and whether it has been told to be stale.
std::string bindingOf(Vek::Entity& child, Connection& at) {
  auto const adapter = child.vekNboAttrLogSa(Ptr<Vek::NboAttrLog::Out const>(at.out()));
  if (!adapter) return "none";
  std::string id(8, '\0');
  adapter->entityId().write(id.data());
  return hex(id) + (adapter->hasFlag(Sa::resyncStale) ? " stale" : "");
}

TEST_F(Receiving, ChildrenTakeTheirIdAndMakeWayForOthers) {
  auto const ear = Toys::listen<Toys::BoxListener>(box, calls, "L");
  struct {
    char const* what;
    bool stale;
    char const* id;
    bool isAnother;
    int told;
  } const cases[] = {
      {"new", false, peersId, true, 1},
      {"the same again", false, peersId, false, 0},
      {"another of that name", false, othersId, true, 2},
      {"not seen since a walk began", true, peersId, false, 0},
  };
  for (int const attr : {266, 265}) {
    Ptr<Vek::Entity> before;
    for (auto const& each : cases) {
      SCOPED_TRACE(std::to_string(attr) + ' ' + each.what);
      if (before)
        before->vekNboAttrLogSa(Ptr<Vek::NboAttrLog::Out const>(log().out()))->flagsIs(Sa::resyncStale, each.stale);
      if (before) before->vekMarkedForDeletionIs(attr == 266);
      calls.clear();
      receive(*boxes, attr, textHex("s") + each.id);
      Ptr<Vek::Entity> now;
      if (attr == 266) now = box->shelves("s");
      if (attr == 265) now = box->lid();
      ASSERT_NE(now, nullptr);
      EXPECT_EQ(now != before, each.isAnother);
      EXPECT_EQ(bindingOf(*now, log()), each.id);
      EXPECT_FALSE(now->vekMarkedForDeletion());
      EXPECT_EQ(calls.size(), static_cast<std::size_t>(each.told));
      EXPECT_FALSE(boxes->hasFlag(Sa::entityReactorActive));
      EXPECT_TRUE(log().in()->isAtLimit()) << "the id is read";
      before = now;
    }
    receive(*boxes, attr == 266 ? -266 : -265, attr == 266 ? textHex("s") : "");
  }
  EXPECT_EQ(said(), Records{}) << "nothing of it goes back";
}

TEST_F(Receiving, ARelayOfAChildOnALogWhereItsParentHasNoIdYet) {
  auto const other = Toys::toyBoxFactory("other");
  auto const adapter = other->vekNboAttrLogSaIs({}, 1, log().out(), nullptr);
  std::string id(8, '\0');
  adapter->entityId().write(id.data());
  receive(*adapter, 266, textHex("s") + peersId);
  EXPECT_EQ(hex(payload()), textHex("s") + hex(id));
}

TEST_F(Receiving, AChannelHearsOfChildrenAndModes) {
  using Constrainer = Vek::MsgChannel::Constrainer;
  struct Ear : Toys::BoxListener {
    using BoxListener::BoxListener;
    void onShelves(Vek::Name) override { heard(); }
    void onLid() override { heard(); }
    void heard() {
      id = Vek::MsgChannel::constrainer()->deserializingEid();
      parent = Vek::MsgChannel::constrainer()->deserializingInParent();
    }
    EntityId id;
    Ptr<Vek::Entity> parent;
  };
  auto const channel = Vek::make<Constrainer::VekEntry>();
  auto const served = Toys::toyBoxFactory("served");
  auto const adapter = served->vekNboAttrLogSaIs({}, 1, log().out(), channel.ptr());
  adapter->doAssignEntityId();
  auto const ear = Toys::listen<Ear>(served, calls, "L");
  Constrainer constrainer;
  constrainer.deserializingEidIs(EntityId(77));
  Vek::MsgChannel::constrainerIs(&constrainer);
  struct {
    int attr;
    std::string digits;
    U32 mode;
  } const cases[] = {
      {266, textHex("s") + peersId, 1},
      {135, "00000002", 3},
      {265, textHex("l") + othersId, 1},
      {258, "0000000100000001", 0},
  };
  for (auto const& each : cases) {
    channel->modeIs(0);
    receive(*adapter, each.attr, each.digits);
    EXPECT_EQ(channel->mode(), each.mode) << each.attr;
    EXPECT_TRUE(each.mode != 1 || ear->parent == served);
  }
  Vek::MsgChannel::constrainerIs(nullptr);
  EXPECT_EQ(ear->id.number(), 0x0000020000000005U) << "that of the last child";
  EXPECT_EQ(constrainer.deserializingEid().number(), 77U);
  EXPECT_EQ(constrainer.deserializingInParent(), nullptr);
  ear->parent = nullptr;
}

TEST_F(Receiving, AModeReachesSiblingsOfTheSameIdAndADirectory) {
  LogPair other;
  other.settle();
  auto const dir = Vek::make<Vek::Dir>();
  auto const entry = dir->entryIs(box);
  auto const distinct = bound(toy, 0, other.owner());
  auto const sibling = bound(box, 0, other.owner());
  ASSERT_EQ(sibling->entityId(), boxes->entityId()) << "both ends are made alike";
  box->countsIs(1, 1);
  entry->stateIs(Vek::Dir::syncing);
  for (char const* mode : {"00000002", "00000001"}) {
    receive(*boxes, 135, mode);
    EXPECT_EQ(sibling->syncMode(), boxes->syncMode());
    EXPECT_FALSE(sibling->hasFlag(Sa::syncModeRelay) || boxes->hasFlag(Sa::entityReactorActive));
    EXPECT_EQ(entry->state(), *mode == '0' && boxes->syncMode() == Sa::inStep ? Vek::Dir::inStep : Vek::Dir::syncing);
    EXPECT_EQ(box->countsCount(), boxes->syncMode() == Sa::inStep ? 0U : 1U);
  }
  EXPECT_EQ(distinct->syncMode(), Sa::noSync);
  entry->stateIs(Vek::Dir::stale);
  dir->entryIs(Toys::toyBoxFactory("box"));
  receive(*boxes, 135, "00000001");
  EXPECT_EQ(entry->state(), Vek::Dir::stale) << "it stands there no longer";
  dir->entryDel("box");
}

TEST_F(Receiving, ATextInPiecesIsOneChange) {
  auto const ear = Toys::listen<Toys::ToyListener>(toy, calls, "L");
  auto const flowIn = [this] { return log().demuxer().flowIn(toys->entityId()); };
  receive(*toys, 261, "006162");
  receive(*toys, 261, "0063");
  EXPECT_EQ(calls, Calls{});
  EXPECT_NE(flowIn(), nullptr);
  receive(*toys, 261, "0164");
  EXPECT_EQ(toy->text(), "abcd");
  EXPECT_EQ(calls, (Calls{"L text"}));
  EXPECT_EQ(flowIn(), nullptr);
  receive(*toys, 261, "");
  EXPECT_EQ(toy->text(), "");

  // A marker that opened its own flow-in: the text ends that too, or the attribute would stay deaf.
  toys->handleAttrTransaction(261, Sa::beginMarker, 0);
  receive(*toys, 261, "0161");
  EXPECT_EQ(flowIn(), nullptr);
  toy->textIs("b");
  EXPECT_EQ(said(), (Records{"261~:0162"}));

  for (auto const type : {Sa::abortMarker, Sa::endMarker}) {
    receive(*toys, 261, "007a");
    toys->handleAttrTransaction(261, type, 0);
    EXPECT_EQ(flowIn(), nullptr);
    EXPECT_EQ(toy->text(), "b");
  }
}

}  // namespace
}  // namespace LogTest
