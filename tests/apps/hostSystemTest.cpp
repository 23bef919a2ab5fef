// What the figures say of a real kernel, and that one which is followed is known as well as one that is read afresh,
// whatever is done to it.
#include "apps/kernel/KernelFollower.h"
#include "apps/kernel/KernelReader.h"
#include "apps/kernel/NetlinkSocket.h"
#include "apps/kernel/NotificationSocket.h"
#include "tests/apps/OwnNetwork.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace Apps::Kernel {
namespace {

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
addr add 10.0.0.7/24 dev a0
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
route add fd10::/64 via fd00::2 dev a0
route add fd11::/64 nexthop via fd00::2 dev a0 nexthop via fd00::3 dev a0
)";

constexpr struct {
  char const* what;
  char const* lines;  // of 'ip'
} changes[] = {
    {"routes are replaced", R"(
route replace 20.0.0.0/24 via 10.0.0.3 dev a0
route replace 20.0.2.0/24 via 10.0.0.2 dev a0
route change blackhole 20.0.3.0/24
route replace fd10::/64 nexthop via fd00::4 dev a0 nexthop via fd00::5 dev a0
route add default via 10.0.0.2 src 10.0.0.7
)"},
    {"several routes to one prefix", R"(
route append 20.0.0.0/24 via 10.0.0.4 dev a0
route prepend 20.0.0.0/24 via 10.0.0.5 dev a0
route add 20.0.0.0/24 via 10.0.0.6 dev a0 metric 7
route add 20.0.0.0/24 via 10.0.0.6 dev a0 tos 8
route add 20.0.0.0/24 via 10.0.0.6 dev a0 table 1000
route append fd11::/64 via fd00::6 dev a0
route add fd13::/64 dev a0
route append fd13::/64 dev b0
)"},
    {"some of them go", R"(
route del 20.0.0.0/24 via 10.0.0.4 dev a0
route del 20.0.0.0/24 metric 7
route del fd11::/64 via fd00::6 dev a0
route del fd10::/64
route del fd13::/64 dev a0
)"},
    {"the first of several is replaced", "route replace 20.0.0.0/24 via 10.0.0.8 dev a0\n"},
    {"neighbours come and go", "neigh add 10.0.0.3 lladdr 02:00:00:00:00:03 dev a0\nneigh del 10.0.0.2 dev a0\n"},
    {"an object is replaced", "nexthop replace id 1 via 10.0.0.3 dev a0\nroute add 21.0.1.0/24 nhid 1\n"},
    {"an object goes, and routes with it", "nexthop del id 1\n"},
    {"an address goes, and routes with it", "addr del 10.0.0.7/24 dev a0\n"},
    {"a link gets its carrier", "link set b1 up\n"},
    {"and loses it", "link set b1 down\n"},
    {"a link goes down, and routes with it", "link set a0 down\n"},
    {"and comes up again", "link set a0 up\nlink set b1 up\nroute add 20.0.5.0/24 via 10.0.0.2 dev a0\n"},
    {"routes that differ in what is not kept", R"(
route add unreachable 10.50.1.0/24 metric 7
route append blackhole 10.50.1.0/24 metric 7
route add 10.50.2.0/24 nexthop via 10.0.0.2 dev a0 nexthop via 10.1.0.2 dev b0
route append 10.50.2.0/24 nexthop via 10.0.0.2 dev a0 weight 3 nexthop via 10.1.0.2 dev b0
route add 10.50.3.0/24 via 10.0.0.2 dev a0
route append 10.50.3.0/24 via 10.0.0.2 dev a0 mtu 1400
)"},
    {"and go one by one",
     "route del unreachable 10.50.1.0/24 metric 7\nroute del 10.50.2.0/24\nroute del 10.50.3.0/24\n"},
    {"a route by an object beside one by its path", R"(
addr add fd03::1/64 dev b0 nodad
nexthop add id 4 via fd03::4 dev b0
route add fd15::/64 nhid 4
route append fd15::/64 via fd03::4 dev b0
)"},
    {"without one of the two", "route del fd15::/64 via fd03::4 dev b0\n"},
    {"an address goes with its next hops", "addr del 10.0.0.1/24 dev a0\n"},
    {"and revives them", "addr add 10.0.0.1/24 dev a0\n"},
    {"local routes take the place of others", R"(
route add 10.60.0.0/24 via 10.1.0.2
route replace local 10.60.0.0/24 dev lo table main
route add fd16::/64 via fd03::2
route replace local fd16::/64 dev lo table main
)"},
    {"a bridge", "link add br0 type bridge\nlink set b0 master br0\nlink set br0 up\nlink set b0 nomaster\n"},
    {"without the VXLAN link", "link del vx0\n"},
};

class Host {
 private:
  NetlinkSocket questions_;
  NotificationSocket notifications_;

 public:
  KernelFollower follower{questions_, notifications_, [] { return 1.0; }, {.settling = std::chrono::milliseconds{20}}};

  // Follows until it agrees with a fresh reading, which what the kernel does by itself may put off.
  KernelFigures agreed(char const* what) {
    KernelFigures known;
    KernelFigures read;
    for (int i = 0; i < 100; ++i) {
      follower.advance();
      known = follower.figures();
      read = readKernel(questions_);
      known.commands = read.commands;
      known.times = read.times;
      if (known == read && !follower.patience()) return read;
      std::this_thread::sleep_for(std::chrono::milliseconds{20});
    }
    EXPECT_EQ(known.ipv4, read.ipv4) << what;
    EXPECT_EQ(known.ipv6, read.ipv6) << what;
    EXPECT_EQ(known.ipSets, read.ipSets) << what;
    EXPECT_EQ(known, read) << what;
    return read;
  }
};

std::string manyRoutes(char const* command, int count) {
  std::ostringstream lines;
  for (int i = 0; i < count; ++i) {
    lines << "route " << command << " 30." << i / 65'536 << '.' << i / 256 % 256 << '.' << i % 256
          << "/32 via 10.0.0.2 dev a0\n";
  }
  return lines.str();
}

void expectFigures(Host& host) {
  std::uint32_t const tunnelsBefore = host.agreed("nothing").tunnels;  // the kernel may put some into each namespace
  ASSERT_TRUE(ip(links)) << "is iproute2 installed?";
  ASSERT_TRUE(ip(routes));
  KernelFigures const figures = host.agreed("routes");
  EXPECT_EQ(figures.vrfs, 1U);
  EXPECT_EQ(figures.vxlanTunnels, 1U);
  EXPECT_EQ(figures.tunnels, tunnelsBefore + 1);
  EXPECT_FALSE(figures.routesVxlan);
  // Two connected ones and eight. Next hops: two links, the tunnel, four gateways.
  EXPECT_EQ(figures.ipv4, (RouteCounts{10, 7, 4, 2, 2, 2}));
  EXPECT_EQ(figures.ipv6, (RouteCounts{3, 3, 1, 1, 0, 0}));
  // Single: a0, b0, 10.0.0.2, 10.0.0.3, 10.1.0.2, fd00::2. Several: the IPv4 pair, the IPv6 pair.
  EXPECT_EQ(figures.ipSets, (SetCounts{6, 2}));
  EXPECT_EQ(figures.tunnelSets, (SetCounts{1, 0}));
  EXPECT_EQ(figures.linkLayerNeighbours, 2U);
  EXPECT_EQ(figures.ipv4Prefixes.byLength[24], 10U);
  EXPECT_EQ(figures.ipv6Prefixes.byLength[64], 3U);

  // The kernel may name the next-hop object of a route without telling its paths.
  std::ofstream{"/proc/sys/net/ipv4/nexthop_compat_mode"} << 0;
  NetlinkSocket questions;
  EXPECT_EQ(readKernel(questions).ipSets, figures.ipSets);
  ASSERT_TRUE(ip("addr add 10.2.0.1/24 dev vx0\n"));
  EXPECT_TRUE(host.agreed("an address on the VXLAN link").routesVxlan);
}

void follow() {
  Host host;
  expectFigures(host);
  for (auto const& change : changes) {
    ASSERT_TRUE(ip(change.lines)) << change.what;
    host.agreed(change.what);
  }

  RouteCommands const before = host.follower.figures().commands;
  ASSERT_TRUE(ip(manyRoutes("add", 20'000)));  // nobody listens meanwhile: more than the socket holds
  host.agreed("a burst");
  ASSERT_TRUE(ip(manyRoutes("replace", 500)));
  ASSERT_TRUE(ip(manyRoutes("del", 500)));
  EXPECT_EQ(host.agreed("another").ipv4Prefixes.hosts, 19'500U);
  RouteCommands const commands = host.follower.figures().commands;
  EXPECT_EQ(commands.added - before.added, 20'000U);
  EXPECT_EQ(commands.deleted - before.deleted, 500U);
  EXPECT_EQ(commands.failed, 0U);

  std::ofstream{"/proc/sys/net/ipv4/ip_forward"} << 1;
  host.agreed("forwarding");
  EXPECT_EQ(host.follower.figures().times.ipv4.forwardingOn, 1);
  EXPECT_EQ(host.follower.figures().times.ipv4.defaultRoute, 1);
}

TEST(Host, IsKnownAndFollowed) { inOwnNetwork(follow); }

}  // namespace
}  // namespace Apps::Kernel
