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

struct Step {
  std::string what;
  std::string lines;  // of 'ip'
};

std::vector<Step> steps() {
  std::vector<Step> steps;
  std::ifstream script(DORNL3_SOURCE_DIR "/tests/apps/host.ip");
  for (std::string line; std::getline(script, line);) {
    if (line.starts_with("## ")) {
      steps.push_back({line.substr(3), ""});
    } else if (!steps.empty()) {
      steps.back().lines += line + '\n';
    }
  }
  return steps;
}

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

// Of the first two steps.
void expectFigures(Host& host, Step const& links, Step const& routes) {
  std::uint32_t const tunnelsBefore = host.agreed("nothing").tunnels;  // the kernel may put some into each namespace
  ASSERT_TRUE(ip(links.lines)) << "is iproute2 installed?";
  ASSERT_TRUE(ip(routes.lines));
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
  std::vector<Step> const all = steps();
  ASSERT_GT(all.size(), 2U);
  expectFigures(host, all[0], all[1]);
  for (std::size_t at = 2; at < all.size(); ++at) {
    ASSERT_TRUE(ip(all[at].lines)) << all[at].what;
    host.agreed(all[at].what.c_str());
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
