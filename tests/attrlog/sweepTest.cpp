// What goes because a peer no longer mentions it: markers, modes, remounts.
#include "tests/attrlog/BareLog.h"

#include <algorithm>
#include <array>
#include <variant>

namespace LogTest {
namespace {

using Toys::Calls;

struct Sweeping : BareToys {
  Sweeping() : BareToys(PairOptions{}) { other.settle(), LogTest::said(other.owner()); }

  LogPair other;
  Ptr<ToyBox::VekNboAttrLogSa> adapter = bound(box);

  void marker(Vek::AttributeId attr, Sa::AttrTransactionType type) { adapter->handleAttrTransaction(attr, type, 0); }
};

TEST_F(Sweeping, WhatWasNotMentionedGoes) {
  auto const begin = Sa::beginMarker;
  auto const abort = Sa::abortMarker;
  auto const end = Sa::endMarker;
  struct {
    char const* what;
    std::vector<std::variant<Sa::AttrTransactionType, int>> acts;  // markers, and keys that come in
    std::string left;
  } const cases[] = {
      {"the third", {begin, 1, 2, end}, "12"},
      {"none, without a beginning", {1, end}, "123"},
      {"what came before the second beginning", {begin, 1, abort, begin, 2, end}, "2"},
      {"what came before an abort stays", {begin, 1, abort, end}, "1"},
      {"all", {begin, end, end}, ""},
      {"none that came after", {begin, end, 1, 2, end}, "12"},
  };
  auto const elsewhere = bound(box, 0, other.owner());
  auto const ear = Toys::listen<Toys::BoxListener>(box, calls, "L");
  auto const digits = [](int number) { return "0000000" + std::to_string(number); };
  for (auto const& each : cases) {
    SCOPED_TRACE(each.what);
    for (U32 const key : {1U, 2U, 3U}) box->countsIs(key, key);
    said();
    LogTest::said(other.owner());
    calls.clear();
    auto const before = box->countsCount();
    for (auto const& act : each.acts) {
      if (auto const* const type = std::get_if<Sa::AttrTransactionType>(&act))
        marker(258, *type);
      else
        receive(*adapter, 258, digits(std::get<int>(act)) + digits(2));  // of the second that is no change
    }
    std::string left;
    for (auto it = box->countsIteratorConst(); it; ++it) left += static_cast<char>('0' + it->key());
    EXPECT_EQ(left, each.left);
    EXPECT_EQ(said(), Records{});
    EXPECT_EQ(LogTest::said(other.owner()).size(), calls.size());
    EXPECT_GE(calls.size(), before - left.size());
    EXPECT_EQ(log().demuxer().flowIn(adapter->entityId()), nullptr);
    EXPECT_FALSE(adapter->hasFlag(Sa::entityReactorActive));
    box->countsIs(4, 1);
    EXPECT_EQ(said().size(), 1U) << "the attribute is not deaf";
    box->countsDelAll();
  }
}

// The attribute whose begin marker came first is the one that is waited for.
TEST_F(Sweeping, AnEndOfAnotherAttributeEndsNothing) {
  auto const isDeaf = [this] { return box->countsIs(1, box->counts(1) + 1), said().empty(); };
  marker(258, Sa::beginMarker);
  marker(259, Sa::beginMarker);
  marker(259, Sa::endMarker);
  EXPECT_TRUE(isDeaf());
  marker(258, Sa::endMarker);
  EXPECT_FALSE(isDeaf());
}

TEST_F(Sweeping, SurvivesReactorsThatChangeTheCollection) {
  for (U32 const key : {1U, 2U, 3U}) box->countsIs(key, key);
  auto const ear = Toys::listen<Toys::BoxListener>(box, calls, "L");
  ear->nextDo({[this] { box->countsDel(2), box->countsIs(7, 7); }});
  marker(258, Sa::beginMarker);
  receive(*adapter, 258, "0000000300000003");
  said();
  marker(258, Sa::endMarker);
  EXPECT_EQ(box->countsCount(), 2U);
  EXPECT_EQ(box->counts(7), 7U);
}

TEST_F(Sweeping, ChildrenThatAreStaleOrWereNotBound) {
  receive(*adapter, 266, textHex("a") + peersId);
  receive(*adapter, 266, textHex("b") + othersId);
  marker(266, Sa::beginMarker);
  receive(*adapter, 266, textHex("a") + peersId);
  adapter->flagsIs(Sa::outputSuppressed, true);
  box->shelvesIs("c");
  adapter->flagsIs(Sa::outputSuppressed, false);
  auto const ear = Toys::listen<Toys::BoxListener>(box, calls, "L");
  marker(266, Sa::abortMarker);
  EXPECT_EQ(calls, Calls{});
  marker(266, Sa::endMarker);
  std::sort(calls.begin(), calls.end());
  EXPECT_EQ(calls, (Calls{"L shelves b", "L shelves c"}));
  EXPECT_NE(box->shelves("a"), nullptr);
  EXPECT_EQ(said(), Records{});
}

TEST_F(Sweeping, ASingleChildIsSilentUntilItComes) {
  receive(*adapter, 265, textHex("lid") + peersId);
  marker(265, Sa::beginMarker);
  marker(265, Sa::endMarker);
  auto const lid = box->lid();
  ASSERT_NE(lid, nullptr);
  lid->openIs(false);
  EXPECT_EQ(said(), Records{});
  receive(*adapter, 265, textHex("lid") + peersId);
  lid->openIs(true);
  EXPECT_EQ(said(), (Records{"258:01"}));
}

TEST_F(Sweeping, AModeBeginsOrEndsAllWhateverItsNumber) {
  for (char const* ends : {"00000000", "00000001", "00000003"}) {
    for (U32 const key : {1U, 2U}) box->countsIs(key, key), box->wantedIs(key, true);
    box->shelvesIs("s");
    receive(*adapter, 135, "00000002");
    receive(*adapter, 258, "0000000100000001");
    receive(*adapter, 260, "0000000201");
    receive(*adapter, 135, ends);
    EXPECT_EQ(box->countsCount() + box->wantedCount(), 2U) << ends;
    EXPECT_EQ(box->shelves("s"), nullptr) << ends;
  }
}

TEST_F(Sweeping, ARemountReachesChildrenAndNoOtherLog) {
  auto const elsewhere = bound(box, 0, other.owner());
  auto const drawer = Ptr<Toys::Drawer>(box->shelvesIs("s")->drawersIs("d"));
  auto const lid = Ptr<Toys::Lid>(box->lidIs("lid"));
  auto const change = [&] {
    box->countsIs(1, box->counts(1) + 1);
    drawer->thingsInc(1);
    lid->openIs(!lid->open());
    return std::pair{said().size(), LogTest::said(other.owner()).size()};
  };
  using Written = std::pair<std::size_t, std::size_t>;
  std::ignore = change();
  EXPECT_EQ(change(), (Written{3, 3}));
  EXPECT_EQ(adapter->shelvesNboAttrLogAdapterDel(nullptr), nullptr);
  EXPECT_NE(adapter->shelvesNboAttrLogAdapterDel(box->shelves("s")), nullptr);
  EXPECT_EQ(adapter->shelvesNboAttrLogAdapterDel(box->shelves("s")), nullptr);
  EXPECT_EQ(change(), (Written{2, 3}));
  adapter->doRemountSelf(nullptr);
  EXPECT_EQ(change(), (Written{0, 3}));
  EXPECT_EQ(lid->vekNboAttrLogSa(log().out()), nullptr);
  EXPECT_EQ(adapter->vekNotifierEntity(), nullptr);

  // To another log: it itself, and no child.
  LogPair third;
  third.settle();
  LogTest::said(third.owner());
  elsewhere->doRemountSelf(third.owner().out());
  EXPECT_EQ(change(), (Written{0, 0}));
  EXPECT_EQ(box->vekNboAttrLogSa(third.owner().out()), elsewhere);
  EXPECT_EQ(LogTest::said(third.owner()), (Records{"258~:0000000100000005"}));
}

TEST_F(Sweeping, ATypeBindsItsChildren) {
  box->shelvesIs("s");
  said();
  for (Vek::AttributeId const attr : {258U, 266U}) {
    ToyBox::_fwkType()->childAttrLogIs(*ToyBox::_fwkType()->attribute(attr), box->shelves("s"), log().out());
    EXPECT_EQ(said().size(), attr == 266 ? 1U : 0U);
  }
}

// Reactors that throw, and whose exceptions reach whoever made the change.
template <class Listener>
struct Throwing final : Listener {
  using Listener::Listener;
  using Listener::onNotificationException;
  void onNotificationException(Vek::AttributeId) override { throw; }
};

TEST_F(Sweeping, AReactorThatThrowsLeavesAllAsItWas) {
  auto const toys = bound(toy);
  std::pair<char const*, std::function<void()>> const cases[] = {
      {"a scalar", [&] { receive(*toys, 259, "01"); }},
      {"a text", [&] { receive(*toys, 261, "0161"); }},
      {"a key", [&] { receive(*adapter, 258, "0000000100000009"); }},
      {"a key gone", [&] { receive(*adapter, -258, "00000001"); }},
      {"a child by key", [&] { receive(*adapter, 266, textHex("n") + peersId); }},
      {"a child gone", [&] { receive(*adapter, -266, textHex("n")); }},
      {"a child by key once more", [&] { receive(*adapter, 266, textHex("n") + peersId); }},
      {"another one", [&] { receive(*adapter, 266, textHex("n") + othersId); }},
      {"a child", [&] { receive(*adapter, 265, textHex("lid") + peersId); }},
      {"another child", [&] { receive(*adapter, 265, textHex("lid") + othersId); }},
      {"an end marker", [&] { marker(258, Sa::endMarker); }},
      {"a mode", [&] { receive(*adapter, 135, "00000001"); }},
  };
  box->countsIs(1, 1);
  auto const ear = Toys::listen<Throwing<Toys::BoxListener>>(box, calls, "L");
  auto const toyEar = Toys::listen<Throwing<Toys::ToyListener>>(toy, calls, "L");
  auto const broken = [] { throw std::runtime_error("a reactor"); };
  U32 const before[] = {adapter->references(), toys->references(), box->references(), toy->references()};
  for (auto const& [what, act] : cases) {
    SCOPED_TRACE(what);
    ear->always = toyEar->always = nullptr;
    for (U32 const key : {2U, 3U}) box->countsIs(key, key);
    for (auto it = box->countsIterator(); it; ++it) it->vekMarkedForDeletionIs(true);
    said();
    ear->always = toyEar->always = broken;
    EXPECT_THROW(act(), std::runtime_error);
    U32 const busy = Sa::entityReactorActive | Sa::syncModeRelay | Sa::handlingScheduledFlowOut;
    EXPECT_FALSE(adapter->hasFlag(busy) || toys->hasFlag(busy));
    EXPECT_EQ(said(), Records{});
    EXPECT_EQ((std::array{adapter->references(), toys->references(), box->references(), toy->references()}),
              std::to_array(before));
  }
  EXPECT_EQ(box->countsCount(), 0U) << "all the same it is swept";
}

TEST_F(Sweeping, AReactorThatThrowsDoesNotKeepAMountFromItsStep) {
  Mounted<ToyBox> const mounted(other, box);
  for (U32 const key : {1U, 2U, 3U}) box->countsIs(key, 1);
  other.settle();
  auto const ear = Toys::listen<Throwing<Toys::BoxListener>>(mounted.replica(), calls, "L");
  ear->always = [] { throw std::runtime_error("a reactor"); };
  for (auto const mode : {Sa::synchronising, Sa::inStep}) box->vekNboAttrLogSa(other.owner().out())->sendSyncMode(mode);
  other.settle();
  EXPECT_EQ(mounted.mount->state(), Vek::Dir::inStep);
  EXPECT_EQ(mounted.replica()->countsCount(), 0U);
}

}  // namespace
}  // namespace LogTest
