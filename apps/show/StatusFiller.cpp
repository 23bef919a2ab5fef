#include "apps/show/StatusFiller.h"

namespace Apps::Show {

using namespace Hardware::DornL3Unicast;

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

LemCmdsStats lemCmdsStats(Kernel::KernelFigures const& figures) {
  LemCmdsStats stats;
  stats.totalProcessedIs(figures.routeMessages);
  stats.failedIs(figures.routesFailed);
  stats.addedIs(figures.routesTaken);  // a first reading neither deletes nor overwrites
  return stats;
}

RestartHelperStats restartHelperStats(Kernel::KernelFigures const& figures) {
  RestartHelperStats stats;
  stats.failedInitArpEntryIs(figures.failedNeighbours);
  stats.routesPointedAtCpuIs(figures.routesTrapped);
  stats.failedFecRecoveryIs(figures.failedNextHops);
  stats.fecWithMultipleFecViasIs(figures.nestedGroups);
  stats.fecNotRecoveredIs(figures.missingNextHops);
  return stats;
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
  status.lemCmdsStatsIs(lemCmdsStats(figures));
  status.restartHelperStatsIs(restartHelperStats(figures));
  roots.vxlanRouting->vxlanRoutingEnabledIs(figures.routesVxlan);
  roots.restartCompletion->restartCompleteIs(figures.interrupted.empty());
}

}  // namespace Apps::Show
