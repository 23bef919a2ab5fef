// The whole way from a real kernel to the printed figures, in a network namespace of the test's own.
#include "apps/kernel/NetlinkSocket.h"
#include "apps/show/ShowLocal.h"
#include "tests/apps/OwnNetwork.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

namespace Apps::Show {
namespace {

using Json = nlohmann::json;

Json figures() {
  Kernel::NetlinkSocket kernel;
  Shown const shown = showLocal(kernel, Form::json, Style::plain);
  EXPECT_TRUE(shown.notices.empty());
  return Json::parse(shown.output);
}

// Carrier comes and goes a little after the command: asks again until `path` has `value`.
Json figuresOnce(Json::json_pointer const& path, Json const& value) {
  Json now = figures();
  for (int i = 0; i < 50 && now.at(path) != value; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds{100});
    now = figures();
  }
  return now;
}

Json routeStats(int routes, int adjs, int pendingRoutes, int pendingAdjs, int unprogrammedRoutes,
                int unprogrammedAdjs) {
  return {{"routes", routes},
          {"adjs", adjs},
          {"pendingRoutes", pendingRoutes},
          {"pendingAdjs", pendingAdjs},
          {"unprogrammedRoutes", unprogrammedRoutes},
          {"unprogrammedAdjs", unprogrammedAdjs}};
}

Json fecCountStats(int single, int multi) {
  return {{"numNonEcmpFecs", single}, {"numEcmpFecs", multi}, {"numFecEntries", single + multi}};
}

// The figures of a family whose prefixes are host routes and `count` others of one length.
Json prefixes(int hosts, char const* length, int count) {
  return {{"hostsInLem", hosts != 0},
          {"hostCount", hosts},
          {"prefixLenInLem", {{length, true}}},
          {"routeCount", {{length, count}}}};
}

// Two veth links of which the second has no carrier, and a VXLAN link over the first.
constexpr char const* links = R"(
link set lo up
link add a0 type veth peer name a1
link add b0 type veth peer name b1
link add vx0 type vxlan id 10 dstport 4789 remote 10.0.0.9 dev a0
link set a0 addrgenmode none
link set a1 addrgenmode none
link set b0 addrgenmode none
link set vx0 addrgenmode none
link set a0 up
link set a1 up
link set b0 up
link set vx0 up
addr add 10.0.0.1/24 dev a0
addr add 10.1.0.1/24 dev b0
addr add fd00::1/64 dev a0 nodad
neigh add 10.0.0.2 lladdr 02:00:00:00:00:02 dev a0
neigh add fd00::2 lladdr 02:00:00:00:00:02 dev a0
)";

constexpr char const* routes = R"(
route add 20.0.0.0/24 via 10.0.0.2 dev a0
route add 20.0.1.0/24 via 10.0.0.3 dev a0
route add 20.0.2.0/24 nexthop via 10.0.0.2 dev a0 nexthop via 10.0.0.3 dev a0
route add blackhole 20.0.3.0/24
route add 20.0.4.0/24 via 10.1.0.2 dev b0
route add 20.0.5.0/24 via inet6 fd00::2 dev a0
route add 20.0.6.0/24 encap ip id 100 dst 10.0.0.7 dev vx0
nexthop add id 1 via 10.0.0.2 dev a0
nexthop add id 2 via 10.0.0.3 dev a0
nexthop add id 10 group 1/2
route add 20.0.7.0/24 nhid 10
route add fd01::/64 via fd00::2 dev a0
route add fd02::/64 nexthop via fd00::2 dev a0 nexthop via fd00::3 dev a0
)";

std::string hostRoutes(int count) {
  std::ostringstream lines;
  for (int i = 0; i < count; ++i)
    lines << "route add 30.0." << i / 256 << '.' << i % 256 << "/32 via 10.0.0.2 dev a0\n";
  return lines.str();
}

void checkFigures() {
  // The kernel may put tunnel links of its own into each namespace.
  int const tunnelsBefore = figures().at("status").at("inUseIpTunnelEntries").at("0");
  ASSERT_TRUE(ip(links)) << "is iproute2 installed?";
  ASSERT_TRUE(ip(routes));
  ASSERT_TRUE(ip(hostRoutes(1000)));

  Json const json = figuresOnce(Json::json_pointer{"/status/ipv4RouteStats/unprogrammedRoutes"}, 2);
  Json const& status = json.at("status");
  EXPECT_EQ(status.at("statusResponseId"), 1);
  EXPECT_EQ(status.at("numVrfs"), 1);
  EXPECT_EQ(status.at("numVxlanTunnels"), 1);
  // Two connected ones, eight, a thousand. Next hops: two links, the tunnel, four gateways.
  EXPECT_EQ(status.at("ipv4RouteStats"), routeStats(1010, 7, 4, 2, 2, 2));
  EXPECT_EQ(status.at("ipv6RouteStats"), routeStats(3, 3, 1, 1, 0, 0));
  // Single: a0, b0, 10.0.0.2, 10.0.0.3, 10.1.0.2, fd00::2. Several: the IPv4 pair, the IPv6 pair.
  EXPECT_EQ(status.at("ipFecs"), fecCountStats(6, 2));
  EXPECT_EQ(status.at("tunnelFecs"), fecCountStats(1, 0));
  EXPECT_EQ(status.at("inUseArpEntries"), (Json{{"0", 2}}));
  EXPECT_EQ(status.at("inUseIpTunnelEntries"), (Json{{"0", tunnelsBefore + 1}}));
  // Besides the hosts: two connected ones and eight; one connected one and two.
  EXPECT_EQ(status.at("lemV4RouteStats"), prefixes(1000, "24", 10));
  EXPECT_EQ(status.at("lemV6RouteStats"), prefixes(0, "64", 3));
  EXPECT_EQ(json.at("restartCompletionStatus").at("restartComplete"), true);
  EXPECT_EQ(json.at("aradVxlanRoutingStatus").at("vxlanRoutingEnabled"), false);

  // The kernel may name the next-hop object of a route without telling its paths.
  std::ofstream{"/proc/sys/net/ipv4/nexthop_compat_mode"} << 0;
  EXPECT_EQ(figures().at("status").at("ipv4RouteStats"), status.at("ipv4RouteStats"));
  EXPECT_EQ(figures().at("status").at("ipFecs"), status.at("ipFecs"));

  ASSERT_TRUE(ip("addr add 10.2.0.1/24 dev vx0\n"));
  EXPECT_EQ(figures().at("aradVxlanRoutingStatus").at("vxlanRoutingEnabled"), true);

  ASSERT_TRUE(ip("neigh add 10.0.0.3 lladdr 02:00:00:00:00:03 dev a0\n"));
  Json const resolved = figures().at("status");
  EXPECT_EQ(resolved.at("ipv4RouteStats").at("pendingRoutes"), 1) << "all but the one without carrier";
  EXPECT_EQ(resolved.at("inUseArpEntries"), (Json{{"0", 3}}));

  if (!ip("link add red type vrf table 10\n", "ip -batch - 2>/dev/null"))
    return;  // a kernel without VRFs has the default one alone
  EXPECT_EQ(figures().at("status").at("numVrfs"), 2);
}

TEST(ShowLocal, PrintsTheFiguresOfTheHostItRunsOn) { inOwnNetwork(checkFigures); }

}  // namespace
}  // namespace Apps::Show
