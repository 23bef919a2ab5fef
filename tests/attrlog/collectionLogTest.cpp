// How collections and children go out: the walk between its markers, keys that change meanwhile, children without an
// id.
#include "tests/attrlog/BareLog.h"

namespace LogTest {
namespace {

using Vek::NboAttrLog::FlowOut;

std::string const begins = "137:000001020000000000000000";
std::string const ends = "137:000001020000000200000000";

struct Collections : BareToys {
  explicit Collections(PairOptions const& options = oneRecord()) : BareToys(options) {}

  Ptr<ToyBox::VekNboAttrLogSa> adapter = bound(box);

  // Owes the collection `counts` alone.
  void oweCounts() {
    log().demuxer().createFlowOut(*adapter, {}, false, FlowOut::marksOnly);
    adapter->flowOut()->vekDirtyBitSet0().vekCountsHasSyncedIs(false);
  }
};

// A log that takes one record a visit; `meanwhile` acts before the visit.
struct Visit {
  std::function<void(ToyBox&)> meanwhile;
  Vek::AttributeId next;
  Records records;
};

TEST_F(Collections, AWalkInVisits) {
  auto const nothing = [](ToyBox&) {};
  auto const key = [](char digit) { return "258~:0000000" + std::string(1, digit) + "000000" + digit + "0"; };
  auto const gone = [](char digit) { return "-258~:0000000" + std::string(1, digit); };
  std::pair<char const*, std::vector<Visit>> const cases[] = {
      {"changed in front and behind",
       {{nothing, 258, {begins}},
        {nothing, 258, {key('1')}},
        {[](ToyBox& b) { b.countsIs(1, 0x11), b.countsIs(3, 0x33); }, 258, {key('2')}},
        {nothing, 258, {"258~:0000000300000033", ends}},
        {nothing, 0, {"258~:0000000100000011"}}}},
      {"deleted where it stands",
       {{nothing, 258, {begins}},
        {nothing, 258, {key('1')}},
        {[](ToyBox& b) { b.countsDel(2); }, 258, {key('3'), ends}},
        {nothing, 0, {gone('2')}}}},
      {"emptied",
       {{nothing, 258, {begins}},
        {[](ToyBox& b) { b.countsDelAll(); }, 258, {ends}},
        {nothing, 258, {gone('1')}},
        {nothing, 258, {gone('2')}},
        {nothing, 0, {gone('3')}}}},
  };
  for (auto const& [what, visits] : cases) {
    box = Toys::toyBoxFactory("box");
    for (U32 const at : {1U, 2U, 3U}) box->countsIs(at, at << 4);
    adapter = bound(box);
    oweCounts();
    int number = 0;
    for (Visit const& visit : visits) {
      SCOPED_TRACE(std::string(what) + ", visit " + std::to_string(++number));
      visit.meanwhile(*box);
      EXPECT_EQ(adapter->handleAttrFlowOut(258), visit.next);
      EXPECT_EQ(said(), visit.records);
    }
    EXPECT_FALSE(adapter->flowOut()->hasDirtyAttributes()) << what;
  }
}

TEST_F(Collections, KeysAlone) {
  box->countsIs(1, 0x10);
  box->countsIs(2, 0x20);
  said();
  oweCounts();
  adapter->flowOut()->vekIsCountsDirtyIs(2, true);
  adapter->flowOut()->vekDataBitsIs(FlowOut::keysOnlyBit);
  EXPECT_EQ(adapter->handleAttrFlowOut(258), 258U);
  EXPECT_EQ(said(), (Records{ends}));
  EXPECT_EQ(adapter->handleAttrFlowOut(258), 0U);
  EXPECT_EQ(said(), (Records{"258~:0000000200000020"}));
}

TEST_F(Collections, AChildBoundAgain) {
  auto const lid = Ptr<Toys::Lid>(box->lidIs("lid"));
  auto const child = Vek::ptrCast<Toys::Lid::VekNboAttrLogSa>(lid->vekNboAttrLogSa(log().out()));
  ASSERT_NE(child, nullptr);
  said();
  child->flagsIs(Sa::resyncStale, true);
  auto const bind = [&](U32 flags) {
    return adapter->lidNboAttrLogAdapterIs(Sa::Vek_BitSet(flags), lid, 1, log().out(), nullptr);
  };
  EXPECT_EQ(bind(Sa::childRecordSuppressed | Sa::readOnlyRemote), child);
  EXPECT_TRUE(child->hasFlag(Sa::readOnlyRemote) && !child->hasFlag(Sa::resyncStale));
  EXPECT_EQ(said(), Records{});
  EXPECT_EQ(bind(0), child);
  EXPECT_EQ(said().size(), 1U);
  EXPECT_EQ(adapter->lidNboAttrLogAdapter(lid), nullptr);
}

TEST_F(Collections, AChildTakesNotAllFlagsOfItsParent) {
  U32 const passed = Sa::readOnlyRemote | Sa::weakAdapter | Sa::outputSuppressed | Sa::childRecordSuppressed;
  adapter->flagsIs(passed | 0x3c30, true);
  EXPECT_EQ(adapter->childFlags(), passed);
}

// A child whose adapter cannot be looked up, or made, at the first try.
struct Stubborn final : Toys::Shelf {
  using Shelf::Shelf;
  std::function<void()> whenFound;
  mutable std::function<void()> whenMade = [] {};
  using Shelf::vekNboAttrLogSa;
  Ptr<Sa> vekNboAttrLogSa(Ptr<Vek::NboAttrLog::Out const> const& out) override {
    if (auto const act = std::exchange(whenFound, nullptr)) act();
    return Shelf::vekNboAttrLogSa(out);
  }
  using Shelf::parent;
  Ptr<Vek::Entity> parent() override {
    std::exchange(whenMade, [] {})();
    return Shelf::parent();
  }
};

TEST_F(Collections, ABindingThatFails) {
  auto const again = [] { throw Vek::AttrLogRecordException(); };
  auto const broken = [] { throw std::bad_alloc(); };
  auto const child = Vek::make<Stubborn>("s");
  child->parentAttrIdIs(266);
  child->parentIs(box);
  U32 const before = adapter->references();
  auto const bind = [&] { adapter->vekHandleShelvesSerializeSing("s", child); };

  child->whenFound = broken;
  EXPECT_THROW(bind(), std::bad_alloc);
  child->whenMade = broken;
  EXPECT_THROW(bind(), std::bad_alloc);
  EXPECT_EQ(child->Shelf::vekNboAttrLogSa(log().out()), nullptr) << "it would be taken for one with an id";
  EXPECT_FALSE(adapter->hasFlag(Sa::entityReactorActive));
  EXPECT_EQ(said(), Records{});
  log().demuxer().createFlowOut(*adapter, {}, false, FlowOut::marksOnly);
  adapter->flagsIs(Sa::handlingScheduledFlowOut, true);
  adapter->flowOut()->vekIsShelvesDirtyIs("s", true);
  child->whenFound = broken;
  EXPECT_THROW(bind(), std::bad_alloc);
  EXPECT_TRUE(adapter->flowOut()->vekIsShelvesDirtyDel("s")) << "the key is still owed";
  adapter->flagsIs(Sa::handlingScheduledFlowOut, false);
  log().demuxer().schedule().turn(1000);
  ASSERT_TRUE(adapter->hasFlag(Sa::noFlowOut));

  child->whenFound = again;
  bind();
  EXPECT_EQ(said(), (Records{"266~#151:" + textHex("s") + "0100019300000005"}));
  std::function<void()> const always = [&] { child->whenFound = always, again(); };
  child->whenFound = always;
  EXPECT_THROW(bind(), Vek::AttrLogRecordException) << "it would try for ever";
  EXPECT_EQ(said(), Records{});
  EXPECT_EQ(adapter->references(), before);
  child->whenFound = nullptr;
  child->parentIs(nullptr);
}

struct FewIds : Collections {
  FewIds() : Collections({.limits = {.entities = 2}}) {}
};

TEST_F(FewIds, AChildWithoutOneWaitsUntilOneIsFree) {
  std::pair<std::function<void()>, std::string> const cases[] = {
      {[this] { box->shelvesIs("s"); }, "266~#151:" + textHex("s")},
      {[this] { box->lidIs("lid"); }, "265~#151:" + textHex("lid")},
  };
  for (auto const& [make, record] : cases) {
    bound(toy);
    make();
    ASSERT_NE(adapter->flowOut(), nullptr);
    EXPECT_TRUE(adapter->flowOut()->yieldRequested());
    Vek::NboAttrLog::Schedule& schedule = log().demuxer().schedule();
    for (int turns = 0; turns < 3; ++turns) schedule.turn(1000);
    EXPECT_FALSE(schedule.isDue()) << "it would try for ever";
    EXPECT_EQ(said(), Records{});
    toy->vekNboAttrLogSaDel(log().out());
    for (int turns = 0; turns < 3; ++turns) schedule.turn(1000);
    EXPECT_EQ(said().at(0).substr(0, record.size()), record);
    EXPECT_TRUE(adapter->hasFlag(Sa::noFlowOut));
    box->shelvesDelAll();
    said();
  }
}

struct InOneGo : Collections {
  InOneGo() : Collections(PairOptions{}) {}
};

TEST_F(InOneGo, OnlyTheWalkAtAnAttributeSendsWhatChangedBehindIt) {
  box->countsIs(1, 0x10);
  said();
  oweCounts();
  adapter->flowOut()->vekIsCountsDirtyIs(9, true);
  adapter->flagsIs(Sa::handlingScheduledFlowOut, true);
  adapter->flowOut()->attrIdIs(259);
  EXPECT_TRUE(adapter->vekHandleCountsSerializeColl());
  EXPECT_EQ(said(), (Records{begins, "258~:0000000100000010"}));
  adapter->flowOut()->attrIdIs(258);
  adapter->flowOut()->vekDirtyBitSet0().vekCountsHasSyncedIs(true);
  EXPECT_TRUE(adapter->vekHandleCountsSerializeColl());
  EXPECT_EQ(said(), (Records{"-258~:00000009"}));
}

TEST_F(InOneGo, ChildrenBeforeAttributesWithoutAMarker) {
  box->countsIs(1, 1);
  box->lidIs("lid");
  box->shelvesIs("s");
  said();
  adapter->vekInstantiateSerialize();
  EXPECT_EQ(said(), (Records{"265~#151:" + textHex("lid") + "0100019300000005",
                             "266~#151:" + textHex("s") + "0100019300000007"}));
}

}  // namespace
}  // namespace LogTest
