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

TimingMarkers timingMarkers(Kernel::ChangeTimes const& times) {
  TimingMarkers markers;
  markers.lastRouteUpdateTimeIs(times.ipv4.route);
  markers.lastDefaultRouteUpdateTimeIs(times.ipv4.defaultRoute);
  markers.routingEnabledLastUpdTimeIs(times.ipv4.forwardingOn);
  markers.routingDisabledLastUpdTimeIs(times.ipv4.forwardingOff);
  markers.lastV6RouteUpdateTimeIs(times.ipv6.route);
  markers.lastV6DefaultRouteUpdateTimeIs(times.ipv6.defaultRoute);
  markers.v6RoutingEnabledLastUpdTimeIs(times.ipv6.forwardingOn);
  markers.v6RoutingDisabledLastUpdTimeIs(times.ipv6.forwardingOff);
  return markers;
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
void fillEntriesInUse(Status& status, Kernel::KernelFigures const& figures) {
  FapId const kernel{0};
  auto const isGone = [kernel](FapId fap) { return fap != kernel; };
  removeGone(status.inUseArpEntriesIterator(), isGone, [&](auto& it) { status.inUseArpEntriesDel(it); });
  removeGone(status.inUseIpTunnelEntriesIterator(), isGone, [&](auto& it) { status.inUseIpTunnelEntriesDel(it); });
  removeGone(status.inUseMplsTailEntriesIterator(), isGone, [&](auto& it) { status.inUseMplsTailEntriesDel(it); });
  removeGone(status.inUseMplsHeadEntriesIterator(), isGone, [&](auto& it) { status.inUseMplsHeadEntriesDel(it); });
  status.inUseArpEntriesIs(kernel, figures.linkLayerNeighbours);
  status.inUseIpTunnelEntriesIs(kernel, figures.tunnels);
  status.inUseMplsTailEntriesIs(kernel, figures.mplsPops);
  status.inUseMplsHeadEntriesIs(kernel, figures.mplsPushes);
}

}  // namespace

void fill(Roots const& roots, Kernel::KernelFigures const& figures) {
  Status& status = *roots.status;
  status.numVrfsIs(figures.vrfs);
  status.ipv4RouteStatsIs(routeStats(figures.ipv4));
  status.ipv6RouteStatsIs(routeStats(figures.ipv6));
  status.mplsRouteStatsIs(routeStats(figures.mpls));
  status.ipFecsIs(fecCountStats(figures.ipSets));
  status.mplsFecsIs(fecCountStats(figures.mplsSets));
  status.tunnelFecsIs(fecCountStats(figures.tunnelSets));
  status.numVxlanTunnelsIs(figures.vxlanTunnels);
  fillEntriesInUse(status, figures);
  fillPrefixes(*status.lemV4RouteStatsIs("lemV4RouteStats"), figures.ipv4Prefixes);
  fillPrefixes(*status.lemV6RouteStatsIs("lemV6RouteStats"), figures.ipv6Prefixes);
  status.lemCmdsStatsIs(lemCmdsStats(figures.commands));
  status.timingMarkersIs(timingMarkers(figures.times));
  roots.vxlanRouting->vxlanRoutingEnabledIs(figures.routesVxlan);
  if (roots.restartCompletion->restartComplete()) return;  // what came before the first whole reading stays told
  status.restartHelperStatsIs(restartHelperStats(figures));
  roots.restartCompletion->restartCompleteIs(figures.interrupted.empty());
}

}  // namespace Apps::Show
