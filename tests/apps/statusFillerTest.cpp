// What is filled from the kernel, and what is said to be.
#include "apps/show/StatusFiller.h"

#include "apps/show/Figures.h"
#include "apps/show/TextForm.h"
#include "tests/apps/AttributeTest.h"

#include <array>
#include <map>

namespace Apps::Show {
namespace {

using namespace Hardware::DornL3Unicast;

// What a kernel might have, none of it zero and each number another where that tells figures apart.
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
      .ipv6Prefixes = {.hosts = 41},
      .mplsPops = 8,
      .mplsPushes = 9,
      .ipSets = {1, 2},
      .mplsSets = {3, 4},
      .tunnelSets = {5, 6},
      .commands = {100, 60, 50, 40, 1},
      .times = {{1, 2, 3, 4}, {5, 6, 7, 8}},
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
  figures.ipv4Prefixes.byLength[3] = 2;  // a hashed collection walks in another order
  figures.ipv6Prefixes.byLength[127] = 60;
  return figures;
}

using Lines = std::map<std::string, std::string>;  // by path, without keys

void collectLines(Attributes::Reading const& reading, std::string const& path, Lines& lines) {
  if (reading.value) lines[path] = reading.value->strRep().view();
  for (Attributes::Reading const& part : reading.parts) {
    bool const isMember = part.path.ends_with(']');
    collectLines(part, isMember ? path : path + '.' + part.step, lines);
  }
}

class StatusFiller : public Attributes::AttributeTest {
 protected:
  void serve(Kernel::KernelFigures const& figures = someFigures()) {
    fill(roots_, figures);
    answer(roots_, {++answers_, 1234.5});
  }
  Lines lines() {
    Lines lines;
    for (Vek::Name const& name : directory_->names()) {
      std::string const path{name.view()};
      collectLines(read(Attributes::resolve(*directory_, path), {Attributes::Depth::all, Attributes::Records::byField}),
                   path, lines);
    }
    return lines;
  }

  Vek::U64 answers_ = 0;
};

TEST_F(StatusFiller, FillsTheEntitiesAndTakesOutWhatTheKernelDoesNotHave) {
  roots_.status->inUseArpEntriesIs(1, 10);
  roots_.status->inUseIpTunnelEntriesIs(2, 10);
  roots_.status->inUseMplsTailEntriesIs(3, 10);
  roots_.status->inUseMplsHeadEntriesIs(4, 10);
  roots_.status->lemV4RouteStatsIs("lemV4RouteStats")->routeCountIs(1000, 1);
  roots_.status->lemV4RouteStats()->prefixLenInLemIs(25, true);
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

TEST_F(StatusFiller, WritesWhatChangedAndNothingElse) {
  serve();
  Status const& status = *roots_.status;
  LemRouteStats const& prefixes = *status.lemV4RouteStats();
  Vek::U32 const before = status.writeCount();
  Vek::U32 const prefixesBefore = prefixes.writeCount();
  serve();
  EXPECT_EQ(status.writeCount() - before, 3U) << "the kernel is as it was: the answer, and two children asked for";
  EXPECT_EQ(prefixes.writeCount(), prefixesBefore);

  Kernel::KernelFigures figures = someFigures();
  figures.tunnels = 5;
  figures.ipv4Prefixes.byLength[0] = 0;    // gone
  figures.ipv4Prefixes.byLength[8] = 3;    // new
  figures.ipv4Prefixes.byLength[24] = 49;  // another number
  serve(figures);
  EXPECT_EQ(status.writeCount() - before, 7U) << "and one of four numbers by FAP";
  EXPECT_EQ(prefixes.writeCount() - prefixesBefore, 5U) << "two lengths with their flags, and a number";
  EXPECT_EQ(prefixes.prefixLenInLemCount(), 3U);
}

TEST_F(StatusFiller, FillsWhatItSaysAndNothingElse) {
  Lines const before = lines();
  roots_.request->statusRequestIdInc(1);
  serve();
  Attributes::Filled const filled{filledPaths(Reading::following)};
  for (auto const& [path, text] : lines()) {
    Attributes::Filled const* of = &filled;
    std::istringstream steps{path};
    for (std::string step; std::getline(steps, step, '.');) of = &of->at(step);
    auto const was = before.find(path);
    EXPECT_EQ(of->isAll(), was == before.end() || was->second != text) << path;
  }
}

TEST_F(StatusFiller, FillsAllThatIsShown) {
  fill(roots_, someFigures());
  Attributes::Filled const filled{filledPaths(Reading::once)};
  for (Figure const& figure : figuresOf(roots_)) {
    std::string const path = std::string{figure.entity} + '.' + std::string{figure.attribute};
    EXPECT_TRUE(select(*directory_, {path}, filled).unfilled.empty()) << path;
  }
}

}  // namespace
}  // namespace Apps::Show
