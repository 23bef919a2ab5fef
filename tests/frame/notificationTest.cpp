#include "core/Exception.h"
#include "core/Throwers.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Recorder.h"

#include <optional>

using Vek::make;
using Vek::Ptr;

namespace Toys {

namespace {

struct Notification : LeakCheck {
  // A registered reactor of the toy.
  Ptr<Recorder> reactor(std::string label, bool adapter = false) {
    auto made = make<Recorder>(calls, std::move(label), adapter);
    made->isRegisteredNotifieeIs(true);
    made->notifierIs(toy);
    return made;
  }
  Calls change() {
    calls.clear();
    toy->sizeInc(1);
    return calls;
  }
  Vek::U32 version() const { return Vek::reactorsOf<Toy>(*toy).version(); }
  Vek::U32 count() const { return Vek::reactorsOf<Toy>(*toy).count(); }

  Calls calls;
  Ptr<Toy> toy = toyFactory("toy");
  Ptr<Toy> other = toyFactory("other");
};

TEST_F(Notification, AFreshReactorIsActiveUnregisteredAndFollowsNobody) {
  auto const fresh = make<Recorder>(calls, "fresh");
  EXPECT_TRUE(fresh->hasNotificationActive());
  EXPECT_FALSE(fresh->isRegisteredNotifiee());
  EXPECT_FALSE(fresh->isWeakReference());
  EXPECT_EQ(fresh->rawNotifier(), nullptr);
  EXPECT_EQ(fresh->vek_bitSet().word(), 0x04000000U);
  EXPECT_TRUE(fresh->name() == "");
  EXPECT_EQ(fresh->vekReactor().ptr(), fresh.ptr());
  fresh->notifierIs(toy);
  EXPECT_TRUE(fresh->name() == "toy");
  EXPECT_EQ(count(), 0U);
}

TEST_F(Notification, RegisteringTwiceEntersOnceAndEachStepCountsAVersion) {
  auto const one = make<Recorder>(calls, "one");
  one->notifierIs(toy);
  EXPECT_EQ(version(), 0U);
  for (int i = 0; i < 2; ++i) one->isRegisteredNotifieeIs(true);
  EXPECT_EQ(version(), 1U);
  one->notifierIs(toy);
  EXPECT_EQ(version(), 1U) << "the present notifier: nothing happens";
  for (int i = 0; i < 2; ++i) one->isRegisteredNotifieeIs(false);
  one->notifierIs(toy);
  EXPECT_EQ(version(), 2U);
  EXPECT_EQ(count(), 0U);
  EXPECT_EQ(toy->references(), 2U);
}

TEST_F(Notification, AReactorWithoutANotifierKeepsItsWishToBeRegistered) {
  auto const one = reactor("one");
  one->notifierIs(nullptr);
  EXPECT_TRUE(one->isRegisteredNotifiee());
  EXPECT_EQ(change(), Calls{});
  EXPECT_EQ(toy->references(), 1U);
  one->notifierIs(toy);
  EXPECT_EQ(change(), Calls{"one size"});
}

TEST_F(Notification, AMovedReactorHearsItsNewNotifierAlone) {
  auto const one = reactor("one");
  auto const two = reactor("two");
  one->notifierIs(other);
  EXPECT_EQ(toy->references(), 2U);
  EXPECT_EQ(other->references(), 2U);
  other->brokenIs(true);
  EXPECT_EQ(calls, Calls{"one broken"});
  EXPECT_EQ(change(), Calls{"two size"});
  one->notifierIs(toy);
  EXPECT_EQ(change(), (Calls{"two size", "one size"}));
}

TEST_F(Notification, AWeakReactorOwnsNoReferenceWhereverItGoes) {
  auto const one = reactor("one");
  one->isWeakReferenceIs(true);
  EXPECT_EQ(toy->references(), 1U);
  one->notifierIs(other);
  one->notifierIs(toy);
  EXPECT_EQ(toy->references(), 1U);
  EXPECT_EQ(other->references(), 1U);
  one->isWeakReferenceIs(false);
  EXPECT_EQ(toy->references(), 2U);
  one->notifierIs(other);
  EXPECT_EQ(toy->references(), 1U);
  EXPECT_EQ(other->references(), 2U);
}

TEST_F(Notification, ANotifierOfAnotherTypeIsNobody) {
  struct Stone : Vek::Entity {
    Stone() : Entity("stone") {}
  };
  auto const stone = make<Stone>();
  for (bool const weak : {false, true}) {
    auto const one = reactor("one");
    one->isWeakReferenceIs(weak);
    one->notifierIs(stone);
    EXPECT_EQ(one->rawNotifier(), nullptr);
    EXPECT_TRUE(one->isRegisteredNotifiee());
    one->notifierIs(make<Recorder>(calls, "no entity at all"));
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(toy->references(), 1U);
    EXPECT_EQ(stone->references(), 1U);
  }
}

TEST_F(Notification, LogAdaptersHearFirstAndTheNewestOfThemBeforeAll) {
  auto const a = reactor("a");
  auto const b = reactor("b");
  auto const log = reactor("log", true);
  EXPECT_EQ(change(), (Calls{"log size", "a size", "b size"}));
  auto const log2 = reactor("log2", true);
  auto const c = reactor("c");
  EXPECT_EQ(change(), (Calls{"log2 size", "log size", "a size", "b size", "c size"}));
}

TEST_F(Notification, WhoWorksForALogAdapterStandsWhereThatWould) {
  struct Agent : Recorder {
    Agent(Calls& calls, Ptr<Recorder> principal) : Recorder(calls, "agent"), principal_(std::move(principal)) {}
    using Root = Vek::PtrInterface::NotifieeConst;
    Ptr<Root const> vekReactor() const override { return principal_; }
    Root const* vekRawReactor() const noexcept override { return principal_.ptr(); }
    Ptr<Recorder> principal_;
  };
  auto const a = reactor("a");
  for (bool const adapter : {true, false}) {
    auto const agent = make<Agent>(calls, make<Recorder>(calls, "principal", adapter));
    agent->notifierIs(toy);
    agent->isRegisteredNotifieeIs(true);
    EXPECT_EQ(change(), adapter ? (Calls{"agent size", "a size"}) : (Calls{"a size", "agent size"}));
  }
}

TEST_F(Notification, TheTailTakenOffLeavesTheOneBeforeItAsTail) {
  auto const a = reactor("a");
  auto const b = reactor("b");
  auto c = reactor("c");
  c = nullptr;
  auto const d = reactor("d");
  EXPECT_EQ(change(), (Calls{"a size", "b size", "d size"}));
}

TEST_F(Notification, AReactorRemovingItselfDoesNotHideTheNextOne) {
  auto a = reactor("a");
  auto const b = reactor("b");
  a->next = [&] { a->notifierIs(nullptr); };
  EXPECT_EQ(change(), (Calls{"a size", "b size"}));
  EXPECT_EQ(change(), (Calls{"b size"}));
}

TEST_F(Notification, AReactorDroppingItsLastReferenceLivesToTheEndOfItsCall) {
  auto a = reactor("a");
  auto const b = reactor("b");
  a->next = [&] {
    a = nullptr;
    calls.push_back("still here");
  };
  EXPECT_EQ(change(), (Calls{"a size", "still here", "a gone", "b size"}));
}

TEST_F(Notification, AReactorThatNobodyElseHoldsIsPassedOver) {
  auto const a = reactor("a");
  auto b = reactor("b");
  auto const c = reactor("c");
  a->next = [&] { b = nullptr; };
  EXPECT_EQ(change(), (Calls{"a size", "b gone", "c size"}));
  EXPECT_EQ(count(), 2U);
}

TEST_F(Notification, AReactorTakenOffButHeldIsStillCalled) {
  auto const a = reactor("a");
  auto const b = reactor("b");
  a->next = [&] { b->isRegisteredNotifieeIs(false); };
  EXPECT_EQ(change(), (Calls{"a size", "b size"}));
  EXPECT_EQ(change(), Calls{"a size"});
}

TEST_F(Notification, AReactorAddedDuringAWalkHearsTheNextChange) {
  auto const a = reactor("a");
  Ptr<Recorder> b;
  Ptr<Recorder> log;
  a->next = [&] {
    b = reactor("b");
    log = reactor("log", true);
  };
  EXPECT_EQ(change(), Calls{"a size"});
  EXPECT_EQ(change(), (Calls{"log size", "a size", "b size"}));
}

TEST_F(Notification, AChangeFromWithinIsToldToAllBeforeTheOuterWalkGoesOn) {
  auto const a = reactor("a");
  auto const b = reactor("b");
  a->next = [&] { toy->sizeIs(77); };
  b->next = [&] { EXPECT_EQ(toy->size(), 77U) << "what a reactor reads is the state of the moment"; };
  EXPECT_EQ(change(), (Calls{"a size", "a size", "b size", "b size"}));
}

TEST_F(Notification, AFailingReactorIsToldAndTheNextIsCalled) {
  auto const a = reactor("a");
  auto const b = reactor("b");
  a->next = [] { throw 1; };
  calls.clear();
  auto const writes = toy->writeCount();
  EXPECT_NO_THROW(toy->brokenIs(true));
  EXPECT_EQ(calls, (Calls{"a broken", "a exception 259", "b broken"}));
  EXPECT_TRUE(toy->broken());
  EXPECT_EQ(toy->writeCount(), writes + 1);
}

TEST_F(Notification, ASecondFailureEndsTheWalkAndReachesTheCaller) {
  auto const a = reactor("a");
  auto const b = reactor("b");
  a->next = [] { throw 1; };
  a->thenDo([] { throw std::string("second"); });
  calls.clear();
  auto const writes = toy->writeCount();
  EXPECT_THROW(toy->sizeIs(5), std::string);
  EXPECT_EQ(calls, (Calls{"a size", "a exception 258"}));
  EXPECT_EQ(toy->size(), 5U);
  EXPECT_EQ(toy->writeCount(), writes + 1);
  EXPECT_EQ(b->references(), 1U);
  EXPECT_EQ(toy->references(), 3U);
}

TEST_F(Notification, ExceptionsInAReactorAreExpectedAndThoseOfItsFailureAreNot) {
  auto const expected = []() -> std::optional<bool> {
    try {
      Vek::throwRangeException("x");
    } catch (Vek::Exception const& e) {
      return e.expected();
    }
    return {};
  };
  auto const a = reactor("a");
  std::optional<bool> inCall;
  std::optional<bool> inFailure;
  a->next = [&] {
    inCall = expected();
    throw 1;
  };
  a->thenDo([&] { inFailure = expected(); });
  change();
  EXPECT_EQ(inCall, true);
  EXPECT_EQ(inFailure, false);
}

TEST_F(Notification, TheWalkHoldsTheToyWhoseLastReferenceGoes) {
  auto const a = reactor("a");
  auto const b = reactor("b");
  for (auto const& r : {a, b}) r->isWeakReferenceIs(true);
  Toy* const raw = toy.ptr();
  a->next = [&] { toy = nullptr; };
  b->next = [&] { EXPECT_EQ(raw->size(), 9U); };
  EXPECT_EQ(raw->sizeInc(9), 9U);
  EXPECT_EQ(calls, (Calls{"a size", "b size", "a end", "b end"}));
  EXPECT_EQ(a->rawNotifier(), nullptr) << "a weak reactor lets its toy go";
  EXPECT_TRUE(a->isRegisteredNotifiee());
}

TEST_F(Notification, AToyThatIsKeptWhenItTellsItsEndLivesOn) {
  auto const a = reactor("a");
  a->isWeakReferenceIs(true);
  Toy* const raw = toy.ptr();
  a->next = [&] {
    a->notifierIs(raw);
    toy = raw;
  };
  toy = nullptr;
  EXPECT_EQ(calls, Calls{"a end"});
  ASSERT_TRUE(toy);
  EXPECT_EQ(toy->references(), 1U);
  EXPECT_EQ(change(), Calls{"a size"});
}

// The walk of the end reaches neither of these two, and the toy goes all the same.
TEST_F(Notification, AWeakReactorThatIsNotToldOfTheEndIsLetGo) {
  auto const fails = reactor("fails");
  auto const untold = reactor("untold");
  auto const late = make<Recorder>(calls, "late");
  for (auto const& r : {fails, untold, late}) r->isWeakReferenceIs(true);
  fails->next = [&, raw = toy.ptr()] {
    late->isRegisteredNotifieeIs(true);
    late->notifierIs(raw);
    throw 1;
  };
  fails->thenDo([] { throw 2; });
  toy = nullptr;
  EXPECT_EQ(calls, (Calls{"fails end", "fails exception 5"}));
  for (auto const& r : {untold, late}) {
    EXPECT_EQ(r->rawNotifier(), nullptr);
    r->notifierIs(other);
  }
  calls.clear();
  other->brokenIs(true);
  EXPECT_EQ(calls, (Calls{"untold broken", "late broken"}));
}

TEST_F(Notification, SwitchedOffAReactorIsOffTheListAndRemembersWhetherItWasOn) {
  auto const one = reactor("one");
  for (bool const registered : {true, false}) {
    one->isRegisteredNotifieeIs(registered);
    for (int i = 0; i < 2; ++i) one->hasNotificationActiveIs(false);
    EXPECT_FALSE(one->isRegisteredNotifiee());
    EXPECT_EQ(one->vek_bitSet().word(), registered ? 0x04080000U : 0x04000000U);
    EXPECT_EQ(change(), Calls{});
    for (int i = 0; i < 2; ++i) one->hasNotificationActiveIs(true);
    EXPECT_EQ(one->isRegisteredNotifiee(), registered);
    EXPECT_EQ(change(), registered ? Calls{"one size"} : Calls{});
  }
}

TEST_F(Notification, FlagsGivenToAReactorLeaveItsState) {
  using Flags = Vek::PtrInterface::NotifieeConst::Vek_BitSet;
  auto const one = reactor("one");
  one->vek_bitSetIs(Flags{0xffffffff});
  EXPECT_EQ(one->vek_bitSet().word(), 0xfe8fffffU);
  one->vek_bitSetIs(Flags{0});
  EXPECT_EQ(one->vek_bitSet().word(), 0x04000000U);
}

}  // namespace

}  // namespace Toys
