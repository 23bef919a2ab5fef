#include "apps/show/RequestResponder.h"

#include "apps/kernel/KernelError.h"
#include "tests/core/LeakCheck.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <vector>

namespace Apps::Show {
namespace {

using namespace Hardware::DornL3Unicast;

Kernel::KernelFigures someFigures() {
  Kernel::KernelFigures figures{
      .vrfs = 3,
      .vxlanTunnels = 2,
      .tunnels = 4,
      .routesVxlan = true,
      .ipv4 = {10, 9, 8, 7, 6, 5},
      .ipv6 = {20, 19, 18, 17, 16, 15},
      .mpls = {30, 29, 28, 27, 26, 25},
      .ipv4Prefixes = {.hosts = 40},
      .ipv6Prefixes = {},
      .mplsPops = 8,
      .mplsPushes = 9,
      .ipSets = {1, 2},
      .mplsSets = {3, 4},
      .tunnelSets = {5, 6},
      .commands = {.processed = 100, .added = 60, .deleted = 50, .overwritten = 40, .failed = 1},
      .times = {.ipv4 = {1, 2, 3, 4}, .ipv6 = {5, 6, 7, 8}},
      .linkLayerNeighbours = 7,
      .failedNeighbours = 11,
      .routesTrapped = 12,
      .failedNextHops = 13,
      .nestedGroups = 14,
      .missingNextHops = 15,
      .interrupted = {},
  };
  figures.ipv4Prefixes.byLength[0] = 1;
  figures.ipv4Prefixes.byLength[24] = 50;
  figures.ipv6Prefixes.byLength[127] = 60;
  return figures;
}

class Responder : public LeakCheck {
 protected:
  Responder() {
    responder_->notifierIs(roots_.request);
    responder_->isRegisteredNotifieeIs(true);
  }

  Roots roots_;
  std::function<Kernel::KernelFigures()> kernel_ = someFigures;
  Vek::Ptr<RequestResponder> responder_ = Vek::make<RequestResponder>(
      roots_, [this] { return kernel_(); }, [] { return 1234.5; });
};

// What a collection holds, by key.
template <class Iterator>
std::map<unsigned, unsigned> contents(Iterator it) {
  std::map<unsigned, unsigned> all;
  for (; it; ++it) all[it->key()] = it->value();
  return all;
}

TEST_F(Responder, FillsTheEntitiesTheirCollectionsAndChildren) {
  roots_.request->statusRequestIdInc(1);
  Status const& status = *roots_.status;
  EXPECT_EQ(status.numVrfs(), 3U);
  EXPECT_EQ(status.numVxlanTunnels(), 2U);
  EXPECT_EQ(status.ipv4RouteStats(), (RouteStats{10, 9, 8, 7, 6, 5}));
  EXPECT_EQ(status.ipv6RouteStats(), (RouteStats{20, 19, 18, 17, 16, 15}));
  EXPECT_EQ(status.mplsRouteStats(), (RouteStats{30, 29, 28, 27, 26, 25}));
  EXPECT_EQ(status.ipFecs(), (FecCountStats{1, 2, 3}));
  EXPECT_EQ(status.mplsFecs(), (FecCountStats{3, 4, 7}));
  EXPECT_EQ(status.tunnelFecs(), (FecCountStats{5, 6, 11}));
  EXPECT_EQ(status.lemCmdsStats(), (LemCmdsStats{100, 1, 60, 50, 40}));
  EXPECT_EQ(status.restartHelperStats(), (RestartHelperStats{11, 12, 13, 14, 15}));
  TimingMarkers const times = status.timingMarkers();
  EXPECT_EQ((std::array{times.lastRouteUpdateTime(), times.lastDefaultRouteUpdateTime(),
                        times.routingEnabledLastUpdTime(), times.routingDisabledLastUpdTime(),
                        times.lastV6RouteUpdateTime(), times.lastV6DefaultRouteUpdateTime(),
                        times.v6RoutingEnabledLastUpdTime(), times.v6RoutingDisabledLastUpdTime()}),
            (std::array<Vek::Seconds, 8>{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_TRUE(roots_.vxlanRouting->vxlanRoutingEnabled());
  EXPECT_TRUE(roots_.restartCompletion->restartComplete());

  Hardware::Dorn::FapId const kernel{0};
  EXPECT_EQ(status.inUseArpEntries(kernel), 7U);
  EXPECT_EQ(status.inUseIpTunnelEntries(kernel), 4U);
  EXPECT_EQ(status.inUseMplsTailEntries(kernel), 8U);
  EXPECT_EQ(status.inUseMplsHeadEntries(kernel), 9U);
  EXPECT_EQ(status.inUseArpEntriesCount(), 1U);

  LemRouteStats const& v4 = *status.lemV4RouteStats();
  EXPECT_TRUE(v4.hostsInLem());
  EXPECT_EQ(v4.hostCount(), 40U);
  EXPECT_EQ(contents(v4.prefixLenInLemIteratorConst()), (std::map<unsigned, unsigned>{{0, true}, {24, true}}));
  EXPECT_EQ(contents(v4.routeCountIteratorConst()), (std::map<unsigned, unsigned>{{0, 1}, {24, 50}}));
  LemRouteStats const& v6 = *status.lemV6RouteStats();
  EXPECT_FALSE(v6.hostsInLem());
  EXPECT_EQ(contents(v6.routeCountIteratorConst()), (std::map<unsigned, unsigned>{{127, 60}}));
}

// Writes down what it hears of a child of Status.
struct PrefixWatcher : LemRouteStats::Notifiee {
  void onPrefixLenInLem(Vek::U32 length) override { heard.push_back("prefixLenInLem " + std::to_string(length)); }
  void onRouteCount(Vek::U32 length) override { heard.push_back("routeCount " + std::to_string(length)); }
  std::vector<std::string> heard;
};

// Writes down what it hears of the collections and children of Status.
struct StatusWatcher : Status::Notifiee {
  void onInUseArpEntries(Hardware::Dorn::FapId fap) override { hear("ARP", fap); }
  void onInUseIpTunnelEntries(Hardware::Dorn::FapId fap) override { hear("IP tunnel", fap); }
  void onInUseMplsTailEntries(Hardware::Dorn::FapId fap) override { hear("MPLS tail", fap); }
  void onInUseMplsHeadEntries(Hardware::Dorn::FapId fap) override { hear("MPLS head", fap); }
  void onLemV4RouteStats() override { heard.push_back("lemV4RouteStats"); }
  void onLemV6RouteStats() override { heard.push_back("lemV6RouteStats"); }
  void hear(char const* what, Hardware::Dorn::FapId fap) {
    heard.push_back(std::string{what} + ' ' + std::to_string(fap.value()));
  }
  std::vector<std::string> heard;
};

TEST_F(Responder, TellsOfWhatChangedAndOfNothingElse) {
  roots_.request->statusRequestIdInc(1);
  auto const prefixes = Vek::make<PrefixWatcher>();
  prefixes->notifierIs(roots_.status->lemV4RouteStats());
  prefixes->isRegisteredNotifieeIs(true);
  auto const watcher = Vek::make<StatusWatcher>();
  watcher->notifierIs(roots_.status);
  watcher->isRegisteredNotifieeIs(true);

  roots_.request->statusRequestIdInc(1);
  EXPECT_TRUE(prefixes->heard.empty() && watcher->heard.empty()) << "the kernel is as it was";

  kernel_ = [] {
    Kernel::KernelFigures figures = someFigures();
    figures.tunnels = 5;
    figures.ipv4Prefixes.byLength[0] = 0;    // gone
    figures.ipv4Prefixes.byLength[8] = 3;    // new
    figures.ipv4Prefixes.byLength[24] = 49;  // another number
    return figures;
  };
  roots_.request->statusRequestIdInc(1);
  EXPECT_EQ(prefixes->heard, (std::vector<std::string>{"prefixLenInLem 0", "routeCount 0", "prefixLenInLem 8",
                                                       "routeCount 8", "routeCount 24"}));
  EXPECT_EQ(watcher->heard, std::vector<std::string>{"IP tunnel 0"});
  EXPECT_EQ(roots_.status->lemV4RouteStats()->prefixLenInLemCount(), 2U);
}

TEST_F(Responder, TakesOutWhatTheKernelDoesNotHave) {
  Status& status = *roots_.status;
  status.inUseArpEntriesIs(1, 10);
  status.inUseIpTunnelEntriesIs(2, 10);
  status.inUseMplsTailEntriesIs(3, 10);
  status.inUseMplsHeadEntriesIs(4, 10);
  status.lemV4RouteStatsIs("lemV4RouteStats")->routeCountIs(1000, 1);
  status.lemV4RouteStats()->prefixLenInLemIs(25, true);
  roots_.request->statusRequestIdInc(1);
  EXPECT_EQ(status.inUseArpEntriesCount() + status.inUseIpTunnelEntriesCount() + status.inUseMplsTailEntriesCount() +
                status.inUseMplsHeadEntriesCount(),
            4U);
  EXPECT_EQ(status.inUseMplsHeadEntries(0), 9U);
  EXPECT_EQ(status.lemV4RouteStats()->routeCountCount(), 2U);
  EXPECT_FALSE(status.lemV4RouteStats()->prefixLenInLem(25));
}

// Notes what stands in Status at the moment of the answer.
struct Requester : Status::Notifiee {
  void onStatusResponseId() override {
    ++answers;
    seen = notifier()->statusResponseId();
    isFilled = notifier()->numVrfs() != 0 && notifier()->statusUpdatedTime() == 1234.5;
  }
  int answers = 0;
  Vek::U64 seen = 0;
  bool isFilled = false;
};

TEST_F(Responder, AnswersLastSoThatTheRequesterFindsTheFigures) {
  auto const requester = Vek::make<Requester>();
  requester->notifierIs(roots_.status);
  requester->isRegisteredNotifieeIs(true);
  roots_.request->statusRequestIdIs(41);
  EXPECT_EQ(requester->seen, 41U);
  EXPECT_TRUE(requester->isFilled);
  roots_.request->statusRequestIdInc(0);
  EXPECT_EQ(requester->answers, 1) << "a request that does not move asks for nothing";
  roots_.request->statusRequestIdInc(1);
  EXPECT_EQ(requester->seen, 42U);
}

TEST_F(Responder, KeepsTheFailureAndGivesNoAnswer) {
  kernel_ = []() -> Kernel::KernelFigures { throw Kernel::KernelError{"no kernel"}; };
  roots_.request->statusRequestIdInc(1);
  EXPECT_EQ(roots_.status->statusResponseId(), 0U);
  EXPECT_FALSE(roots_.restartCompletion->restartComplete());
  ASSERT_TRUE(responder_->failure());
  EXPECT_THROW(std::rethrow_exception(responder_->failure()), Kernel::KernelError);

  kernel_ = someFigures;
  roots_.request->statusRequestIdInc(1);
  EXPECT_FALSE(responder_->failure());
  EXPECT_EQ(roots_.status->statusResponseId(), 2U);
}

TEST_F(Responder, TellsThatADumpWhichNeverSettledIsNoWholeOne) {
  kernel_ = [] {
    Kernel::KernelFigures figures = someFigures();
    figures.interrupted = {"The kernel's routes"};
    return figures;
  };
  roots_.request->statusRequestIdInc(1);
  EXPECT_EQ(roots_.status->statusResponseId(), 1U) << "an answer all the same";
  EXPECT_FALSE(roots_.restartCompletion->restartComplete());
  EXPECT_EQ(responder_->interrupted().size(), 1U);
}

}  // namespace
}  // namespace Apps::Show
