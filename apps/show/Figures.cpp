#include "apps/show/Figures.h"

#include "dornl3/platform/vek/ScalarText.h"

#include <algorithm>

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

std::string textOf(Vek::U32 value) { return textOf(Vek::U64{value}); }

std::uint64_t numberOf(Vek::U32 key) { return key; }
std::uint64_t numberOf(Hardware::Dorn::FapId key) { return key.value(); }

template <class Iterator>
std::vector<Member> membersFrom(Iterator it) {
  std::vector<Member> members;
  for (; it; ++it) members.push_back({numberOf(it->key()), it->value(), textOf(it->value())});
  auto const byKey = [](Member const& a, Member const& b) { return a.key < b.key; };
  std::sort(members.begin(), members.end(), byKey);  // a hashed collection comes in another order
  return members;
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
  template <class Iterator>
  Figure byFap(std::string_view attribute, std::string_view label, Iterator it) const {
    return {entity, attribute, "IN USE", label, membersFrom(it), {}, "FAP "};
  }

  static constexpr std::string_view host = "HOST";
};

// One row for hosts, and one a prefix length; a column tells what lies in the LEM, and one how many.
void addPrefixes(std::vector<Figure>& figures, std::string_view entity, std::string_view inLem, std::string_view routes,
                 Vek::Ptr<LemRouteStats const> const& lem) {
  if (!lem) return;
  constexpr std::string_view group = "ROUTES BY PREFIX LENGTH";
  constexpr std::string_view hosts = "hosts";
  constexpr std::string_view length = "/";
  figures.push_back({entity, "hostsInLem", group, inLem, lem->hostsInLem(), textOf(lem->hostsInLem()), hosts});
  figures.push_back(
      {entity, "hostCount", group, routes, std::uint64_t{lem->hostCount()}, textOf(lem->hostCount()), hosts});
  figures.push_back(
      {entity, "prefixLenInLem", group, inLem, membersFrom(lem->prefixLenInLemIteratorConst()), {}, length});
  figures.push_back({entity, "routeCount", group, routes, membersFrom(lem->routeCountIteratorConst()), {}, length});
}

}  // namespace

std::vector<Figure> figuresOf(Roots const& roots) {
  Status const& status = *roots.status;
  Of const ofStatus{"status"};
  std::vector<Figure> figures{
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
      ofStatus.byFap("inUseArpEntries", "ARP", status.inUseArpEntriesIteratorConst()),
      ofStatus.byFap("inUseIpTunnelEntries", "IP tunnels", status.inUseIpTunnelEntriesIteratorConst()),
      ofStatus.byFap("inUseMplsTailEntries", "MPLS pops", status.inUseMplsTailEntriesIteratorConst()),
      ofStatus.byFap("inUseMplsHeadEntries", "MPLS pushes", status.inUseMplsHeadEntriesIteratorConst()),
      ofStatus.record("lemCmdsStats", "ROUTE MESSAGES", "", status.lemCmdsStats()),
      ofStatus.record("restartHelperStats", "NOT RECOVERED", "", status.restartHelperStats()),
  };
  addPrefixes(figures, "status.lemV4RouteStats", "IPv4 in LEM", "IPv4 routes", status.lemV4RouteStats());
  addPrefixes(figures, "status.lemV6RouteStats", "IPv6 in LEM", "IPv6 routes", status.lemV6RouteStats());
  return figures;
}

}  // namespace Apps::Show
