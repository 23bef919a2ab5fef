// Collections of plain values, where a box, an element or a key may go too early, and what is called with which key.
#include "tests/core/LeakCheck.h"
#include "tests/frame/Listener.h"

using namespace Vek;

namespace Toys {

namespace {

struct Collections : LeakCheck {
  Calls calls;
  Ptr<ToyBox> box = toyBoxFactory("box");
  Ptr<BoxListener> reactor = listen<BoxListener>(box, calls, "r");
};

TEST_F(Collections, AnEqualRecordIsThePresentValue) {
  reactor->nextDo({[&] { EXPECT_EQ(box->writeCount(), 1U) << "counted before anybody hears"; },
                   [&] { EXPECT_EQ(box->writeCount(), 2U); }});
  box->notesIs("note", {1, 2, "y"});
  box->notesIs("note", {1, 2, "x"});
  box->notesIs("note", {1, 2, "x"});
  box->vlansIs({}, Kiln::Fapmask({0, 0, 0, 1}));
  box->vlansIs({}, Kiln::Fapmask({0, 0, 0, 1}));
  EXPECT_EQ(box->writeCount(), 3U);
  EXPECT_EQ(calls, (Calls{"r notes note", "r notes note", "r vlans 0"}));
  EXPECT_TRUE(box->notesDel("note") == (ToyPoint{1, 2, "x"}));
  EXPECT_TRUE(box->notesDel("note") == ToyPoint{});
  EXPECT_EQ(box->writeCount(), 4U);
  EXPECT_EQ(box->readCount(), 0U);
  EXPECT_TRUE(box->notes("note") == ToyPoint{});
  EXPECT_EQ(box->readCount(), 1U) << "a missing key is a read too";
}

TEST_F(Collections, TheBoxLivesToTheEndOfWhatDroppedItsLastReference) {
  struct Case {
    void (*act)(ToyBox&);
    Calls told;
  };
  for (Case const& c : {
           Case{[](ToyBox& b) { b.countsIs(1, 9); }, {"r counts 1", "r end"}},
           Case{[](ToyBox& b) { b.countsDelAll(); }, {"r counts 1", "r counts 2", "r end"}},
           Case{[](ToyBox& b) { b.wantedDelAll(); }, {"r wanted 2", "r wanted 1", "r end"}},
           Case{[](ToyBox& b) { b.lidIs("a"); }, {"r lid", "r end", "r lid"}},
           Case{[](ToyBox& b) { b.newShelves("a"), b.newShelves("b"), b.shelvesDelAll(); },
                {"r shelves b", "r shelves a", "r end"}},
       }) {
    box = toyBoxFactory("box");
    for (U32 const key : {1U, 2U}) {
      box->newCounts(key, 1);
      box->newWanted(key, true);
    }
    reactor->notifierIs(box);
    reactor->nextDo({[&] { box = nullptr; }});
    calls.clear();
    c.act(*box);
    EXPECT_EQ(calls, c.told);
  }
}

TEST_F(Collections, ARemovalReadsTheValueWhenAllReactorsHaveRun) {
  for (bool const byIterator : {false, true}) {
    auto const element = box->newCounts(1, 5);
    reactor->nextDo({[&] { element->valueIs(6); }});
    auto it = box->countsIterator();
    EXPECT_EQ(byIterator ? box->countsDel(it) : box->countsDel(1), 6U);
  }
}

TEST_F(Collections, AnElementThatHasLeftIsNotRemovedThroughItsIterator) {
  box->countsIs(1, 5);
  box->wantedIs(1, true);
  box->shelvesIs("top");
  auto count = box->countsIterator();
  auto wanted = box->wantedIterator();
  auto shelf = box->shelvesIterator();
  for (U32 const left : {1U, 0U}) {  // others stand at those keys, or none
    box->newCounts(1, 6);
    box->newWanted(1, true);
    box->newShelves("top");
    if (left == 0) box->countsDelAll(), box->wantedDelAll(), box->shelvesDelAll();
    calls.clear();
    EXPECT_EQ(box->countsDel(count), 0U);
    EXPECT_FALSE(box->wantedDel(wanted));
    EXPECT_FALSE(box->shelvesDel(shelf));
    EXPECT_EQ(calls, Calls{});
    EXPECT_EQ(box->countsCount() + box->wantedCount() + box->shelvesCount(), 3 * left);
  }
}

TEST_F(Collections, OnlyTheSlotWithTheKeyIsCalled) {
  struct Rest : ToyBox::Notifiee {
    void onCounts(U32) override { ++calls; }
    void onCountsvekImmediate() override { ADD_FAILURE() << "for adapters"; }
    void onCounts() override { ADD_FAILURE() << "for adapters"; }
    int calls = 0;
  };
  auto const rest = Vek::make<Rest>();
  rest->isRegisteredNotifieeIs(true);
  rest->notifierIs(box);
  box->countsIs(1, 1);
  box->countsNotify(1);
  box->countsDelAll();
  EXPECT_EQ(rest->calls, 3);
}

TEST_F(Collections, AKeyOutlivesTheElementThatItWasTakenFrom) {
  // The reactor removes the element whose key its caller passed on.
  box->notesIs("key", {1, 2, "x"});
  auto const second = listen<BoxListener>(box, calls, "s");
  calls.clear();
  reactor->nextDo({[&] { box->notesDelAll(); }});
  box->notesIs(box->notesIterator()->key(), {3, 4, "y"});
  EXPECT_EQ(calls, (Calls{"r notes key", "r notes key", "s notes key", "s notes key"}));
}

}  // namespace

}  // namespace Toys
