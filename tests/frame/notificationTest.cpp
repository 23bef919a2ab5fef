#include "dornl3/core/Exception.h"
#include "dornl3/core/Throwers.h"
#include "tests/core/Counted.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Listener.h"

#include <optional>

using namespace Vek;

namespace Toys {

namespace {

struct Notification : LeakCheck {
  Ptr<ToyListener> reactor(std::string label) { return listen<ToyListener>(toy, calls, std::move(label)); }
  Calls change() {
    calls.clear();
    toy->sizeInc(1);
    return calls;
  }
  Vek::U32 count() const { return Vek::reactorsOf<Toy>(*toy).count(); }

  Calls calls;
  Ptr<Toy> toy = toyFactory("toy");
};

TEST_F(Notification, AFreshReactorIsActiveUnregisteredAndFollowsNobody) {
  auto const fresh = make<ToyListener>(calls, "fresh");
  EXPECT_EQ(fresh->vek_bitSet().word(), 0x04000000U);
  EXPECT_TRUE(fresh->name() == "");
  EXPECT_EQ(fresh->vekReactor().ptr(), fresh.ptr());
  fresh->notifierIs(toy);
  EXPECT_TRUE(fresh->name() == "toy");
  EXPECT_EQ(count(), 0U);
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
    one->notifierIs(make<ToyListener>(calls, "no entity at all"));
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(toy->references(), 1U);
    EXPECT_EQ(stone->references(), 1U);
  }
}

TEST_F(Notification, WhoWorksForALogAdapterStandsWhereThatWould) {
  using Root = Vek::PtrInterface::NotifieeConst;
  struct Agent : ToyListener {
    Agent(Calls& calls, bool forAdapter) : ToyListener(calls, "agent"), principal(make<PlainReactor>(forAdapter)) {}
    Ptr<Root const> vekReactor() const override { return principal; }
    Root const* vekRawReactor() const noexcept override { return principal.ptr(); }
    Ptr<PlainReactor> principal;
  };
  auto const a = reactor("a");
  for (bool const adapter : {true, false}) {
    auto const agent = make<Agent>(calls, adapter);
    agent->notifierIs(toy);
    agent->isRegisteredNotifieeIs(true);
    EXPECT_EQ(change(), adapter ? (Calls{"agent size", "a size"}) : (Calls{"a size", "agent size"}));
  }
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
  a->nextDo({[&] {
               inCall = expected();
               throw 1;
             },
             [&] { inFailure = expected(); }});
  change();
  EXPECT_EQ(inCall, true);
  EXPECT_EQ(inFailure, false);
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
  EXPECT_EQ(Flags::notificationBitMask(), 0xfa8fffffU);
  auto const one = reactor("one");
  one->vek_bitSetIs(Flags{0xffffffff});
  EXPECT_EQ(one->vek_bitSet().word(), 0xfe8fffffU);
  one->vek_bitSetIs(Flags{0});
  EXPECT_EQ(one->vek_bitSet().word(), 0x04000000U);
}

}  // namespace

}  // namespace Toys
