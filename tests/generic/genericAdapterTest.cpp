// The events of a generic: told at once, or put off and coalesced.
#include "platform/vek/Activity.h"
#include "platform/vek/GenericIfEntity.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"

#include <gtest/gtest.h>

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

TEST_F(GenericAdapter, AnExceptionOutOfAnEventDoesNotReachTheSetter) {
  hears.throws = true;
  EXPECT_NO_THROW(box->countsIs(1, 1));
  EXPECT_EQ(box->counts(1), 1U);
  g->activityIs(activity);
  box->countsIs(1, 2);
  EXPECT_NO_THROW(activity->run());
  EXPECT_EQ(activity->waiting(), 0U);
}

// Each of the four may go first, in every order.
TEST_F(GenericAdapter, GenericEntitySubscriberAndActivityGoInAnyOrder) {
  for (unsigned order = 0; order < 24; ++order) {
    Vek::Ptr<ToyBox> entity = toyBoxFactory("other");
    auto generic = Vek::ptrCast<Vek::GenericIfEntity>(Vek::VekType::genericIf(entity.ptr(), false));
    auto subscriber = std::make_unique<Hears>();
    auto queue = Vek::make<Vek::Activity>();
    subscriber->genericIs(generic.ptr());
    generic->activityIs(queue);
    Vek::Ptr<ToyBox> const kept = order % 2 == 0 ? entity : Vek::Ptr<ToyBox>{};
    entity->countsIs(1, 1);
    std::vector<unsigned> left{0, 1, 2, 3};
    for (unsigned choice = order; !left.empty(); choice /= static_cast<unsigned>(left.size() + 1)) {
      auto const at = left.begin() + static_cast<std::ptrdiff_t>(choice % left.size());
      switch (*at) {
      case 0: entity = nullptr; break;
      case 1: generic = nullptr; break;
      case 2: subscriber = nullptr; break;
      default: queue = nullptr; break;
      }
      left.erase(at);
      if (kept) kept->countsIs(1, kept->counts(1) + 1);
      if (queue) queue->run();
    }
  }
}

}  // namespace
