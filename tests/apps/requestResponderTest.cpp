#include "apps/show/RequestResponder.h"

#include "apps/show/Figures.h"
#include "apps/show/StatusFiller.h"
#include "apps/show/TextForm.h"
#include "tests/apps/SomeFigures.h"
#include "tests/core/LeakCheck.h"

#include <gtest/gtest.h>

#include <array>

namespace Apps::Show {
namespace {

using namespace Hardware::DornL3Unicast;

class Responder : public LeakCheck {
 protected:
  Responder() {
    responder_->notifierIs(roots_.request);
    responder_->isRegisteredNotifieeIs(true);
  }

  void ask() { roots_.request->statusRequestIdInc(1); }
  // What whoever owns the entities does, in a turn of his own.
  void serve(Kernel::KernelFigures const& figures = someFigures()) {
    if (!responder_->isAsked()) return;
    fill(roots_, figures);
    responder_->answer(roots_, 1234.5);
  }

  Roots roots_;
  int calls_ = 0;
  Vek::Ptr<RequestResponder> responder_ = Vek::make<RequestResponder>([this] { ++calls_; });
};

TEST_F(Responder, FillsTheEntitiesAndTakesOutWhatTheKernelDoesNotHave) {
  roots_.status->inUseArpEntriesIs(1, 10);
  roots_.status->inUseIpTunnelEntriesIs(2, 10);
  roots_.status->inUseMplsTailEntriesIs(3, 10);
  roots_.status->inUseMplsHeadEntriesIs(4, 10);
  roots_.status->lemV4RouteStatsIs("lemV4RouteStats")->routeCountIs(1000, 1);
  roots_.status->lemV4RouteStats()->prefixLenInLemIs(25, true);
  ask();
  serve();
  EXPECT_EQ(textForm(figuresOf(roots_)), R"(status.statusResponseId = 1
status.statusUpdatedTime = 1234.5
restartCompletionStatus.restartComplete = True
status.numVrfs = 3
status.numVxlanTunnels = 2
aradVxlanRoutingStatus.vxlanRoutingEnabled = True
status.ipv4RouteStats = Value('Hardware::DornL3Unicast::RouteStats', ** {'routes': 10, 'adjs': 9, 'pendingRoutes': 8, 'pendingAdjs': 7, 'unprogrammedRoutes': 6, 'unprogrammedAdjs': 5})
status.ipv6RouteStats = Value('Hardware::DornL3Unicast::RouteStats', ** {'routes': 20, 'adjs': 19, 'pendingRoutes': 18, 'pendingAdjs': 17, 'unprogrammedRoutes': 16, 'unprogrammedAdjs': 15})
status.mplsRouteStats = Value('Hardware::DornL3Unicast::RouteStats', ** {'routes': 30, 'adjs': 29, 'pendingRoutes': 28, 'pendingAdjs': 27, 'unprogrammedRoutes': 26, 'unprogrammedAdjs': 25})
status.ipFecs = Value('Hardware::DornL3Unicast::FecCountStats', ** {'numNonEcmpFecs': 1, 'numEcmpFecs': 2, 'numFecEntries': 3})
status.mplsFecs = Value('Hardware::DornL3Unicast::FecCountStats', ** {'numNonEcmpFecs': 3, 'numEcmpFecs': 4, 'numFecEntries': 7})
status.tunnelFecs = Value('Hardware::DornL3Unicast::FecCountStats', ** {'numNonEcmpFecs': 5, 'numEcmpFecs': 6, 'numFecEntries': 11})
status.inUseArpEntries[0] = 7
status.inUseIpTunnelEntries[0] = 4
status.inUseMplsTailEntries[0] = 8
status.inUseMplsHeadEntries[0] = 9
status.lemCmdsStats = Value('Hardware::DornL3Unicast::LemCmdsStats', ** {'totalProcessed': 100, 'failed': 1, 'added': 60, 'deleted': 50, 'overwritten': 40})
status.restartHelperStats = Value('Hardware::DornL3Unicast::RestartHelperStats', ** {'failedInitArpEntry': 11, 'routesPointedAtCpu': 12, 'failedFecRecovery': 13, 'fecWithMultipleFecVias': 14, 'fecNotRecovered': 15})
status.lemV4RouteStats.hostsInLem = True
status.lemV4RouteStats.hostCount = 40
status.lemV4RouteStats.prefixLenInLem[0] = True
status.lemV4RouteStats.prefixLenInLem[3] = True
status.lemV4RouteStats.prefixLenInLem[24] = True
status.lemV4RouteStats.routeCount[0] = 1
status.lemV4RouteStats.routeCount[3] = 2
status.lemV4RouteStats.routeCount[24] = 50
status.lemV6RouteStats.hostsInLem = True
status.lemV6RouteStats.hostCount = 41
status.lemV6RouteStats.prefixLenInLem[127] = True
status.lemV6RouteStats.routeCount[127] = 60
)");
  TimingMarkers const times = roots_.status->timingMarkers();
  EXPECT_EQ((std::array{times.lastRouteUpdateTime(), times.lastDefaultRouteUpdateTime(),
                        times.routingEnabledLastUpdTime(), times.routingDisabledLastUpdTime(),
                        times.lastV6RouteUpdateTime(), times.lastV6DefaultRouteUpdateTime(),
                        times.v6RoutingEnabledLastUpdTime(), times.v6RoutingDisabledLastUpdTime()}),
            (std::array<Vek::Seconds, 8>{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(Responder, WritesWhatChangedAndNothingElse) {
  ask();
  serve();
  Status const& status = *roots_.status;
  LemRouteStats const& prefixes = *status.lemV4RouteStats();
  Vek::U32 const before = status.writeCount();
  Vek::U32 const prefixesBefore = prefixes.writeCount();
  ask();
  serve();
  EXPECT_EQ(status.writeCount() - before, 3U) << "the kernel is as it was: the answer, and two children asked for";
  EXPECT_EQ(prefixes.writeCount(), prefixesBefore);

  Kernel::KernelFigures figures = someFigures();
  figures.tunnels = 5;
  figures.ipv4Prefixes.byLength[0] = 0;    // gone
  figures.ipv4Prefixes.byLength[8] = 3;    // new
  figures.ipv4Prefixes.byLength[24] = 49;  // another number
  ask();
  serve(figures);
  EXPECT_EQ(status.writeCount() - before, 7U) << "and one of four numbers by FAP";
  EXPECT_EQ(prefixes.writeCount() - prefixesBefore, 5U) << "two lengths with their flags, and a number";
  EXPECT_EQ(prefixes.prefixLenInLemCount(), 3U);
}

// Notes whether Status is filled at the moment of the answer.
struct Requester : Status::Notifiee {
  void onStatusResponseId() override {
    ++answers;
    isFilled = notifier()->numVrfs() != 0 && notifier()->statusUpdatedTime() == 1234.5;
  }
  int answers = 0;
  bool isFilled = false;
};

TEST_F(Responder, AnswersAllThatHaveAskedAtOnceAndLast) {
  auto const requester = Vek::make<Requester>();
  requester->notifierIs(roots_.status);
  requester->isRegisteredNotifieeIs(true);
  for (Vek::U64 const id : {41U, 43U, 42U}) roots_.request->statusRequestIdIs(id);
  EXPECT_EQ(calls_, 1);
  EXPECT_EQ(requester->answers, 0) << "not inside the setter";
  serve();
  EXPECT_EQ(roots_.status->statusResponseId(), 43U);
  EXPECT_EQ(requester->answers, 1);
  EXPECT_TRUE(requester->isFilled);
  roots_.request->statusRequestIdInc(0);
  EXPECT_FALSE(responder_->isAsked()) << "a request that does not move asks for nothing";
}

TEST_F(Responder, NeverGoesBackAndLetsNobodyUseUpTheIds) {
  struct {
    Vek::U64 asked;
    Vek::U64 answered;
    char const* why;
  } const cases[] = {
      {7, 7, "the first"},
      {3, 7, "a lower one is answered as well"},
      {~Vek::U64{0}, 7, "one that leaps is put back"},
      {7 + RequestResponder::farthestLeap, 7 + RequestResponder::farthestLeap, "as far as it may"},
  };
  for (auto const& one : cases) {
    roots_.request->statusRequestIdIs(one.asked);
    EXPECT_TRUE(responder_->isAsked()) << one.why;
    serve();
    EXPECT_EQ(roots_.status->statusResponseId(), one.answered) << one.why;
  }
}

}  // namespace
}  // namespace Apps::Show
