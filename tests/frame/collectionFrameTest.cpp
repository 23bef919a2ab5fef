// Collections of plain values, all of them by the same tests: what is stored, counted and told, and in which order.
#include "tests/core/LeakCheck.h"
#include "tests/frame/BoxListener.h"
#include "tests/frame/CollectionOperations.h"

#include <functional>

using Vek::Ptr;
using Vek::U32;

namespace Toys {

namespace {

template <class C>
struct Collections : LeakCheck {
  using Key = typename C::Key;
  using Value = typename C::Value;
  using Iterator = typename C::Iterator;

  // The reactor's calls during `act`, which counts as many writes and no read.
  template <class Act>
  Calls effect(U32 writes, Act const& act) {
    calls.clear();
    ToyBox& subject = *box;
    U32 const writesBefore = subject.writeCount();
    U32 const readsBefore = subject.readCount();
    act();
    EXPECT_EQ(subject.writeCount(), writesBefore + writes);
    EXPECT_EQ(subject.readCount(), readsBefore);
    return calls;
  }
  std::string told(Key const& key, char const* who = "r") const {
    return who + (' ' + (C::name + (' ' + C::text(key))));
  }

  Value get(Key const& key) const { return std::invoke(C::get, *raw, key); }
  void set(Key const& key, Value const& value) { std::invoke(C::set, *raw, key, value); }
  Ptr<typename C::Element> makeAt(Key const& key, Value const& value) { return std::invoke(C::make, *raw, key, value); }
  Value del(Key const& key) { return (raw->*C::del)(key); }
  Value delAt(Iterator& it) { return (raw->*C::delAt)(it); }
  void delAll() { std::invoke(C::delAll, *raw); }
  U32 count() const { return std::invoke(C::count, *raw); }
  Iterator first() { return std::invoke(C::iterator, *raw); }
  Iterator at(Key const& key) {
    auto it = first();
    while (it && !(it->key() == key)) ++it;
    return it;
  }
  // The keys in the order of a walk.
  std::vector<Key> walk() const {
    std::vector<Key> keys;
    for (auto it = std::invoke(C::iteratorConst, *raw); it; ++it) keys.push_back(it->key());
    return keys;
  }
  void fill() {
    for (Key const& key : C::keys) makeAt(key, full);
  }
  // What is expected of a removal of all keys, in this order.
  Calls toldOf(std::vector<Key> const& keys) const {
    Calls expected;
    for (Key const& key : keys) expected.push_back(told(key));
    return expected;
  }

  Calls calls;
  Ptr<ToyBox> box = toyBoxFactory("box");
  ToyBox* raw = box.ptr();
  Ptr<BoxListener> reactor = listen<BoxListener>(box, calls, "r");
  Key const one = C::keys[0];
  Key const two = C::keys[1];
  Value const none = C::values[0];
  Value const full = C::values[1];
};

using Every = testing::Types<Counts, Faps, Wanted, Notes, Vlans>;
TYPED_TEST_SUITE(Collections, Every);

TYPED_TEST(Collections, AnAbsentKeyReadsAsTheDefaultAndEachReadIsCounted) {
  this->set(this->two, this->full);
  U32 const before = this->box->readCount();
  EXPECT_TRUE(this->get(this->one) == this->none);
  EXPECT_TRUE(this->get(this->two) == this->full);
  EXPECT_EQ(this->box->readCount(), before + 2);
  EXPECT_EQ(this->count(), 1U);
}

TYPED_TEST(Collections, ASetterStoresCountsAndTellsAndTheSameValueAgainIsNothing) {
  this->reactor->always = [&] {
    EXPECT_EQ(this->count(), 1U) << "told of what stands";
    EXPECT_EQ(this->box->writeCount(), 1U) << "and is counted";
    this->reactor->always = nullptr;
  };
  // The default on an absent key is a change: it is absent no longer.
  Calls const told{this->told(this->one)};
  EXPECT_EQ(this->effect(1, [&] { this->set(this->one, this->none); }), told);
  EXPECT_EQ(this->effect(0, [&] { this->set(this->one, this->none); }), Calls{});
  auto const* const element = this->first().ptr();
  EXPECT_EQ(this->effect(1, [&] { this->set(this->one, this->full); }), told);
  EXPECT_EQ(this->first().ptr(), element) << "the value is replaced in place";
  EXPECT_EQ(this->effect(0, [&] { this->set(this->one, this->full); }), Calls{});
  EXPECT_TRUE(this->get(this->one) == this->full);
  EXPECT_EQ(this->count(), 1U);
}

TYPED_TEST(Collections, ASetterHoldsTheElementThatAReactorRemoves) {
  auto* element = this->first().ptr();
  this->reactor->nextDo({[&] {
    element = this->first().ptr();
    this->del(this->one);
    EXPECT_EQ(element->references(), 1U) << "the setter's own";
    EXPECT_TRUE(element->value() == this->full);
  }});
  EXPECT_EQ(this->effect(2, [&] { this->set(this->one, this->full); }),
            (Calls{this->told(this->one), this->told(this->one)}));
  EXPECT_EQ(this->count(), 0U);
}

TYPED_TEST(Collections, AMakerEntersWithoutACountOrACall) {
  EXPECT_EQ(this->effect(0, [&] { this->makeAt(this->one, this->none); }), Calls{});
  EXPECT_EQ(this->count(), 1U);
  auto const old = Ptr(this->first().ptr());
  Ptr<typename TypeParam::Element> made;
  EXPECT_EQ(this->effect(0, [&] { made = this->makeAt(this->one, this->full); }), Calls{});
  EXPECT_EQ(this->count(), 1U) << "the new one stands in the place of the old one";
  EXPECT_EQ(this->first().ptr(), made.ptr());
  EXPECT_EQ(made->references(), 2U);
  EXPECT_EQ(old->references(), 1U);
  EXPECT_TRUE(old->value() == this->none);
}

TYPED_TEST(Collections, ARemovalIsToldWhenTheElementIsGoneAndGivesItsValue) {
  auto const absent = [&] { EXPECT_TRUE(this->del(this->two) == this->none); };
  EXPECT_EQ(this->effect(0, absent), Calls{});
  this->makeAt(this->one, this->full);
  EXPECT_EQ(this->effect(0, absent), Calls{});
  this->reactor->nextDo({[&] {
    EXPECT_EQ(this->count(), 0U);
    EXPECT_FALSE(this->at(this->one));
    EXPECT_EQ(this->box->writeCount(), 1U);
  }});
  EXPECT_EQ(this->effect(1, [&] { EXPECT_TRUE(this->del(this->one) == this->full); }), Calls{this->told(this->one)});
  this->makeAt(this->one, this->none);
  EXPECT_EQ(this->effect(1, [&] { EXPECT_TRUE(this->del(this->one) == this->none); }), Calls{this->told(this->one)})
      << "what held the default is told apart from what was absent";
}

TYPED_TEST(Collections, ARemovalReadsTheValueWhenAllReactorsHaveRun) {
  for (bool const byIterator : {false, true}) {
    auto const element = this->makeAt(this->one, this->none);
    this->reactor->nextDo({[&] { element->valueIs(this->full); }});
    auto it = this->first();
    auto const value = byIterator ? this->delAt(it) : this->del(this->one);
    EXPECT_TRUE(value == this->full);
  }
}

TYPED_TEST(Collections, ARemovalByIteratorKeepsThePlace) {
  this->fill();
  auto const keys = this->walk();
  auto it = this->first();
  for (auto const& key : keys) {
    ASSERT_TRUE(it);
    EXPECT_TRUE(it->key() == key);
    EXPECT_EQ(this->effect(1, [&] { EXPECT_TRUE(this->delAt(it) == this->full); }), Calls{this->told(key)});
    EXPECT_TRUE(it->key() == key) << "the iterator still stands on what it removed";
    ++it;
  }
  EXPECT_FALSE(it);
  EXPECT_EQ(this->effect(0, [&] { EXPECT_TRUE(this->delAt(it) == this->none); }), Calls{}) << "at the end";
}

TYPED_TEST(Collections, AnElementThatHasLeftIsNotRemovedThroughItsIterator) {
  auto const nothing = [&](auto& it) {
    EXPECT_EQ(this->effect(0, [&] { EXPECT_TRUE(this->delAt(it) == this->none); }), Calls{});
  };
  this->makeAt(this->one, this->full);
  auto it = this->first();
  EXPECT_TRUE(this->delAt(it) == this->full);
  nothing(it);
  this->set(this->one, this->full);
  nothing(it);
  EXPECT_EQ(this->count(), 1U) << "another element stands at that key";
  it = this->first();
  this->makeAt(this->one, this->none);
  nothing(it);
  EXPECT_EQ(this->count(), 1U);
}

TYPED_TEST(Collections, RemovingAllCountsAndTellsEachInTheOrderOfAWalk) {
  EXPECT_EQ(this->effect(0, [&] { this->delAll(); }), Calls{});
  this->fill();
  auto const keys = this->walk();
  EXPECT_EQ(keys.size(), std::size(TypeParam::keys));
  U32 left = this->count();
  this->reactor->always = [&] { EXPECT_EQ(this->count(), --left); };
  EXPECT_EQ(this->effect(this->count(), [&] { this->delAll(); }), this->toldOf(keys));
  EXPECT_EQ(this->count(), 0U);
}

TYPED_TEST(Collections, RemovingAllMeetsWhatAReactorPutsAheadAndNotWhatItPutsBehind) {
  this->fill();
  auto keys = this->walk();
  auto const last = keys.back();
  this->del(last);
  this->reactor->nextDo({{}, [&] {
                           this->makeAt(keys[0], this->full);
                           this->makeAt(keys[1], this->full);
                           this->makeAt(last, this->full);
                         }});
  EXPECT_EQ(this->effect(this->count() + 1, [&] { this->delAll(); }), this->toldOf(keys));
  keys.resize(2);
  EXPECT_TRUE(this->walk() == keys);
}

TYPED_TEST(Collections, ANotificationTellsAndChangesNothing) {
  this->makeAt(this->two, this->full);
  for (auto const& key : {this->one, this->two}) {
    EXPECT_EQ(this->effect(0, [&] { std::invoke(TypeParam::notify, *this->box, key); }), Calls{this->told(key)});
  }
  EXPECT_EQ(this->count(), 1U);
}

TYPED_TEST(Collections, ASetFromWithinIsToldToAllBeforeTheOuterWalkGoesOn) {
  auto const second = listen<BoxListener>(this->box, this->calls, "s");
  this->reactor->nextDo({[&] { this->set(this->one, this->none); }});
  auto const r = this->told(this->one);
  auto const s = this->told(this->one, "s");
  EXPECT_EQ(this->effect(2, [&] { this->set(this->one, this->full); }), (Calls{r, r, s, s}));
  EXPECT_TRUE(this->get(this->one) == this->none);
}

TYPED_TEST(Collections, AFailureIsToldWithTheNumberAndTheNextReactorIsCalled) {
  auto const second = listen<BoxListener>(this->box, this->calls, "s");
  this->reactor->nextDo({[] { throw 1; }});
  EXPECT_EQ(this->effect(1, [&] { this->set(this->one, this->full); }),
            (Calls{this->told(this->one), "r exception " + std::to_string(TypeParam::id), this->told(this->one, "s")}));
}

TYPED_TEST(Collections, ASecondFailureReachesTheCallerWithTheChangeMadeAndCounted) {
  auto const second = listen<BoxListener>(this->box, this->calls, "s");
  auto const failing = [&](auto const& act) {
    this->reactor->nextDo({[] { throw 1; }, [] { throw std::string("second"); }});
    auto const heard = this->effect(1, [&] { EXPECT_THROW(act(), std::string); });
    EXPECT_EQ(heard.size(), 2U) << "the second reactor is not called";
  };
  this->fill();
  auto it = this->at(this->two);
  failing([&] { this->set(this->one, this->none); });
  EXPECT_TRUE(this->get(this->one) == this->none);
  EXPECT_EQ(this->at(this->one)->references(), 2U) << "the collection's and this iterator's";
  failing([&] { this->del(this->one); });
  EXPECT_FALSE(this->at(this->one));
  failing([&] { this->delAt(it); });
  EXPECT_EQ(it->references(), 1U);
  auto const left = this->walk();
  failing([&] { this->delAll(); });
  EXPECT_TRUE(this->walk() == std::vector(left.begin() + 1, left.end())) << "the others stand";
  EXPECT_EQ(this->box->references(), 1U);
}

TYPED_TEST(Collections, TheBoxLivesToTheEndOfWhatDroppedItsLastReference) {
  struct Act {
    char const* what;
    void (*act)(Collections<TypeParam>&);
    std::size_t calls;
  };
  for (Act const& c : {
           Act{"set", [](auto& t) { t.set(t.one, t.none); }, 1},
           Act{"del", [](auto& t) { t.del(t.one); }, 1},
           Act{"delAll", [](auto& t) { t.delAll(); }, std::size(TypeParam::keys)},
       }) {
    SCOPED_TRACE(c.what);
    this->box = toyBoxFactory("box");
    this->raw = this->box.ptr();
    this->reactor->notifierIs(this->box);
    this->fill();
    this->calls.clear();
    this->reactor->nextDo({[&] { this->box = nullptr; }});
    c.act(*this);
    ASSERT_EQ(this->calls.size(), c.calls + 1);
    EXPECT_EQ(this->calls.back(), "r end");
  }
}

TYPED_TEST(Collections, GoUntoldWithTheirBoxAndAnElementThatIsHeldStays) {
  this->fill();
  auto const held = Ptr(this->first().ptr());
  this->calls.clear();
  this->box = nullptr;
  EXPECT_EQ(this->calls, Calls{"r end"});
  EXPECT_EQ(held->references(), 1U);
  EXPECT_TRUE(held->value() == this->full);
}

struct Boxes : LeakCheck {
  Calls calls;
  Ptr<ToyBox> box = toyBoxFactory("box");
};

TEST_F(Boxes, OrderedCollectionsAreWalkedByRisingKey) {
  for (U32 const key : {8U, ~0U, 1U, 0U}) box->countsIs(key, 1);
  for (int const key : {8, 2048, 1, 0}) box->fapsIs(static_cast<unsigned short>(key), 1);
  auto const reactor = listen<BoxListener>(box, calls, "r");
  box->countsDelAll();
  box->fapsDelAll();
  EXPECT_EQ(calls, (Calls{"r counts 0", "r counts 1", "r counts 8", "r counts 4294967295", "r faps 0", "r faps 1",
                          "r faps 8", "r faps 2048"}));
}

TEST_F(Boxes, CollectionsOfABoxAreIndependent) {
  box->countsIs(1, 2);
  box->wantedIs(1, true);
  box->wantedDelAll();
  EXPECT_EQ(box->counts(1), 2U);
}

TEST_F(Boxes, OnlyTheSlotWithTheKeyIsCalled) {
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

TEST_F(Boxes, AKeyOutlivesTheElementThatItWasTakenFrom) {
  // The reactor removes the element whose key its caller passed on.
  box->notesIs("key", {1, 2, "x"});
  auto const reactor = listen<BoxListener>(box, calls, "r");
  auto const second = listen<BoxListener>(box, calls, "s");
  reactor->nextDo({[&] { box->notesDelAll(); }});
  box->notesIs(box->notesIterator()->key(), {3, 4, "y"});
  EXPECT_EQ(calls, (Calls{"r notes key", "r notes key", "s notes key", "s notes key"}));
}

}  // namespace

}  // namespace Toys
