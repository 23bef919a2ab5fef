// Children: a box's lid, its shelves by name, and the drawers of a shelf by label. What is stored, counted and told,
// who is whose parent, and how all of them end.
#include "tests/core/LeakCheck.h"
#include "tests/frame/Listener.h"

#include <algorithm>

using namespace Vek;

namespace Toys {

namespace {

struct Children : LeakCheck {
  // The reactors' calls during `act`, which counts as many writes at the box and no read.
  template <class Act>
  Calls effect(U32 writes, Act const& act) {
    calls.clear();
    U32 const writesBefore = box->writeCount();
    U32 const readsBefore = box->readCount();
    act();
    EXPECT_EQ(box->writeCount(), writesBefore + writes);
    EXPECT_EQ(box->readCount(), readsBefore);
    return calls;
  }
  static bool isParent(Vek::Entity const& child, Vek::Entity const* parent) { return child.parent() == parent; }

  Calls calls;
  Ptr<ToyBox> box = toyBoxFactory("box");
  Ptr<BoxListener> reactor = listen<BoxListener>(box, calls, "r");
};

TEST_F(Children, TheFirstSetMakesTheChildCountsAndTellsAndTheSameAgainCountsAlone) {
  reactor->nextDo({[&] {
    EXPECT_EQ(box->lid()->name(), "a");
    EXPECT_EQ(box->writeCount(), 1U);
  }});
  Ptr<Lid> const lid = box->lidIs("a");
  EXPECT_EQ(calls, Calls{"r lid"});
  EXPECT_EQ(box->writeCount(), 1U);
  EXPECT_EQ(box->readCount(), 1U) << "the reactor's";
  EXPECT_EQ(lid->references(), 2U);
  EXPECT_TRUE(isParent(*lid, box.ptr()));
  EXPECT_EQ(lid->parentAttr(), ToyBox::_fwkType()->attribute(265));
  EXPECT_EQ(box->parentAttr(), nullptr);
  EXPECT_EQ(box->parentAttrId(), 136U);
  EXPECT_EQ(box->references(), 1U) << "a child holds no reference on its parent";
  EXPECT_EQ(effect(1, [&] { EXPECT_EQ(box->lidIs(Name("a")), lid); }), Calls{});
}

TEST_F(Children, ASetWithAnotherNameReplacesAndCountsTwice) {
  Ptr<Lid> const old = box->lidIs("a");
  reactor->nextDo({[&] {
    EXPECT_EQ(box->lid()->name(), "b");
    EXPECT_TRUE(isParent(*old, nullptr));
    EXPECT_EQ(old->references(), 1U);
  }});
  box->lidIs("b");
  EXPECT_EQ(calls, (Calls{"r lid", "r lid"}));
  EXPECT_EQ(box->writeCount(), 3U);
  EXPECT_EQ(old->parentAttrId(), 265U) << "the attribute stays";
  EXPECT_EQ(old->fullName(), "a");
}

TEST_F(Children, AMadeChildIsBoundButNotStored) {
  Ptr<Lid> made;
  EXPECT_EQ(effect(0, [&] { made = box->newLid("a"); }), Calls{});
  EXPECT_FALSE(box->lid());
  EXPECT_EQ(made->references(), 1U);
  EXPECT_TRUE(isParent(*made, box.ptr()));
  EXPECT_EQ(made->parentAttrId(), 265U);
  Ptr<Lid> const stored = box->lidIs("a");
  EXPECT_FALSE(stored == made);
  Ptr<Shelf> const old = box->shelvesIs("top");
  EXPECT_EQ(effect(0, [&] { box->newShelves("top"); }), Calls{});
  EXPECT_TRUE(isParent(*old, nullptr));
  EXPECT_EQ(effect(1, [&] { EXPECT_FALSE(box->shelvesIs("top") == old); }), Calls{}) << "it was there";
  made->parentIs(nullptr);  // a box does not know of it, and could not let it go
}

TEST_F(Children, ARemovalGivesTheChildWithoutAParent) {
  EXPECT_EQ(effect(0, [&] { EXPECT_FALSE(box->lidDel()); }), Calls{});
  Ptr<Lid> const lid = box->lidIs("a");
  lid->openIs(false);
  reactor->nextDo({[&] {
    EXPECT_TRUE(isParent(*lid, nullptr)) << "cleared before anybody hears";
    EXPECT_EQ(box->writeCount(), 2U);
  }});
  EXPECT_EQ(effect(1, [&] { EXPECT_EQ(box->lidDel(), lid); }), Calls{"r lid"});
  EXPECT_FALSE(box->lid());
  EXPECT_EQ(lid->references(), 1U);
  EXPECT_FALSE(lid->open()) << "its attributes stand";
}

TEST_F(Children, HaveTheirPlaceInTheirParentsForAName) {
  Ptr<Drawer> const drawer = box->shelvesIs("top")->drawersIs("left");
  Ptr<Drawer> const odd = box->shelvesIs("my \"best\" one")->drawersIs("");
  EXPECT_EQ(drawer->name(), "left");
  EXPECT_EQ(drawer->label(), "left");
  EXPECT_EQ(drawer->fullName(), "box.shelves[top].drawers[left]");
  EXPECT_EQ(drawer->uriPath(), "/box/shelves/top/drawers/left");
  EXPECT_EQ(odd->fullName(), "box.shelves['my \"best\" one'].drawers['']");
  Ptr<Shelf> const top = box->shelvesDel("top");
  EXPECT_EQ(drawer->fullName(), "top.drawers[left]") << "a removed one is a root";
  top->drawersDelAll();
  EXPECT_EQ(drawer->fullName(), "left");
}

TEST_F(Children, ChildrenOfChildrenGoWithThem) {
  Ptr<Shelf> shelf = box->shelvesIs("top");
  Ptr<Drawer> const held = shelf->drawersIs("held");
  auto const drawer = listen<Listener<Drawer>>(Ptr<Drawer>(shelf->drawersIs("left")), calls, "d");
  auto const hears = listen<ShelfListener>(shelf, calls, "s");
  shelf = nullptr;
  EXPECT_EQ(effect(1, [&] { box->shelvesDel("top"); }),
            (Calls{"r shelves top", "s end", "s drawers left", "d end", "s drawers held"}));
  EXPECT_TRUE(isParent(*held, nullptr));
  EXPECT_EQ(held->references(), 1U);
}

// What a box that goes tells its reactors, which hold no reference on it.
struct LastWords : Children {
  Ptr<BoxListener> second = listen<BoxListener>(box, calls, "s");
};

TEST_F(LastWords, TellOfChildrenInTheOrderOfTheAttributesAndOfNothingElse) {
  Ptr<Lid> const lid = box->lidIs("a");
  box->countsIs(1, 2);
  box->notesIs("note", {1, 2, "x"});
  Ptr<Shelf> const shelf = box->shelvesIs("top");
  auto const child = listen<Listener<Lid>>(lid, calls, "lid");
  calls.clear();
  reactor->nextDo({{}, [&] {
                     Ptr<ToyBox> const going = reactor->notifier();
                     EXPECT_FALSE(going->lid());
                     second->isRegisteredNotifieeIs(false);  // it is told nevertheless, since this walk has begun
                     EXPECT_EQ(second->rawNotifier(), nullptr);
                   }});
  box = nullptr;
  EXPECT_EQ(calls, (Calls{"r end", "s end", "r lid", "s lid", "r shelves top"}));
  EXPECT_EQ(reactor->rawNotifier(), nullptr);
  EXPECT_TRUE(reactor->isRegisteredNotifiee());
  EXPECT_TRUE(isParent(*lid, nullptr));
  EXPECT_TRUE(isParent(*shelf, nullptr));
  EXPECT_EQ(shelf->references(), 1U);
}

TEST_F(LastWords, KeepAFailureInsideAndAllChildrenGo) {
  Ptr<Lid> const lid = box->lidIs("a");
  for (char const* name : {"top", "middle", "bottom"}) box->shelvesIs(name);
  Ptr<Shelf> const shelf = box->shelves("middle");
  auto const fail = [] { throw 1; };
  reactor->nextDo({{}, fail, fail, {}, fail, fail});  // of the lid, and of the second shelf
  calls.clear();
  box = nullptr;
  ASSERT_GE(calls.size(), 4U);
  EXPECT_EQ(calls[3], "r exception 265");
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "r exception 266"), 1);
  EXPECT_EQ(calls.size(), 2 + 2 + 2 + 2 + 2U) << "all shelves are told of";
  EXPECT_TRUE(isParent(*lid, nullptr));
  EXPECT_TRUE(isParent(*shelf, nullptr));
}

TEST_F(LastWords, LeaveUntoldWhatReactorsPutBack) {
  box->lidIs("a");
  box->shelvesIs("top");
  std::vector<Ptr<Vek::Entity>> back;
  auto const putBackLid = [&, raw = box.ptr()] {
    std::string const name = "b" + std::to_string(back.size());
    back.emplace_back(raw->lidIs(std::string_view(name)));
  };
  auto const putBackShelf = [&, raw = box.ptr()] { back.emplace_back(raw->shelvesIs("top")); };
  // The third act is that of the call from within the second.
  reactor->nextDo({{}, putBackLid, {}, [&] {
                     putBackLid();
                     putBackShelf();
                   }});
  calls.clear();
  box = nullptr;
  EXPECT_EQ(calls, (Calls{"r end", "s end", "r lid", "r lid", "s lid", "s lid",  // gone, and put back from within
                          "r shelves top", "r lid", "s lid", "r shelves top", "s shelves top", "s shelves top"}));
  ASSERT_EQ(back.size(), 3U);
  for (auto const& child : back) EXPECT_TRUE(isParent(*child, nullptr));
}

}  // namespace

}  // namespace Toys
