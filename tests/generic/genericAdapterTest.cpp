// The events of a generic: told at once, or put off and coalesced.
#include "platform/vek/Activity.h"
#include "platform/vek/GenericIfEntity.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace Toys;
using Vek::AttributeId;
using Vek::GenericIf;

class Hears final : public GenericIf::Subscriber {
 public:
  void onAttribute(AttributeId id, Vek::Ptr<GenericIf const> const& key) override {
    heard.push_back(std::to_string(id) + (key ? "[" + std::string(key->strRep()) + "]" : ""));
    if (throws) throw std::runtime_error("thrown");
  }
  std::vector<std::string> heard;
  bool throws = false;
};

using Events = std::vector<std::string>;

class GenericAdapter : public LeakCheck {
 protected:
  GenericAdapter() { hears.genericIs(g.ptr()); }

  Vek::Ptr<ToyBox> box = toyBoxFactory("box");
  Vek::Ptr<Vek::GenericIfEntity> g = Vek::ptrCast<Vek::GenericIfEntity>(Vek::VekType::genericIf(box.ptr(), false));
  Vek::Ptr<Vek::Activity> activity = Vek::make<Vek::Activity>();
  Hears hears;
};

TEST_F(GenericAdapter, TellsEveryKindOfAttributeAtOnce) {
  box->countsIs(7, 1);
  box->lidIs("lid");
  box->shelvesIs("top");
  box->countsDel(7);
  EXPECT_EQ(hears.heard, (Events{"258[7]", "265", "266['top']", "258[7]"}));
}

TEST_F(GenericAdapter, HoldsItsEntityWithoutItsAdapterHoldingItToo) { EXPECT_EQ(box->references(), 2U); }

TEST_F(GenericAdapter, OnePutOffEventComesWithItsKeyAndSeveralAsOne) {
  g->activityIs(activity);
  box->wantedIs(3, true);
  EXPECT_EQ(hears.heard, Events{});
  EXPECT_EQ(activity->run(), 1U);
  EXPECT_EQ(hears.heard, Events{"260[3]"});

  hears.heard.clear();
  box->wantedIs(3, false);
  box->wantedIs(3, true);  // events are counted, not keys
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

TEST_F(GenericAdapter, AFullSweepTellsEveryAttribute) {
  g->activityIs(activity);
  g->sweepIs();
  activity->run();
  EXPECT_EQ(hears.heard, (Events{"258", "259", "260", "261", "263", "265", "266"}));
}

TEST_F(GenericAdapter, WhatADeliveryCausesWaitsForTheNextRun) {
  class Sets final : public GenericIf::Subscriber {
   public:
    explicit Sets(Vek::Ptr<ToyBox> box) : box_(std::move(box)) {}
    void onAttribute(AttributeId, Vek::Ptr<GenericIf const> const&) override {
      if (++calls < 5) box_->countsIs(1, static_cast<Vek::U32>(calls + 10));
    }
    int calls = 0;

   private:
    Vek::Ptr<ToyBox> box_;
  };
  Sets sets{box};
  sets.genericIs(g.ptr());
  g->activityIs(activity);
  box->countsIs(1, 1);
  activity->run();
  EXPECT_EQ(sets.calls, 1);
  activity->run();
  EXPECT_EQ(sets.calls, 2);
}

TEST_F(GenericAdapter, WhatADeliveryWithoutAKeyCausesWaitsTooAndDoesNotBreakIntoASweep) {
  class SetsOnce final : public GenericIf::Subscriber {
   public:
    explicit SetsOnce(Vek::Ptr<ToyBox> box) : box_(std::move(box)) {}
    void onAttribute(AttributeId id, Vek::Ptr<GenericIf const> const&) override {
      heard.push_back(std::to_string(id));
      if (heard.size() == 1) box_->lidIs(Vek::Name(std::string_view(std::to_string(box_->writeCount()))));
    }
    Events heard;

   private:
    Vek::Ptr<ToyBox> box_;
  };
  SetsOnce sets{box};
  sets.genericIs(g.ptr());
  g->activityIs(activity);
  box->countsIs(1, 1);
  box->countsIs(2, 2);
  activity->run();
  EXPECT_EQ(sets.heard, Events{"258"});
  activity->run();
  EXPECT_EQ(sets.heard, (Events{"258", "265"}));

  sets.heard.clear();
  g->sweepIs();
  activity->run();
  EXPECT_EQ(sets.heard, (Events{"258", "259", "260", "261", "263", "265", "266"}));
  activity->run();
  EXPECT_EQ(sets.heard.back(), "265");
}

TEST_F(GenericAdapter, SwitchedOffItHearsNothingAndOnAgainItDoes) {
  g->hasNotificationActiveIs(false);
  box->countsIs(1, 1);
  g->hasNotificationActiveIs(true);
  box->countsIs(1, 2);
  EXPECT_EQ(hears.heard, Events{"258[1]"});

  g->vekDoZombieReactors(true);
  box->countsIs(1, 3);
  EXPECT_EQ(hears.heard.size(), 1U);
  g->vekDoZombieReactors(false);
  box->countsIs(1, 4);
  EXPECT_EQ(hears.heard.size(), 2U);
}

TEST_F(GenericAdapter, SwitchedOnAgainItIsRegisteredOnlyIfItWas) {
  g->adapter()->isRegisteredNotifieeIs(false);
  g->hasNotificationActiveIs(false);
  g->hasNotificationActiveIs(true);
  box->countsIs(1, 1);
  EXPECT_EQ(hears.heard, Events{});
  EXPECT_FALSE(g->isRegisteredNotifiee()) << "that is the adapter's";
}

TEST_F(GenericAdapter, SwitchingOneEndSwitchesBothUnlessItIsMarked) {
  g->adapter()->hasNotificationActiveIs(false);
  EXPECT_FALSE(g->hasNotificationActive());
  g->hasNotificationActiveIs(true);
  EXPECT_TRUE(g->adapter()->hasNotificationActive());

  g->vekDoZombieReactors(true);
  EXPECT_FALSE(g->hasNotificationActive()) << "the mark is set last";
  g->adapter()->hasNotificationActiveIs(true);
  EXPECT_FALSE(g->hasNotificationActive());
}

TEST_F(GenericAdapter, FollowsAnotherEntity) {
  auto const other = toyBoxFactory("other");
  g->notifierIs(other);
  box->countsIs(1, 1);
  other->countsIs(2, 2);
  EXPECT_EQ(hears.heard, Events{"258[2]"});
  EXPECT_EQ(g->strRep(), "other");
  EXPECT_EQ(box->references(), 1U);
}

TEST_F(GenericAdapter, AWeakGenericLetsItsEntityGo) {
  g->isWeakReferenceIs(true);
  g->activityIs(activity);
  box->countsIs(1, 1);
  box = nullptr;
  EXPECT_FALSE(g->obj());
  EXPECT_EQ(g->strRep(), "None");
  activity->run();
  EXPECT_EQ(hears.heard, Events{"258[1]"});
  EXPECT_THROW(g->attributeOp({258, GenericIf::OpCount}, nullptr, nullptr), Vek::TypeException);
}

TEST_F(GenericAdapter, AnExceptionOutOfAnEventDoesNotReachTheSetter) {
  hears.throws = true;
  EXPECT_NO_THROW(box->countsIs(1, 1));
  EXPECT_EQ(box->counts(1), 1U);
  g->activityIs(activity);
  box->countsIs(1, 2);
  EXPECT_NO_THROW(activity->run());
  EXPECT_EQ(activity->waiting(), 0U);
}

TEST_F(GenericAdapter, ADeliveryThatThrowsIsNotDeliveredTwice) {
  g->activityIs(activity);
  hears.throws = true;
  box->countsIs(1, 1);
  activity->run();
  hears.throws = false;
  activity->run();
  box->countsIs(2, 2);
  activity->run();
  EXPECT_EQ(hears.heard, (Events{"258[1]", "258[2]"})) << "the second event comes alone, with its key";
}

// Takes the generic to another activity, or to none, in the middle of a delivery.
class Moves final : public GenericIf::Subscriber {
 public:
  Moves(Vek::GenericIfEntity& generic, Vek::Ptr<Vek::Activity> to) : to_(std::move(to)) { genericIs(&generic); }
  void onAttribute(AttributeId id, Vek::Ptr<GenericIf const> const& key) override {
    heard.push_back(std::to_string(id) + (key ? "[" + std::string(key->strRep()) + "]" : ""));
    static_cast<Vek::GenericIfEntity&>(*generic()).activityIs(to_);
  }
  Events heard;

 private:
  Vek::Ptr<Vek::Activity> to_;
};

TEST_F(GenericAdapter, WhatASweepHasStillToTellIsPutOffAnewByAnotherActivity) {
  auto const other = Vek::make<Vek::Activity>();
  Moves moves{*g, other};
  g->activityIs(activity);
  box->countsIs(1, 1);
  box->wantedIs(2, true);
  EXPECT_EQ(activity->run(), 1U);
  EXPECT_EQ(moves.heard, Events{"258[1]"});
  EXPECT_EQ(other->run(), 1U);
  EXPECT_EQ(moves.heard, (Events{"258[1]", "260[2]", "265"}));
}

TEST_F(GenericAdapter, WithoutAnActivityTheRestOfASweepIsToldAtOnce) {
  Moves moves{*g, nullptr};
  g->activityIs(activity);
  box->countsIs(1, 1);
  box->wantedIs(2, true);
  EXPECT_EQ(activity->run(), 1U);
  EXPECT_EQ(moves.heard, (Events{"258[1]", "260[2]", "265"}));
}

TEST_F(GenericAdapter, WhoeverSubscribesBeforeTheRunHearsWhatWaits) {
  hears.genericIs(nullptr);
  g->activityIs(activity);
  box->lidIs("lid");
  hears.genericIs(g.ptr());
  activity->run();
  EXPECT_EQ(hears.heard, Events{"265"});
}

TEST_F(GenericAdapter, AnEventHasItsNameOnTheGenericSideToo) {
  auto const named = Vek::ptrCast<ToyBox::GenericIf_>(g);
  named->onLid();
  named->onCounts(7);
  g->activityIs(activity);
  named->onCounts();
  EXPECT_EQ(hears.heard, (Events{"265", "258[7]", "258"})) << "without a key it is never put off";
  named->onShelves("top");
  EXPECT_EQ(hears.heard.size(), 3U);
  activity->run();
  EXPECT_EQ(hears.heard.back(), "266['top']");
}

TEST_F(GenericAdapter, HandsOutKeysAsConstAsItself) {
  class Looks final : public GenericIf::Subscriber {
   public:
    void onAttribute(AttributeId, Vek::Ptr<GenericIf const> const& key) override { isConst = key->isConst(); }
    bool isConst = false;
  };
  for (bool const isConst : {true, false}) {
    auto const generic = Vek::VekType::genericIf(box.ptr(), isConst);
    Looks looks;
    looks.genericIs(generic.ptr());
    box->countsNotify(1);
    EXPECT_EQ(looks.isConst, isConst);
  }
}

TEST_F(GenericAdapter, OnlyAGenericHasAnActivity) {
  class Plain final : public ToyBox::Notifiee {
   public:
    using ToyBox::Notifiee::onNotificationException;
    void onAttribute(AttributeId id) override { heard.push_back("attribute " + std::to_string(id)); }
    void onNotification() override { heard.emplace_back("something"); }
    void onNotificationException(AttributeId id) override { heard.push_back("exception " + std::to_string(id)); }
    void onNotificationException() override { heard.emplace_back("exception"); }
    Events heard;
  };
  auto const plain = Vek::make<Plain>();
  Vek::PtrInterface::NotifieeConst const& constant = *plain;
  EXPECT_FALSE(plain->activityPtr());
  EXPECT_EQ(plain->actsm(), nullptr);
  EXPECT_EQ(constant.vekFwkActivity(), nullptr);
  plain->handleNotification(nullptr);
  plain->handleDefault(nullptr, 258, false);
  plain->handleDefault(nullptr, 0, true);
  plain->handleNotificationException(258);
  plain->handleNotificationException();
  EXPECT_EQ(plain->heard, (Events{"something", "attribute 258", "something", "exception 258", "exception"}));

  g->activityIs(activity);
  Vek::GenericIfEntity const& fixed = *g;
  EXPECT_EQ(g->activityPtr(), activity);
  EXPECT_EQ(g->actsm(), activity.ptr());
  EXPECT_EQ(g->vekFwkActivity(), activity.ptr());
  EXPECT_EQ(fixed.vekFwkActivity(), activity.ptr());
}

TEST_F(GenericAdapter, AnAdapterThatOutlivesItsGenericIsSilent) {
  auto const adapter = g->adapter();
  EXPECT_EQ(adapter->vekRawReactor(), g.ptr());
  g = nullptr;
  EXPECT_FALSE(adapter->vekReactor());
  EXPECT_EQ(adapter->rawNotifier(), nullptr);
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
