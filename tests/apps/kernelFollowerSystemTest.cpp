// A real kernel that is followed is known as well as one that is read afresh, whatever is done to it.
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

constexpr char const* links = R"(
link set lo up
link add a0 type veth peer name a1
link add b0 type veth peer name b1
link set a0 up
link set a1 up
link set b0 up
link set b1 up
addr add 10.0.0.1/24 dev a0
addr add 10.0.0.7/24 dev a0
addr add 10.1.0.1/24 dev b0
addr add fd00::1/64 dev a0 nodad
addr add fd03::1/64 dev b0 nodad
)";

struct Change {
  char const* what;
  char const* lines;  // of 'ip'
};

constexpr Change changes[] = {
    {"routes come", R"(
route add 20.0.0.0/24 via 10.0.0.2 dev a0
route add 20.0.1.0/24 nexthop via 10.0.0.2 dev a0 nexthop via 10.1.0.2 dev b0
route add blackhole 20.0.2.0/24
route add default via 10.0.0.2 src 10.0.0.7
route add fd10::/64 via fd00::2 dev a0
route add fd11::/64 nexthop via fd00::2 dev a0 nexthop via fd00::3 dev a0
route add unreachable fd12::/64
)"},
    {"routes are replaced", R"(
route replace 20.0.0.0/24 via 10.0.0.3 dev a0
route replace 20.0.1.0/24 via 10.1.0.2 dev b0
route change blackhole 20.0.2.0/24
route replace fd10::/64 nexthop via fd03::4 dev b0 nexthop via fd00::5 dev a0
route replace fd11::/64 via fd00::2 dev a0
)"},
    {"several routes to one prefix", R"(
route append 20.0.0.0/24 via 10.0.0.4 dev a0
route prepend 20.0.0.0/24 via 10.0.0.5 dev a0
route add 20.0.0.0/24 via 10.0.0.6 dev a0 metric 7
route add 20.0.0.0/24 via 10.0.0.6 dev a0 table 100
route append fd11::/64 via fd00::6 dev a0
route append fd11::/64 via fd00::7 dev a0
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
    {"neighbours come and go", R"(
neigh add 10.0.0.2 lladdr 02:00:00:00:00:02 dev a0
neigh add 10.0.0.3 lladdr 02:00:00:00:00:03 dev a0
neigh add fd00::2 lladdr 02:00:00:00:00:02 dev a0
neigh del 10.0.0.3 dev a0
)"},
    {"next-hop objects", R"(
nexthop add id 1 via 10.0.0.2 dev a0
nexthop add id 2 via 10.1.0.2 dev b0
nexthop add id 3 via fd00::2 dev a0
nexthop add id 10 group 1/2
route add 21.0.0.0/24 nhid 10
route add 21.0.1.0/24 nhid 1
route add fd14::/64 nhid 3
)"},
    {"an object is replaced", "nexthop replace id 1 via 10.0.0.3 dev a0\nnexthop replace id 3 via fd00::3 dev a0\n"},
    {"objects go, and routes with them", "nexthop del id 1\nnexthop del id 3\n"},
    {"an address goes, and routes with it", "addr del 10.0.0.7/24 dev a0\n"},
    {"a link loses its carrier", "link set b1 down\n"},
    {"and has it back", "link set b1 up\n"},
    {"a link goes down, and routes with it", "link set a0 down\n"},
    {"and comes up again", "link set a0 up\nroute add 20.0.5.0/24 via 10.0.0.2 dev a0\n"},
    {"routes that differ in what is not kept", R"(
route add unreachable 10.50.1.0/24 metric 7
route append blackhole 10.50.1.0/24 metric 7
route add 10.50.2.0/24 nexthop via 10.0.0.2 dev a0 nexthop via 10.1.0.2 dev b0
route append 10.50.2.0/24 nexthop via 10.0.0.2 dev a0 weight 3 nexthop via 10.1.0.2 dev b0
route add 10.50.3.0/24 via 10.0.0.2 dev a0
route append 10.50.3.0/24 via 10.0.0.2 dev a0 mtu 1400
)"},
    {"and go one by one", R"(
route del unreachable 10.50.1.0/24 metric 7
route del 10.50.2.0/24
route del 10.50.3.0/24
)"},
    {"a route by an object beside one by its path", R"(
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
    {"a VXLAN link", R"(
link add vx0 type vxlan id 10 dstport 4789 remote 10.0.0.9 dev a0
link set vx0 up
addr add 10.2.0.1/24 dev vx0
route add 22.0.0.0/24 encap ip id 100 dst 10.0.0.7 dev vx0
)"},
    {"without its address", "addr del 10.2.0.1/24 dev vx0\n"},
    {"without it", "link del vx0\n"},
};

class Host {
 private:
  NetlinkSocket questions_;
  NotificationSocket notifications_;

 public:
  KernelFollower follower{questions_, notifications_, [] { return 1.0; }, {.settling = std::chrono::milliseconds{20}}};

  // Follows until it agrees with a fresh reading, which what the kernel does by itself may put off.
  void expectAgreement(char const* what) {
    KernelFigures known;
    KernelFigures read;
    for (int i = 0; i < 100; ++i) {
      follower.advance();
      known = follower.figures();
      read = readKernel(questions_);
      known.commands = read.commands;
      known.times = read.times;
      if (known == read && !follower.patience()) return;
      std::this_thread::sleep_for(std::chrono::milliseconds{20});
    }
    EXPECT_EQ(known.ipv4, read.ipv4) << what;
    EXPECT_EQ(known.ipv6, read.ipv6) << what;
    EXPECT_EQ(known.ipSets, read.ipSets) << what;
    EXPECT_EQ(known, read) << what;
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

void follow() {
  Host host;
  ASSERT_TRUE(ip(links)) << "is iproute2 installed?";
  host.expectAgreement("links");
  for (Change const& change : changes) {
    ASSERT_TRUE(ip(change.lines)) << change.what;
    host.expectAgreement(change.what);
  }

  RouteCommands const before = host.follower.figures().commands;
  ASSERT_TRUE(ip(manyRoutes("add", 20'000)));  // nobody listens meanwhile: more than the socket holds
  host.expectAgreement("a burst");
  ASSERT_TRUE(ip(manyRoutes("replace", 500)));
  ASSERT_TRUE(ip(manyRoutes("del", 500)));
  host.expectAgreement("another");
  RouteCommands const commands = host.follower.figures().commands;
  EXPECT_EQ(commands.added - before.added, 20'000U);
  EXPECT_EQ(commands.deleted - before.deleted, 500U);
  EXPECT_EQ(commands.failed, 0U);

  std::ofstream{"/proc/sys/net/ipv4/ip_forward"} << 1;
  host.expectAgreement("forwarding");
  EXPECT_EQ(host.follower.figures().times.ipv4.forwardingOn, 1);
  EXPECT_EQ(host.follower.figures().times.ipv4.defaultRoute, 1);
}

TEST(KernelFollower, FollowsTheHostItRunsOn) { inOwnNetwork(follow); }

}  // namespace
}  // namespace Apps::Kernel
