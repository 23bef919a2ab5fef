#include "apps/show/Figures.h"

#include "platform/vek/ScalarText.h"

namespace Apps::Show {

using namespace Hardware::DornL3Unicast;

namespace {

using Fields = std::vector<Field>;

Fields fieldsOf(RouteStats const& stats) {
  return {{"routes", "routes", stats.routes()},
          {"adjs", "adjacencies", stats.adjs()},
          {"pendingRoutes", "pending routes", stats.pendingRoutes()},
          {"pendingAdjs", "pending adjacencies", stats.pendingAdjs()},
          {"unprogrammedRoutes", "unprogrammed routes", stats.unprogrammedRoutes()},
          {"unprogrammedAdjs", "unprogrammed adjacencies", stats.unprogrammedAdjs()}};
}

Fields fieldsOf(FecCountStats const& stats) {
  return {{"numNonEcmpFecs", "single-path", stats.numNonEcmpFecs()},
          {"numEcmpFecs", "multi-path", stats.numEcmpFecs()},
          {"numFecEntries", "in all", stats.numFecEntries()}};
}

Fields fieldsOf(LemCmdsStats const& stats) {
  return {{"totalProcessed", "handled", stats.totalProcessed()},
          {"failed", "failed", stats.failed()},
          {"added", "added", stats.added()},
          {"deleted", "deleted", stats.deleted()},
          {"overwritten", "overwritten", stats.overwritten()}};
}

Fields fieldsOf(RestartHelperStats const& stats) {
  return {{"failedInitArpEntry", "failed neighbours", stats.failedInitArpEntry()},
          {"routesPointedAtCpu", "routes pointed at the CPU", stats.routesPointedAtCpu()},
          {"failedFecRecovery", "unreadable next hops", stats.failedFecRecovery()},
          {"fecWithMultipleFecVias", "nested next-hop groups", stats.fecWithMultipleFecVias()},
          {"fecNotRecovered", "missing next hops", stats.fecNotRecovered()}};
}

template <class Value>
std::string textOf(Value const& value) {
  using Vek::valueToStrep;  // the builtin types; that of a record is found beside its type
  return std::string{std::string_view{valueToStrep(value)}};
}

// Makes the figures of one entity.
struct Of {
  std::string_view entity;

  template <class Record>
  Figure record(std::string_view attribute, std::string_view group, std::string_view label, Record const& value) const {
    return {entity, attribute, group, label, fieldsOf(value), textOf(value)};
  }
  Figure number(std::string_view attribute, std::string_view label, Vek::U64 value) const {
    return {entity, attribute, host, label, std::uint64_t{value}, textOf(value)};
  }
  Figure flag(std::string_view attribute, std::string_view label, bool value) const {
    return {entity, attribute, host, label, value, textOf(value)};
  }
  Figure time(std::string_view attribute, std::string_view label, double value) const {
    return {entity, attribute, host, label, Time{value}, textOf(value)};
  }

  static constexpr std::string_view host = "HOST";
};

}  // namespace

std::vector<Figure> figuresOf(Roots const& roots) {
  Status const& status = *roots.status;
  Of const ofStatus{"status"};
  return {
      ofStatus.number("statusResponseId", "answer to request", status.statusResponseId()),
      ofStatus.time("statusUpdatedTime", "updated", status.statusUpdatedTime()),
      Of{"restartCompletionStatus"}.flag("restartComplete", "first dump complete",
                                         roots.restartCompletion->restartComplete()),
      ofStatus.number("numVrfs", "VRFs", status.numVrfs()),
      ofStatus.number("numVxlanTunnels", "VXLAN tunnels", status.numVxlanTunnels()),
      Of{"aradVxlanRoutingStatus"}.flag("vxlanRoutingEnabled", "VXLAN routing",
                                        roots.vxlanRouting->vxlanRoutingEnabled()),
      ofStatus.record("ipv4RouteStats", "ROUTES", "IPv4", status.ipv4RouteStats()),
      ofStatus.record("ipv6RouteStats", "ROUTES", "IPv6", status.ipv6RouteStats()),
      ofStatus.record("mplsRouteStats", "ROUTES", "MPLS", status.mplsRouteStats()),
      ofStatus.record("ipFecs", "NEXT-HOP SETS", "IP", status.ipFecs()),
      ofStatus.record("mplsFecs", "NEXT-HOP SETS", "MPLS", status.mplsFecs()),
      ofStatus.record("tunnelFecs", "NEXT-HOP SETS", "tunnel", status.tunnelFecs()),
      ofStatus.record("lemCmdsStats", "ROUTE MESSAGES", "", status.lemCmdsStats()),
      ofStatus.record("restartHelperStats", "NOT RECOVERED", "", status.restartHelperStats()),
  };
}

}  // namespace Apps::Show
