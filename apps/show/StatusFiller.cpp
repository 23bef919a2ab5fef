#include "apps/show/StatusFiller.h"

namespace Apps::Show {

using namespace Hardware::DornL3Unicast;
using Hardware::Dorn::FapId;

namespace {

RouteStats routeStats(Kernel::RouteCounts const& counts) {
  return RouteStats{counts.routes,
                    counts.adjacencies,
                    counts.pendingRoutes,
                    counts.pendingAdjacencies,
                    counts.unprogrammedRoutes,
                    counts.unprogrammedAdjacencies};
}

FecCountStats fecCountStats(Kernel::SetCounts const& counts) {
  return FecCountStats{counts.singlePath, counts.multiPath, counts.singlePath + counts.multiPath};
}

LemCmdsStats lemCmdsStats(Kernel::RouteCommands const& commands) {
  return LemCmdsStats{commands.processed, commands.failed, commands.added, commands.deleted, commands.overwritten};
}

RestartHelperStats restartHelperStats(Kernel::KernelFigures const& figures) {
  return RestartHelperStats{figures.failedNeighbours, figures.routesTrapped, figures.failedNextHops,
                            figures.nestedGroups, figures.missingNextHops};
}

// Calls `remove`, which takes the iterator, at each member of a collection whose key is gone.
template <class Iterator, class IsGone, class Remove>
void removeGone(Iterator it, IsGone const& isGone, Remove const& remove) {
  for (; it; ++it) {
    if (isGone(it->key())) remove(it);
  }
}

void fillPrefixes(LemRouteStats& lem, Kernel::PrefixCounts const& counts) {
  lem.hostsInLemIs(counts.hosts != 0);
  lem.hostCountIs(counts.hosts);
  auto const isGone = [&counts](Vek::U32 length) {
    return length >= counts.byLength.size() || counts.byLength[length] == 0;
  };
  removeGone(lem.prefixLenInLemIterator(), isGone, [&lem](auto& it) { lem.prefixLenInLemDel(it); });
  removeGone(lem.routeCountIterator(), isGone, [&lem](auto& it) { lem.routeCountDel(it); });
  for (Vek::U32 length = 0; length < counts.byLength.size(); ++length) {
    if (isGone(length)) continue;
    lem.prefixLenInLemIs(length, true);
    lem.routeCountIs(length, counts.byLength[length]);
  }
}

// The kernel is the one forwarding processor of its host.
constexpr unsigned short kernelFap = 0;

template <class Iterator, class Remove>
void onlyKernel(Iterator it, Remove const& remove) {
  removeGone(
      it, [](FapId fap) { return fap != FapId{kernelFap}; }, remove);
}

// What sets one attribute. Those that stand in the lists below are all that is filled.
template <class From>
struct Filler {
  std::string_view path;
  void (*fill)(Roots const&, From const&);
};

struct TimeFiller {
  std::string_view field;
  void (*fill)(TimingMarkers&, Kernel::ChangeTimes const&);
};

using Times = Kernel::ChangeTimes;

constexpr std::string_view timingMarkers = "status.timingMarkers";
constexpr TimeFiller timeFillers[] = {
    {"lastRouteUpdateTime", [](auto& to, Times const& times) { to.lastRouteUpdateTimeIs(times.ipv4.route); }},
    {"lastDefaultRouteUpdateTime",
     [](auto& to, Times const& times) { to.lastDefaultRouteUpdateTimeIs(times.ipv4.defaultRoute); }},
    {"routingEnabledLastUpdTime",
     [](auto& to, Times const& times) { to.routingEnabledLastUpdTimeIs(times.ipv4.forwardingOn); }},
    {"routingDisabledLastUpdTime",
     [](auto& to, Times const& times) { to.routingDisabledLastUpdTimeIs(times.ipv4.forwardingOff); }},
    {"lastV6RouteUpdateTime", [](auto& to, Times const& times) { to.lastV6RouteUpdateTimeIs(times.ipv6.route); }},
    {"lastV6DefaultRouteUpdateTime",
     [](auto& to, Times const& times) { to.lastV6DefaultRouteUpdateTimeIs(times.ipv6.defaultRoute); }},
    {"v6RoutingEnabledLastUpdTime",
     [](auto& to, Times const& times) { to.v6RoutingEnabledLastUpdTimeIs(times.ipv6.forwardingOn); }},
    {"v6RoutingDisabledLastUpdTime",
     [](auto& to, Times const& times) { to.v6RoutingDisabledLastUpdTimeIs(times.ipv6.forwardingOff); }},
};

using Figures = Kernel::KernelFigures;

// What came before the first whole reading stays told: the two that tell of it come last, and in this order.
constexpr Filler<Figures> figureFillers[] = {
    {"status.numVrfs", [](auto& to, Figures const& from) { to.status->numVrfsIs(from.vrfs); }},
    {"status.ipv4RouteStats",
     [](auto& to, Figures const& from) { to.status->ipv4RouteStatsIs(routeStats(from.ipv4)); }},
    {"status.ipv6RouteStats",
     [](auto& to, Figures const& from) { to.status->ipv6RouteStatsIs(routeStats(from.ipv6)); }},
    {"status.mplsRouteStats",
     [](auto& to, Figures const& from) { to.status->mplsRouteStatsIs(routeStats(from.mpls)); }},
    {"status.ipFecs", [](auto& to, Figures const& from) { to.status->ipFecsIs(fecCountStats(from.ipSets)); }},
    {"status.mplsFecs", [](auto& to, Figures const& from) { to.status->mplsFecsIs(fecCountStats(from.mplsSets)); }},
    {"status.tunnelFecs",
     [](auto& to, Figures const& from) { to.status->tunnelFecsIs(fecCountStats(from.tunnelSets)); }},
    {"status.numVxlanTunnels", [](auto& to, Figures const& from) { to.status->numVxlanTunnelsIs(from.vxlanTunnels); }},
    {"status.inUseArpEntries",
     [](auto& to, Figures const& from) {
       onlyKernel(to.status->inUseArpEntriesIterator(), [&](auto& it) { to.status->inUseArpEntriesDel(it); });
       to.status->inUseArpEntriesIs(kernelFap, from.linkLayerNeighbours);
     }},
    {"status.inUseIpTunnelEntries",
     [](auto& to, Figures const& from) {
       onlyKernel(to.status->inUseIpTunnelEntriesIterator(), [&](auto& it) { to.status->inUseIpTunnelEntriesDel(it); });
       to.status->inUseIpTunnelEntriesIs(kernelFap, from.tunnels);
     }},
    {"status.inUseMplsTailEntries",
     [](auto& to, Figures const& from) {
       onlyKernel(to.status->inUseMplsTailEntriesIterator(), [&](auto& it) { to.status->inUseMplsTailEntriesDel(it); });
       to.status->inUseMplsTailEntriesIs(kernelFap, from.mplsPops);
     }},
    {"status.inUseMplsHeadEntries",
     [](auto& to, Figures const& from) {
       onlyKernel(to.status->inUseMplsHeadEntriesIterator(), [&](auto& it) { to.status->inUseMplsHeadEntriesDel(it); });
       to.status->inUseMplsHeadEntriesIs(kernelFap, from.mplsPushes);
     }},
    {"status.lemV4RouteStats",
     [](auto& to, Figures const& from) {
       fillPrefixes(*to.status->lemV4RouteStatsIs("lemV4RouteStats"), from.ipv4Prefixes);
     }},
    {"status.lemV6RouteStats",
     [](auto& to, Figures const& from) {
       fillPrefixes(*to.status->lemV6RouteStatsIs("lemV6RouteStats"), from.ipv6Prefixes);
     }},
    {"status.lemCmdsStats",
     [](auto& to, Figures const& from) { to.status->lemCmdsStatsIs(lemCmdsStats(from.commands)); }},
    {"aradVxlanRoutingStatus.vxlanRoutingEnabled",
     [](auto& to, Figures const& from) { to.vxlanRouting->vxlanRoutingEnabledIs(from.routesVxlan); }},
    {"status.restartHelperStats",
     [](auto& to, Figures const& from) {
       if (!to.restartCompletion->restartComplete()) to.status->restartHelperStatsIs(restartHelperStats(from));
     }},
    {"restartCompletionStatus.restartComplete",
     [](auto& to, Figures const& from) {
       if (from.interrupted.empty()) to.restartCompletion->restartCompleteIs(true);
     }},
};

// The id comes last: whoever sees it finds the figures in place.
constexpr Filler<Answer> answerFillers[] = {
    {"status.statusUpdatedTime", [](auto& to, Answer const& from) { to.status->statusUpdatedTimeIs(from.time); }},
    {"status.statusResponseId", [](auto& to, Answer const& from) { to.status->statusResponseIdIs(from.request); }},
};

}  // namespace

void fill(Roots const& roots, Kernel::KernelFigures const& figures) {
  for (auto const& filler : figureFillers) filler.fill(roots, figures);
  TimingMarkers times;
  for (TimeFiller const& filler : timeFillers) filler.fill(times, figures.times);
  roots.status->timingMarkersIs(times);
}

void answer(Roots const& roots, Answer const& answer) {
  for (auto const& filler : answerFillers) filler.fill(roots, answer);
}

std::vector<std::string> filledPaths(Reading reading) {
  std::vector<std::string> paths{"request"};  // by whoever asks for figures
  for (auto const& filler : figureFillers) paths.emplace_back(filler.path);
  for (auto const& filler : answerFillers) paths.emplace_back(filler.path);
  if (reading == Reading::once) return paths;
  for (TimeFiller const& filler : timeFillers) {
    paths.push_back(std::string{timingMarkers} + '.' + std::string{filler.field});
  }
  return paths;
}

}  // namespace Apps::Show
