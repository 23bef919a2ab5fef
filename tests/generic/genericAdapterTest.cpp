// The events of a generic: told at once, or put off and coalesced.
#include "dornl3/core/Exception.h"
#include "dornl3/core/Throwers.h"
#include "dornl3/platform/vek/Activity.h"
#include "dornl3/platform/vek/GenericIfEntity.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace Toys;
using namespace Vek;

using Events = std::vector<std::string>;

class Hears final : public GenericIf::Subscriber {
 public:
  void onAttribute(AttributeId id, Vek::Ptr<GenericIf const> const& key) override {
    heard.push_back(std::to_string(id) + (key ? "[" + std::string(key->strRep()) + "]" : ""));
    keyIsConst = key && key->isConst();
    if (then) then();
  }
  Events heard;
  bool keyIsConst = false;
  std::function<void()> then;
};

class GenericAdapter : public LeakCheck {
 protected:
  GenericAdapter() { hears.genericIs(g.ptr()); }

  Vek::Ptr<ToyBox> box = toyBoxFactory("box");
  Vek::Ptr<Vek::GenericIfEntity> g = Vek::ptrCast<Vek::GenericIfEntity>(Vek::VekType::genericIf(box.ptr(), false));
  Vek::Ptr<Vek::Activity> activity = Vek::make<Vek::Activity>();
  Hears hears;
};

TEST_F(GenericAdapter, TellsEveryKindOfAttributeAtOnce) {
  EXPECT_EQ(box->references(), 2U) << "the adapter holds none";
  box->countsIs(7, 1);
  box->lidIs("lid");
  box->shelvesIs("top");
  box->countsDel(7);
  EXPECT_EQ(hears.heard, (Events{"258[7]", "265", "266['top']", "258[7]"}));
  EXPECT_FALSE(hears.keyIsConst) << "as the generic";
  auto const fixed = Vek::VekType::genericIf(box.ptr(), true);
  hears.genericIs(fixed.ptr());
  box->countsNotify(1);
  EXPECT_TRUE(hears.keyIsConst);
}

TEST_F(GenericAdapter, OnePutOffEventComesWithItsKeyAndSeveralAsOne) {
  g->activityIs(activity);
  box->wantedIs(3, true);
  EXPECT_EQ(hears.heard, Events{});
  EXPECT_EQ(activity->run(), 1U);
  EXPECT_EQ(hears.heard, Events{"260[3]"});

  hears.heard.clear();
  for (int i = 0; i < 256; ++i) box->wantedIs(3, i % 2 != 0);  // events are counted, not keys
  EXPECT_EQ(activity->run(), 1U);
  EXPECT_EQ(hears.heard, Events{"260"});
  EXPECT_EQ(activity->run(), 0U);
  EXPECT_EQ(hears.heard.size(), 1U);
}

TEST_F(GenericAdapter, EventsOfSeveralAttributesSweepWhatChangedAndAllScalars) {
  g->activityIs(activity);
  box->countsIs(1, 1);
  box->wantedIs(2, true);
  box->wantedIs(3, true);
  activity->run();
  EXPECT_EQ(hears.heard, (Events{"258[1]", "260", "265"}));
}

TEST_F(GenericAdapter, WhatADeliveryCausesWaitsForTheNextRun) {
  struct Idle final : ToyBox::Notifiee {};
  auto const idle = Vek::make<Idle>();
  hears.then = [&] {
    activity->enqueue(*idle);
    activity->run();  // a delivery inside this one, which tells nothing
    box->countsIs(1, box->counts(1) + 1);
  };
  g->activityIs(activity);
  box->countsIs(1, 1);
  for (std::size_t run = 1; run < 3; ++run) {
    activity->run();
    EXPECT_EQ(hears.heard, Events(run, "258[1]"));
  }
  hears.then = nullptr;
}

TEST_F(GenericAdapter, WhatADeliveryWithoutAKeyCausesWaitsTooAndDoesNotBreakIntoASweep) {
  hears.then = [&] {
    if (hears.heard.size() == 1) box->lidIs(Vek::Name(std::string_view(std::to_string(box->writeCount()))));
  };
  g->activityIs(activity);
  box->countsIs(1, 1);
  box->countsIs(2, 2);
  activity->run();
  EXPECT_EQ(hears.heard, Events{"258"});
  activity->run();
  EXPECT_EQ(hears.heard, (Events{"258", "265"}));

  hears.heard.clear();
  g->sweepIs();
  box->countsIs(3, 3);  // makes no less of it
  activity->run();
  EXPECT_EQ(hears.heard, (Events{"258", "259", "260", "261", "263", "265", "266"}));
  activity->run();
  EXPECT_EQ(hears.heard.back(), "265");
}

TEST_F(GenericAdapter, SwitchedOffItHearsNothingAndOnAgainAsItDidBefore) {
  auto const adapter = g->adapter();
  struct {
    char const* what;
    bool registered;
    std::function<void(bool)> on;
  } const ways[] = {
      {"by itself", true, [&](bool on) { g->hasNotificationActiveIs(on); }},
      {"by its adapter and itself", true,
       [&](bool on) { on ? g->hasNotificationActiveIs(true) : adapter->hasNotificationActiveIs(false); }},
      {"marked and revived", true, [&](bool on) { g->vekDoZombieReactors(!on); }},
      {"off the list before", false, [&](bool on) { g->hasNotificationActiveIs(on); }},
  };
  for (auto const& way : ways) {
    SCOPED_TRACE(way.what);
    adapter->isRegisteredNotifieeIs(way.registered);
    hears.heard.clear();
    way.on(false);
    EXPECT_FALSE(g->hasNotificationActive());
    box->countsNotify(1);
    EXPECT_EQ(hears.heard, Events{});
    way.on(true);
    EXPECT_TRUE(adapter->hasNotificationActive());
    EXPECT_FALSE(g->isRegisteredNotifiee()) << "that is the adapter's";
    box->countsNotify(1);
    EXPECT_EQ(hears.heard.size(), way.registered ? 1U : 0U);
  }
  g->vekDoZombieReactors(true);
  adapter->hasNotificationActiveIs(true);
  EXPECT_FALSE(g->hasNotificationActive()) << "it is marked";
}

TEST_F(GenericAdapter, FollowsAnotherEntityAndTakesOneOfAnotherTypeForNobodyAsItsAdapterDoes) {
  auto const toy = toyFactory("toy");
  g->notifierIs(toy);
  EXPECT_FALSE(g->obj());
  EXPECT_EQ(toy->references(), 1U);
  EXPECT_EQ(box->references(), 1U);
  EXPECT_THROW(g->attributeOp({258, GenericIf::OpCount}, nullptr, nullptr), Vek::TypeException);
  auto const other = toyBoxFactory("other");
  g->notifierIs(other);
  box->countsIs(1, 1);
  other->countsIs(2, 2);
  EXPECT_EQ(hears.heard, Events{"258[2]"});
  EXPECT_EQ(g->strRep(), "other");
}

TEST_F(GenericAdapter, AWeakGenericLetsItsEntityGo) {
  g->isWeakReferenceIs(true);
  g->activityIs(activity);
  box->countsIs(1, 1);
  box = nullptr;
  EXPECT_FALSE(g->obj());
  EXPECT_FALSE(g->adapter()->hasNotificationActive());
  EXPECT_EQ(g->strRep(), "None");
  activity->run();
  EXPECT_EQ(hears.heard, Events{"258[1]"});
  EXPECT_THROW(g->attributeOp({258, GenericIf::OpCount}, nullptr, nullptr), Vek::TypeException);
}

TEST_F(GenericAdapter, AnExceptionOutOfAnEventWasExpectedDoesNotReachTheSetterAndEndsTheDelivery) {
  std::vector<bool> expected;
  hears.then = [&] {
    try {
      Vek::throwRangeException("thrown");
    } catch (Vek::Exception const& e) {
      expected.push_back(e.expected());
      throw;
    }
  };
  EXPECT_NO_THROW(box->countsIs(1, 1));
  g->activityIs(activity);
  box->countsIs(1, 2);
  EXPECT_NO_THROW(activity->run());
  EXPECT_EQ(expected, (std::vector<bool>{true, true}));
  hears.then = nullptr;
  EXPECT_EQ(activity->run(), 0U);
  box->countsIs(2, 2);
  activity->run();
  EXPECT_EQ(hears.heard, (Events{"258[1]", "258[1]", "258[2]"})) << "the last comes alone, with its key";
}

TEST_F(GenericAdapter, ARunPassesOverWhoHasLeftMeanwhileAndOutlivesItsOwner) {
  auto const woken = std::make_shared<int>(0);
  activity = Vek::make<Vek::Activity>([woken] { ++*woken; });
  auto const other = Vek::ptrCast<Vek::GenericIfEntity>(g->clone());
  for (auto const& generic : {g, other}) generic->activityIs(activity);
  box->lidIs("lid");
  EXPECT_EQ(*woken, 1) << "once for all who wait";
  hears.then = [&] {
    for (auto const& generic : {other, g}) generic->activityIs(nullptr);
    activity = nullptr;
    EXPECT_EQ(woken.use_count(), 2) << "it goes after its run";
  };
  EXPECT_EQ(activity->run(), 1U);
  EXPECT_EQ(woken.use_count(), 1);
}

TEST_F(GenericAdapter, ASubscriberMayDropTheLastReferenceInASweepWithoutAnActivity) {
  hears.then = [&] { g = nullptr; };
  g->sweepIs();
  EXPECT_EQ(hears.heard, (Events{"258", "259", "260", "261", "263", "265", "266"}));
}

TEST_F(GenericAdapter, WhatASweepHasStillToTellGoesWithItsGenericToAnotherActivityOrIsToldAtOnceWithoutOne) {
  for (auto const& other : {Vek::make<Vek::Activity>(), Vek::Ptr<Vek::Activity>{}}) {
    hears.heard.clear();
    hears.then = [&] { g->activityIs(other); };
    g->activityIs(activity);
    box->countsIs(1, box->counts(1) + 1);
    box->wantedIs(2, !box->wanted(2));
    EXPECT_EQ(activity->run(), 1U);
    if (other) {
      EXPECT_EQ(hears.heard, Events{"258[1]"});
      EXPECT_EQ(other->run(), 1U);
    }
    EXPECT_EQ(hears.heard, (Events{"258[1]", "260[2]", "265"}));
  }
}

TEST_F(GenericAdapter, WhatWaitsGoesAlongToAnotherActivityAndIsToldAtOnceWithoutOne) {
  g->activityIs(activity);
  box->lidIs("lid");
  auto const other = Vek::make<Vek::Activity>();
  g->activityIs(other);
  EXPECT_EQ(activity->run(), 0U);
  EXPECT_EQ(other->waiting(), 1U);
  g->activityIs(nullptr);
  EXPECT_EQ(hears.heard, Events{"265"});
}

TEST_F(GenericAdapter, WhoeverSubscribesLastHearsWhatWaitsAlsoWhenADisplacedOneGoes) {
  hears.genericIs(nullptr);
  g->activityIs(activity);
  box->lidIs("lid");
  {
    Hears displaced;
    displaced.genericIs(g.ptr());
    hears.genericIs(g.ptr());
  }
  activity->run();
  EXPECT_EQ(hears.heard, Events{"265"});
}

TEST_F(GenericAdapter, AnEventHasItsNameOnTheGenericSideToo) {
  auto const named = Vek::ptrCast<ToyBox::GenericIf_>(g);
  g->activityIs(activity);
  named->onCounts();
  EXPECT_EQ(hears.heard, Events{"258"}) << "without a key it is never put off";
  named->onShelves("top");
  EXPECT_EQ(hears.heard.size(), 1U);
  activity->run();
  EXPECT_EQ(hears.heard.back(), "266['top']");
}

TEST_F(GenericAdapter, WithoutAGenericAllIsToldAtOnceAndDeliveriesEndInTheSlotsOfTheRoot) {
  class Plain final : public ToyBox::Notifiee {
   public:
    using ToyBox::Notifiee::onNotificationException;
    void onAttribute(AttributeId id) override { heard.push_back("attribute " + std::to_string(id)); }
    void onNotification() override {
      heard.emplace_back("something");
      if (fails) throw 1;
    }
    void onNotificationException(AttributeId id) override { heard.push_back("exception " + std::to_string(id)); }
    void onNotificationException() override { heard.emplace_back("exception"); }
    Events heard;
    bool fails = false;
  };
  auto const plain = Vek::make<Plain>();
  EXPECT_FALSE(plain->activityPtr());
  EXPECT_EQ(plain->actsm(), nullptr);
  plain->handleDefault(nullptr, 258, false);
  plain->handleDefault(nullptr, 0, true);
  plain->handleNotificationException(258);
  plain->fails = true;
  activity->enqueue(*plain);
  activity->run();
  EXPECT_EQ(plain->heard, (Events{"attribute 258", "something", "exception 258", "something", "exception"}));
  g->activityIs(activity);
  EXPECT_EQ(g->activityPtr(), activity);
  EXPECT_EQ(std::as_const(*g).vekFwkActivity(), activity.ptr());
}

TEST_F(GenericAdapter, AnAdapterThatOutlivesItsGenericIsSilent) {
  auto const adapter = g->adapter();
  EXPECT_EQ(adapter->vekRawReactor(), g.ptr());
  g = nullptr;
  EXPECT_FALSE(adapter->vekReactor());
  EXPECT_EQ(adapter->rawNotifier(), nullptr);
  EXPECT_EQ(hears.generic(), nullptr);
  box->countsIs(1, 1);
  adapter->onNotificationException(258);
  adapter->hasNotificationActiveIs(false);
  EXPECT_EQ(hears.heard, Events{});
}

// Whoever holds what, all may go in every order, while events wait and others come.
TEST_F(GenericAdapter, GenericAdapterEntitySubscriberAndActivityGoInAnyOrder) {
  std::vector<unsigned> order{0, 1, 2, 3, 4};
  do {
    for (bool const isKept : {false, true}) {
      Vek::Ptr<ToyBox> entity = toyBoxFactory("other");
      auto generic = Vek::ptrCast<Vek::GenericIfEntity>(Vek::VekType::genericIf(entity.ptr(), false));
      auto adapter = generic->adapter();
      auto subscriber = std::make_unique<Hears>();
      auto queue = Vek::make<Vek::Activity>();
      subscriber->genericIs(generic.ptr());
      generic->activityIs(queue);
      Vek::Ptr<ToyBox> const kept = isKept ? entity : Vek::Ptr<ToyBox>{};
      entity->countsIs(1, 1);
      for (unsigned const who : order) {
        switch (who) {
        case 0: entity = nullptr; break;
        case 1: generic = nullptr; break;
        case 2: adapter = nullptr; break;
        case 3: subscriber = nullptr; break;
        default: queue = nullptr; break;
        }
        if (kept) kept->countsIs(1, kept->counts(1) + 1);
        if (queue && who % 2 == 0) queue->run();  // or else events wait when the next one goes
      }
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

}  // namespace
