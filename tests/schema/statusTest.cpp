// Status and the small entities beside it, by a few attributes of each kind.
#include "schema/Status.h"

#include "core/CountedHeap.h"
#include "schema/AuditStatus.h"
#include "schema/DornL3CliConfig.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using namespace Hardware::DornL3Unicast;

class StatusTest : public testing::Test {
 protected:
  ~StatusTest() override { EXPECT_EQ(Vek::CountedHeap::liveObjects(), before_); }

 private:
  Vek::U64 const before_ = Vek::CountedHeap::liveObjects();
};

class Trace final : public Status::Notifiee {
 public:
  void onStatusUpdatedTime() override { heard.emplace_back("statusUpdatedTime"); }
  void onIpv4RouteStats() override { heard.emplace_back("ipv4RouteStats"); }
  void onAradInternalState() override { heard.emplace_back("aradInternalState"); }
  void onNumBackupViaUpdates() override { heard.emplace_back("numBackupViaUpdates"); }
  void onTimingMarkers() override { heard.emplace_back("timingMarkers"); }
  void onEcmpPreferLocal() override { heard.emplace_back("ecmpPreferLocal"); }
  std::vector<std::string> heard;
};

template <class R, class E>
Vek::Ptr<R> registered(Vek::Ptr<E> const& entity) {
  Vek::Ptr<R> const reactor = Vek::make<R>();
  reactor->isRegisteredNotifieeIs(true);
  reactor->notifierIs(entity);
  return reactor;
}

TEST_F(StatusTest, StartsEmpty) {
  Vek::Ptr<Status> const status = statusFactory("status");
  EXPECT_EQ(status->ipv4RouteStats(), RouteStats());
  EXPECT_EQ(status->aradLpmStats(), LpmStats());
  EXPECT_EQ(status->statusUpdatedTime(), 0.0);
  EXPECT_FALSE(status->ecmpPreferLocal());
  EXPECT_EQ(status->readCount(), 4U);
  EXPECT_EQ(status->writeCount(), 0U);
  EXPECT_EQ(status->parentAttrId(), 136U);
  EXPECT_FALSE(status->parent());
  EXPECT_TRUE(status->vekHasAttrLogInterface());
  EXPECT_EQ(status->references(), 1U);
}

TEST_F(StatusTest, TellsEachSlotOfItsOwnAttribute) {
  Vek::Ptr<Status> const status = statusFactory("status");
  Vek::Ptr<Trace> const trace = registered<Trace>(status);
  status->statusUpdatedTimeIs(0.5);
  status->ipv4RouteStatsIs(RouteStats(1, 0, 0, 0, 0, 0));
  status->aradInternalStateIs(InternalState(false, true));
  EXPECT_EQ(status->numBackupViaUpdatesInc(2), 2U);
  status->ecmpPreferLocalIs(true);
  EXPECT_EQ(trace->heard, (std::vector<std::string>{"statusUpdatedTime", "ipv4RouteStats", "aradInternalState",
                                                    "numBackupViaUpdates", "ecmpPreferLocal"}));
  EXPECT_EQ(status->writeCount(), 4U) << "an incrementer counts no write";
}

TEST_F(StatusTest, AnEqualRecordChangesNothingUnlessItHoldsANaN) {
  Vek::Ptr<Status> const status = statusFactory("status");
  Vek::Ptr<Trace> const trace = registered<Trace>(status);
  status->ipv4RouteStatsIs(RouteStats());
  EXPECT_EQ(status->writeCount(), 0U);

  TimingMarkers markers;
  markers.lastRouteUpdateTimeIs(std::numeric_limits<double>::quiet_NaN());
  status->timingMarkersIs(markers);
  status->timingMarkersIs(status->timingMarkers());
  EXPECT_EQ(status->writeCount(), 2U);
  EXPECT_EQ(trace->heard.size(), 2U);
}

TEST_F(StatusTest, NamesItsAttributes) {
  Vek::Ptr<Status> const status = statusFactory("status");
  EXPECT_EQ(status->attributeString(258), "statusResponseId");
  EXPECT_EQ(status->attributeString(318), "ecmpPreferLocal");
  EXPECT_EQ(status->attributeString(319), status->Vek::Entity::attributeString(319));
  EXPECT_EQ(status->attributeString(154), "vekHasAttrLogInterface");
}

TEST_F(StatusTest, TextAttributesCompareByContent) {
  Vek::Ptr<AuditRequest> const request = auditRequestFactory("auditRequest");
  request->tableToAuditIs("ipv4");
  request->tableToAuditIs(std::string_view("ipv4"));
  EXPECT_EQ(request->writeCount(), 1U);
  EXPECT_EQ(request->tableToAudit(), "ipv4");
}

TEST_F(StatusTest, DefaultsOfTheSchemaAreTaken) {
  Vek::Ptr<CliConfig> const config = cliConfigFactory("config");
  EXPECT_TRUE(config->aradIp6HostRouteInLem());
  EXPECT_TRUE(config->ecmpPreferLocal());
  EXPECT_EQ(config->lpmLevelBits(), LpmLevelBits());
  config->aradIp6HostRouteInLemIs(true);
  EXPECT_EQ(config->writeCount(), 0U);
  config->aradIp6HostRouteInLemIs(false);
  EXPECT_TRUE(CliConfig::aradIp6HostRouteInLemDefault());
}

// Answers a request as an agent does.
class Answers final : public Request::Notifiee {
 public:
  explicit Answers(Vek::Ptr<Status> status) : status_(std::move(status)) {}
  void onStatusRequestId() override { status_->statusResponseIdIs(notifier()->statusRequestId()); }

 private:
  Vek::Ptr<Status> status_;
};

TEST_F(StatusTest, ARequestIsAnsweredInsideItsSetter) {
  Vek::Ptr<Request> const request = requestFactory("request");
  Vek::Ptr<Status> const status = statusFactory("status");
  Vek::Ptr<Answers> const agent = Vek::make<Answers>(status);
  agent->notifierIs(request);
  agent->isRegisteredNotifieeIs(true);
  EXPECT_EQ(request->statusRequestIdInc(1), 1U);
  EXPECT_EQ(status->statusResponseId(), 1U);
  request->statusRequestIdIs(std::numeric_limits<Vek::U64>::max());
  EXPECT_EQ(request->statusRequestIdInc(1), 0U);
  EXPECT_EQ(status->statusResponseId(), 0U);
}

}  // namespace
