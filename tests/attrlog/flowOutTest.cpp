// What an adapter owes its log, and how a change of a value gets from the setter to the bytes.
#include "tests/attrlog/BareLog.h"

#include <climits>

namespace LogTest {
namespace {

using Vek::NboAttrLog::FlowOut;

struct Owed : BareToys {
  explicit Owed(PairOptions const& options = oneRecord()) : BareToys(options) {}

  void owe(Sa& adapter, Vek::AttributeId from) { log().demuxer().createFlowOut(adapter, {}, false, from); }
  /// All that is written in as many turns as it takes, with the log drained after each.
  Records walked() {
    Records all;
    for (int turns = 0; turns < 40 && log().demuxer().schedule().isDue(); ++turns) {
      log().demuxer().schedule().turn(65536);
      for (std::string const& record : said()) all.push_back(record);
    }
    return all;
  }
};

TEST_F(Owed, EverythingFromAnAttributeOn) {
  struct {
    Vek::AttributeId from;
    U32 word;
    bool owes;
  } const cases[] = {
      {0, 0x40, true},   {258, 0x40, true}, {259, 0x42, true},  {260, 0x46, true},         {264, 0x7e, true},
      {265, 0x7e, true}, {266, 0x3e, true}, {267, 0xbe, false}, {0x7fffffff, 0xbe, false}, {0x80000000, 0xbe, false},
  };
  for (auto const& each : cases) {
    SCOPED_TRACE(each.from);
    auto const owed =
        Vek::make<ToyBox::VekNboAttrLogSa::FlowOut>(log().out(), nullptr, Vek::ConnectDesc{}, false, each.from);
    EXPECT_EQ(owed->vekDirtyBitSet0().word(0), each.word);
    EXPECT_EQ(owed->hasDirtyAttributes(), each.owes);
  }
}

TEST_F(Owed, KeysAndPlacesAreKeptOnce) {
  auto const owed =
      Vek::make<ToyBox::VekNboAttrLogSa::FlowOut>(log().out(), nullptr, Vek::ConnectDesc{}, false, FlowOut::marksOnly);
  owed->vekIsNotesDirtyIs("a", true);
  owed->vekIsNotesDirtyIs("a", true);
  EXPECT_TRUE(owed->hasDirtyAttributes());
  EXPECT_FALSE(owed->vekIsNotesDirtyDel("b"));
  EXPECT_TRUE(owed->vekIsNotesDirtyDel("a"));
  EXPECT_FALSE(owed->vekIsNotesDirtyDel("a"));
  EXPECT_FALSE(owed->hasDirtyAttributes());

  EXPECT_EQ(Vek::NboAttrLog::vekFlowOutBookmarkDeq<U32>(*owed), 0U);
  EXPECT_EQ(Vek::NboAttrLog::vekFlowOutBookmarkDeq<Vek::String8>(*owed), "");
  EXPECT_EQ(Vek::NboAttrLog::vekFlowOutBookmarkDeq<Bridging::VlanIdOrNone>(*owed), Bridging::VlanIdOrNone{});
  auto const adapter = bound(box);
  for (auto const attr : {264U, 265U, 258U}) {
    owed->attrIdIs(258);
    if (owed->bookmark() == nullptr) Vek::NboAttrLog::vekFlowOutBookmarkEnq(*owed, U32{7});
    owed->attrIdIs(attr);
    adapter->freeResyncState(*owed);
    EXPECT_EQ(owed->bookmark() == nullptr, attr == 258) << attr;
  }
  adapter->freeResyncState(*owed);
  EXPECT_EQ(owed->bookmark(), nullptr);
}

// Each way in which a change is not sent: what becomes of the mark that it came from the log, and what the steps of a
// walk answer.
TEST_F(Owed, ChangesThatAreNotSent) {
  struct {
    char const* what;
    U32 set, clear;
    bool comesIn, active, staysActive, answer;
  } const cases[] = {
      {"a sibling's mode", Sa::syncModeRelay, 0, false, true, true, false},
      {"its records come in", 0, 0, true, false, false, false},
      {"its records come in, this is one", 0, 0, true, true, false, true},
      {"suppressed", Sa::outputSuppressed, 0, false, true, false, true},
      {"stale", Sa::resyncStale, 0, false, true, false, true},
      {"not enabled", 0, Sa::logEnabled, false, true, false, true},
      {"from the log", 0, 0, false, true, false, true},
  };
  for (auto const& each : cases) {
    SCOPED_TRACE(each.what);
    Ptr<Toy> const someToy = Toys::toyFactory("some");
    Ptr<ToyBox> const someBox = Toys::toyBoxFactory("some");
    auto const toys = bound(someToy);
    auto const boxes = bound(someBox);
    auto const prepare = [&](Sa& adapter, Vek::AttributeId attr) {
      adapter.flagsIs(each.set, true);
      adapter.flagsIs(each.clear, false);
      if (each.comesIn) log().demuxer().flowInIs(adapter.entityId())->aidIs(attr);
      adapter.flagsIs(Sa::entityReactorActive, each.active);
    };
    prepare(*toys, 258);
    someToy->sizeIs(4);
    EXPECT_EQ(toys->hasFlag(Sa::entityReactorActive), each.staysActive);
    prepare(*toys, 261);
    EXPECT_EQ(toys->vekHandleTextSerialize(), each.answer);
    EXPECT_EQ(toys->hasFlag(Sa::entityReactorActive), each.staysActive);
    prepare(*boxes, 258);
    someBox->countsIs(1, 1);
    EXPECT_EQ(boxes->hasFlag(Sa::entityReactorActive), each.staysActive);
    prepare(*boxes, 258);
    EXPECT_EQ(boxes->vekHandleCountsSerializeColl(), each.answer);
    EXPECT_EQ(boxes->hasFlag(Sa::entityReactorActive), each.active);
    EXPECT_EQ(said(), Records{});
    EXPECT_EQ(toys->flowOut(), nullptr);
    EXPECT_EQ(boxes->flowOut(), nullptr);
  }
}

TEST_F(Owed, NothingWithoutALog) {
  LogPair unopened;
  auto const adapter =
      Vek::ptrCast<Toy::VekNboAttrLogSa>(toy->vekNboAttrLogSaIs({}, 1, unopened.owner().out(), nullptr));
  adapter->flagsIs(Sa::entityReactorActive, true);
  toy->sizeIs(1);
  EXPECT_FALSE(adapter->hasFlag(Sa::entityReactorActive));
  EXPECT_TRUE(adapter->vekHandleTextSerialize());
  EXPECT_EQ(adapter->flowOut(), nullptr);
}

TEST_F(Owed, AReadOnlyMountThrowsAndPutsAllBack) {
  auto const toys = bound(toy, Sa::readOnlyLocal);
  auto const boxes = bound(box, Sa::readOnlyLocal);
  EXPECT_THROW(toy->sizeIs(1), Vek::ReadOnlyException);
  owe(*boxes, 258);
  EXPECT_THROW(boxes->handleAttrFlowOut(258), Vek::ReadOnlyException);
  EXPECT_FALSE(boxes->hasFlag(Sa::handlingScheduledFlowOut));
  EXPECT_EQ(said(), Records{});
  EXPECT_EQ(toys->flowOut(), nullptr);
}

TEST_F(Owed, AtOnceOrLaterAsTheFlagsSay) {
  auto const toys = bound(toy, Sa::flowOutForced);
  auto const boxes = bound(box, Sa::flowOutForced);
  for (bool const inWalk : {true, false}) {
    toys->flagsIs(Sa::handlingScheduledFlowOut, inWalk);
    boxes->flagsIs(Sa::handlingScheduledFlowOut, inWalk);
    fill();
    if (!inWalk) said();
    toy->sizeInc(1);
    box->countsIs(1, inWalk ? 1 : 2);
    EXPECT_EQ(said().size(), inWalk ? 2U : 0U);
    EXPECT_EQ(toys->flowOut() == nullptr, inWalk);
    EXPECT_EQ(boxes->flowOut() == nullptr, inWalk);
  }
}

// Toy: 258 to 262 are bits 1 to 5, and 261 is the text.
TEST_F(Owed, WhereAWalkGoesOn) {
  Records const abort{"137:000001030000000100000000"};
  struct {
    char const* what;
    U32 bits;
    bool isShort, aborts;
    Vek::AttributeId from, next;
    Records records;
  } const cases[] = {
      {"stopped after an attribute", 0x3e, false, false, 258, 259, {"258:0000000000000000"}},
      {"stopped at an attribute", 0x3e, true, false, 259, 259, {}},
      {"after the framework's", 0x3e, true, false, 0, 258, {}},
      {"the framework's first", 0x08, false, false, 257, 261, {"260~:0000000000000000"}},
      {"no longer owed", 0x02, false, false, 259, 0, {}},
      {"after the last", 0x20, false, false, 262, 0, {"262~:00000000000000000000000000000000"}},
      {"at the last", 0x20, true, false, 262, 262, {}},
      {"behind the last", 0x20, false, false, 263, 0, {}},
      {"far behind, with an abort", 0x20, false, true, INT_MAX, 0, abort},
      {"an abort first", 0x04, false, true, 259, 259, abort},
      {"after a text, with more", 0x30, false, false, 261, 262, {"261~:01"}},
      {"after a text, with no more", 0x10, false, false, 261, 0, {"261~:01"}},
      {"at a text", 0x10, true, false, 261, 261, {}},
  };
  for (auto const& each : cases) {
    SCOPED_TRACE(each.what);
    Ptr<Toy> const some = Toys::toyFactory("some");
    auto const adapter = bound(some);
    owe(*adapter, FlowOut::marksOnly);
    for (U32 slot = 1; slot <= 5; ++slot) adapter->flowOut()->slotBitIs(slot, (each.bits >> slot & 1) != 0);
    if (each.aborts) adapter->flowOut()->pendingAbortIs(259, true);
    if (each.isShort) fill();
    EXPECT_EQ(adapter->handleAttrFlowOut(each.from), each.next);
    EXPECT_EQ(said(), each.records);
    EXPECT_FALSE(adapter->hasFlag(Sa::handlingScheduledFlowOut));
    EXPECT_EQ(adapter->flowOut()->pendingAbort().count(), 0U);
  }
  auto const adapter = bound(toy);
  EXPECT_EQ(adapter->handleAttrFlowOut(0), 258U) << "nothing is owed";
  adapter->flagsIs(Sa::handlingScheduledFlowOut, true);
  EXPECT_EQ(adapter->handleAttrFlowOut(258), 0U);
  EXPECT_TRUE(adapter->hasFlag(Sa::handlingScheduledFlowOut))
      << "a walk inside a walk leaves the mark of the outer one";
}

// A log that fails at a change, and tells when it goes.
struct Failing final : Toy::VekNboAttrLogSa {
  using VekNboAttrLogSa::VekNboAttrLogSa;
  ~Failing() override {
    if (whenGone) whenGone();
  }
  void onSize() override { fail(); }
  std::function<void()> fail, whenGone;
};

TEST_F(Owed, AChangeThatALogCouldNotTakeIsOwedOrEndsTheLog) {
  auto const ear = Toys::listen<Toys::ToyListener>(toy, calls, "L");
  auto const failing = Vek::make<Failing>(Sa::Vek_BitSet{}, toy, U32{1}, log().out(), nullptr);
  failing->hasNotificationActiveIs(true);
  failing->doAssignEntityId();
  failing->fail = [] { throw Vek::ReadOnlyException("the caller must know"); };
  EXPECT_THROW(toy->sizeInc(1), Vek::ReadOnlyException);
  failing->fail = [] { throw Vek::ProtocolException("the caller must know"); };
  EXPECT_THROW(toy->sizeInc(1), Vek::ProtocolException);
  EXPECT_EQ(calls, Toys::Calls{}) << "those behind are not told";

  failing->fail = [] { throw std::bad_alloc(); };
  for (auto const side : {Sa::Side::plain, Sa::Side::owner}) {
    failing->sideIs(side);
    calls.clear();
    toy->sizeInc(1);
    EXPECT_EQ(calls, (Toys::Calls{"L size"}));
    EXPECT_TRUE(log().demuxer().schedule().isDue());
    failing->fail = [&] { failing->Toy::VekNboAttrLogSa::onSize(); };
    while (log().demuxer().schedule().isDue()) {
      log().demuxer().schedule().turn(1000);
      said();
    }
    failing->fail = [] { throw std::bad_alloc(); };
  }
  failing->sideIs(Sa::Side::replica);
  toy->sizeInc(1);
  EXPECT_EQ(calls, (Toys::Calls{"L size", "L size"}));
  EXPECT_EQ(log().state(), Vek::NboAttrLog::dead);
  EXPECT_EQ(log().closeReason(), "a change could not be written: std::bad_alloc");
}

TEST_F(Owed, AnAdapterThatIsTakenOffItsLogInASlotLivesToTheEndOfIt) {
  bool isGone = false;
  {
    auto const brief = Vek::make<Failing>(Sa::Vek_BitSet(Sa::flowOutForced), toy, U32{1}, log().out(), nullptr);
    brief->hasNotificationActiveIs(true);
    brief->doAssignEntityId();
    brief->fail = [&its = *brief] { its.Toy::VekNboAttrLogSa::onSize(); };
    brief->whenGone = [&] { isGone = true; };
  }
  log().whenDueIs([&] {
    toy->vekNboAttrLogSaDel(log().out());
    EXPECT_FALSE(isGone);
  });
  toy->sizeIs(1);
  EXPECT_TRUE(isGone);
  log().whenDueIs(nullptr);
}

struct OwedText : Owed {
  OwedText() : Owed({.limits = {.outBytes = 4, .messageBytes = 3}}) {}
};

TEST_F(OwedText, InPieces) {
  auto const adapter = bound(toy);
  toy->textIs("abc");
  EXPECT_EQ(said(), (Records{"261~:01616263"}));
  toy->textIs("");
  EXPECT_EQ(said(), (Records{"261~:01"}));
  toy->textIs("abcdefg");
  EXPECT_EQ(said(), (Records{"261~:00616263"}));
  ASSERT_NE(adapter->flowOut(), nullptr);
  EXPECT_EQ(adapter->flowOut()->attrId(), 261U);
  EXPECT_EQ(adapter->flowOut()->outstandingKeys(), 1U);
  EXPECT_EQ(walked(), (Records{"261~:00646566", "261~:0167"}));

  // Changed part-way out: the pieces that have gone are forgotten.
  toy->textIs("hijklmn");
  said();
  toy->textIs("xy");
  EXPECT_EQ(adapter->flowOut()->valueIter(), nullptr);
  Records const anew{"137:000001050000000100000000", "261~:017879"};
  EXPECT_EQ(walked(), anew);
  // All is owed while a text is part-way out: of that too the far side forgets what it has.
  toy->textIs("hijklmn");
  said();
  owe(*adapter, 0);
  EXPECT_EQ(walked().front(), anew.front());
  EXPECT_TRUE(adapter->hasFlag(Sa::noFlowOut));
}

struct OwedShortText : Owed {
  OwedShortText() : Owed(oneRecord(3)) {}
};

TEST_F(OwedShortText, WaitsWhereNoMoreIsFreeThanAMessageAndAHalf) {
  auto const adapter = bound(toy);
  toy->textIs("a");
  EXPECT_EQ(said(), Records{});
  EXPECT_EQ(walked(), (Records{"261~:0161"}));
}

}  // namespace
}  // namespace LogTest
