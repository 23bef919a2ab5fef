// How an entity is bound to a log, found there, switched off and on, and let go.
#include "tests/attrlog/BareLog.h"

#include <climits>

namespace LogTest {
namespace {

struct Binding : BareToys {};

TEST_F(Binding, AgainWithOtherFlagsChangesThoseOfACallerAlone) {
  U32 const own = Sa::noFlowOut | Sa::handlingScheduledFlowOut | Sa::logEnabled;
  auto const adapter = bound(toy, Sa::readOnlyRemote);
  adapter->flagsIs(Sa::handlingScheduledFlowOut, true);
  for (U32 const flags : {Sa::readOnlyRemote, Sa::flowOutForced, 0x05700000U, 0U}) {
    EXPECT_EQ(bound(toy, flags), adapter);
    EXPECT_EQ(adapter->flags(), own | (flags & Sa::Vek_BitSet::notificationBitMask()));
  }
  EXPECT_EQ(said(), Records{});
}

TEST_F(Binding, IsFoundByItsLogAndByItsId) {
  LogPair other;
  LogPair third;
  auto const find = [this](Connection* at) {
    Ptr<Vek::NboAttrLog::Out const> out;
    if (at != nullptr) out = at->out();
    auto const found = toy->vekNboAttrLogSa(out);
    EXPECT_EQ(static_cast<Toy const&>(*toy).vekNboAttrLogSa(out), found);
    return found;
  };
  EXPECT_EQ(find(nullptr), nullptr);
  auto const unopened = toy->vekNboAttrLogSaIs({}, 1, other.owner().out(), nullptr);
  EXPECT_EQ(find(nullptr), unopened) << "it has no log yet";
  EXPECT_EQ(find(&log()), nullptr);
  other.settle();
  EXPECT_EQ(find(nullptr), nullptr) << "it has no id";
  unopened->doAssignEntityId();
  EXPECT_EQ(find(nullptr), unopened);
  EXPECT_EQ(find(&other.owner()), unopened);

  auto const here = bound(toy);
  EXPECT_EQ(find(&log()), here);
  EXPECT_EQ(find(&other.owner()), unopened);
  // The id that it has on another log is somebody else's on a third: that one is passed over.
  third.settle();
  auto const stranger = bound(Toys::toyFactory("stranger"), 0, third.owner());
  stranger->doEntityIdIs(here->entityId(), third.owner().demuxer(), true);
  EXPECT_EQ(find(&third.owner()), nullptr);
  auto const last = bound(toy, 0, third.owner());
  EXPECT_EQ(find(&third.owner()), last);

  Ptr<Vek::NboAttrLog::Out const> const gone = LogPair().owner().out();
  EXPECT_EQ(toy->vekNboAttrLogSa(gone), nullptr);
}

TEST_F(Binding, SharedByAChannelIsFoundFromItsSibling) {
  LogPair other;
  other.settle();
  Ptr<Vek::MsgChannel::Constrainer::VekEntry> const channel = Vek::make<Vek::MsgChannel::Constrainer::VekEntry>();
  auto const one = toy->vekNboAttrLogSaIs({}, 1, log().out(), channel.ptr());
  auto const two = toy->vekNboAttrLogSaIs({}, 1, other.owner().out(), channel.ptr());
  one->doAssignEntityId();
  EXPECT_EQ(toy->vekNboAttrLogSaForMsgChannel(one), nullptr) << "the sibling has no id";
  two->doAssignEntityId();
  EXPECT_EQ(toy->vekNboAttrLogSaForMsgChannel(one), two);
  EXPECT_EQ(toy->vekNboAttrLogSaForMsgChannel(two), one);
}

TEST_F(Binding, IsTakenFromItsDemuxer) {
  auto const adapter = bound(toy);
  adapter->doThis();
  EXPECT_EQ(box->vekNboAttrLogSaDel(log().out()), nullptr);
  EXPECT_EQ(toy->vekNboAttrLogSaDel(nullptr), nullptr);
  EXPECT_EQ(toy->vekNboAttrLogSaDel(log().out()), adapter);
  EXPECT_EQ(log().demuxer().adapters().find(adapter->entityId()), nullptr);
  EXPECT_TRUE(adapter->hasFlag(Sa::noFlowOut));
  EXPECT_EQ(adapter->flowOut(), nullptr);
}

TEST_F(Binding, SwitchedOffAndOnHearsAsItDidBefore) {
  auto const adapter = bound(toy);
  Vek::PtrInterface::NotifieeConst& reactor = *adapter->reactorAdapter();
  struct {
    char const* what;
    bool registered;
    std::function<void(bool)> on;
    bool bothHalves;
  } const ways[] = {
      {"by the adapter", true, [&](bool on) { adapter->hasNotificationActiveIs(on); }, true},
      {"by its reactor", true, [&](bool on) { reactor.hasNotificationActiveIs(on); }, true},
      {"marked and revived", true, [&](bool on) { adapter->vekDoZombieReactors(!on); }, false},
      {"off the list before", false, [&](bool on) { reactor.hasNotificationActiveIs(on); }, false},
  };
  for (auto const& way : ways) {
    SCOPED_TRACE(way.what);
    reactor.isRegisteredNotifieeIs(way.registered);
    way.on(false);
    EXPECT_FALSE(reactor.hasNotificationActive());
    EXPECT_FALSE(adapter->hasNotificationActive());
    toy->sizeInc(1);
    EXPECT_EQ(said(), Records{});
    way.on(true);
    EXPECT_TRUE(reactor.hasNotificationActive());
    EXPECT_TRUE(adapter->hasNotificationActive() || !way.bothHalves);
    EXPECT_EQ(reactor.isRegisteredNotifiee(), way.registered);
    toy->sizeInc(1);
    EXPECT_EQ(said().size(), way.registered ? 1U : 0U);
  }
}

TEST_F(Binding, ReportsAnAttributeByItsNumber) {
  box->countsIs(3, 9);
  box->lidIs("lid");
  box->shelvesIs("s");
  bound(toy);
  bound(box);
  U32 const kind = 3;
  U32 const missing = 4;
  Vek::Name const shelf("s");
  struct {
    Vek::Entity& entity;
    int number;
    void const* key;
    Records records;
  } const cases[] = {
      {*toy, -258, nullptr, {}},
      {*toy, 261, nullptr, {"261~:01"}},
      {*toy, 135, nullptr, {}},
      {*toy, INT_MAX, nullptr, {}},
      {*toy, INT_MIN, nullptr, {}},
      {*box, -258, &kind, {"258~:0000000300000009"}},
      {*box, -260, &missing, {"-260:00000004"}},
      {*box, 264, nullptr, {}},
      {*box, 265, nullptr, {"265~#151:" + textHex("lid") + "0100019300000007"}},
      {*box, -265, nullptr, {}},
      {*box, -266, &shelf, {"266~#151:" + textHex("s") + "0100019300000009"}},
  };
  for (auto const& each : cases) {
    SCOPED_TRACE(each.number);
    each.entity.vekNboAttrLogSa(Ptr<Vek::NboAttrLog::Out const>(log().out()))->doNotification(each.number, each.key);
    EXPECT_EQ(said(), each.records);
  }
}

TEST_F(Binding, SwitchedOffOrMarkedLetsAnEntityGoThatEnds) {
  for (bool const isMarked : {false, true}) {
    Ptr<Toy> brief = Toys::toyFactory("brief");
    Ptr<Sa> const adapter = bound(brief, Sa::weakAdapter);
    adapter->doThis();
    isMarked ? adapter->vekDoZombieReactors(true) : adapter->hasNotificationActiveIs(false);
    brief = nullptr;
    EXPECT_EQ(adapter->vekNotifierEntity(), nullptr);
    pair.settle();
    adapter->doNotification(258, nullptr);
    EXPECT_EQ(said(), Records{});
  }
}

}  // namespace
}  // namespace LogTest
