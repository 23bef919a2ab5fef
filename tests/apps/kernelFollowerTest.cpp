// A kernel that is followed by its notifications is known as well as one that is read afresh.
#include "apps/kernel/KernelFollower.h"

#include "apps/kernel/KernelReader.h"
#include "tests/apps/ModelKernel.h"

#include <gtest/gtest.h>
#include <linux/netconf.h>
#include <rapidcheck/gtest.h>

namespace Apps::Kernel {
namespace {

constexpr KernelFollower::Pace atOnce{std::chrono::milliseconds{0}, 0};

struct Followed {
  ModelKernel kernel;
  double now = 1000;
  std::optional<KernelFollower> follower = {};

  KernelFollower& begin() {
    return follower.emplace(
        kernel.source, kernel.notifications, [this] { return now; }, atOnce);
  }
  // The figures once nothing is left to be taken, without what a fresh reading cannot know.
  KernelFigures state() {
    while (follower->advance() || follower->patience()) {
    }
    KernelFigures figures = follower->figures();
    figures.commands = {};
    figures.times = {};
    return figures;
  }
  KernelFigures read() {
    KernelFigures figures = readKernel(kernel.source);
    figures.commands = {};
    return figures;
  }
  bool agrees() { return state() == read(); }
};

// One step in the life of a kernel, by three small numbers.
using Step = std::tuple<unsigned, unsigned, unsigned>;

ModelKernel::Paths pathsOf(unsigned mask) {
  ModelKernel::Paths paths;
  for (unsigned path = 0; path < 6; ++path) {
    if ((mask & 1U << path) != 0) paths.insert(path);
  }
  if (paths.empty()) paths.insert(mask % 6);
  return paths;
}

void live(ModelKernel& kernel, Step const& step) {
  auto const [op, key, n] = step;
  ModelKernel::Route const route = n % 5 == 0 ? ModelKernel::Route{{}, 1 + n % 2} : ModelKernel::Route{pathsOf(n)};
  switch (op) {
  case 0: return kernel.add4(key, route);
  case 1: return kernel.append4(key, route);
  case 2: return kernel.prepend4(key, route);
  case 3: return kernel.replace4(key, route);
  case 4: return kernel.delete4(key, n % 3);
  case 5:
  case 6: return kernel.add6(key, n % 8);
  case 7: return kernel.replace6(key, pathsOf(n));
  case 8: return kernel.delete6(key, n % 8);
  case 9: return kernel.deleteAll6(key, n % 2);
  case 10: return kernel.object(1 + n % 2, n % 6);
  case 11: return kernel.deleteObject(1 + n % 2);
  case 12: return kernel.neighbour(n % 3, n % 2 == 0 ? NUD_REACHABLE : NUD_FAILED);
  case 13: return kernel.deleteNeighbour(n % 3);
  case 14: return kernel.flap(1 + n % 2);
  default: return kernel.notifications.lose();
  }
}

rc::Gen<std::vector<Step>> steps(unsigned operations) {
  return rc::gen::container<std::vector<Step>>(
      rc::gen::tuple(rc::gen::inRange(0U, operations), rc::gen::inRange(0U, 3U), rc::gen::inRange(0U, 64U)));
}

RC_GTEST_PROP(KernelFollower, KnowsWhatAFreshReadingKnows, ()) {
  Followed followed;
  for (Step const& step : *steps(16)) live(followed.kernel, step);
  followed.begin();  // what has been told until now is stale by now
  RC_ASSERT(followed.agrees());
  for (Step const& step : *steps(16)) {
    live(followed.kernel, step);
    if (std::get<2>(step) % 4 == 0) RC_ASSERT(followed.agrees());
  }
  RC_ASSERT(followed.agrees());
}

RC_GTEST_PROP(KernelFollower, CountsWhatWasDone, ()) {
  Followed followed;
  followed.begin();
  for (Step const& step : *steps(10)) {
    auto const [op, key, n] = step;
    if (op == 1 || op == 2) continue;  // of several IPv4 routes to one prefix, which was replaced is not told
    live(followed.kernel, {op, key, n % 5 == 0 ? n + 1 : n});
    static_cast<void>(followed.state());
  }
  RC_ASSERT(followed.follower->figures().commands.added == followed.kernel.commands.added);
  RC_ASSERT(followed.follower->figures().commands.deleted == followed.kernel.commands.deleted);
  RC_ASSERT(followed.follower->figures().commands.overwritten == followed.kernel.commands.overwritten);
  RC_ASSERT(followed.follower->figures().commands.processed >= followed.kernel.commands.processed);
}

TEST(KernelFollower, ReadsAfreshOnlyWhenItMust) {
  Followed followed;
  followed.begin();
  auto const readings = [&] { return followed.kernel.source.requests(RTM_GETROUTE); };
  ASSERT_EQ(readings(), 1);
  ModelKernel& kernel = followed.kernel;
  for (unsigned key = 0; key < 3; ++key) kernel.add4(key, {{0, 1}});
  kernel.replace4(1, {{2}});
  kernel.delete4(2, 0);
  kernel.add6(1, 0), kernel.add6(1, 1), kernel.delete6(1, 0);
  kernel.object(1, 0), kernel.object(1, 1);
  kernel.neighbour(0, NUD_REACHABLE), kernel.deleteNeighbour(0);
  kernel.notifications.tell(link(1, IFF_UP));      // as it was
  kernel.notifications.tell(link(9, 0, "dummy"));  // new
  kernel.notifications.tell(linkAddress(1, 0));
  ifinfomsg port{};
  port.ifi_family = AF_BRIDGE;
  port.ifi_index = 1;
  kernel.notifications.tell(Message{RTM_DELLINK, port});  // it left its bridge and is there all the same
  EXPECT_TRUE(followed.agrees());
  EXPECT_EQ(readings(), 2) << "one of them by this test";

  kernel.notifications.lose();
  static_cast<void>(followed.state());
  EXPECT_EQ(readings(), 3) << "lost messages";
  kernel.flap(1);
  static_cast<void>(followed.state());
  EXPECT_EQ(readings(), 4) << "a link that went down";
  kernel.notifications.tellBytes(Buffer(7));
  static_cast<void>(followed.state());
  EXPECT_EQ(readings(), 5) << "bytes that are no message";
}

TEST(KernelFollower, WaitsUntilThingsHaveSettledBeforeItReadsAfresh) {
  Followed followed;
  ModelKernel& kernel = followed.kernel;
  KernelFollower follower{
      kernel.source, kernel.notifications, [] { return 0.0; }, {.settling = std::chrono::hours{1}, .restFactor = 0}};
  EXPECT_FALSE(follower.patience());
  EXPECT_FALSE(follower.advance()) << "nothing has come";
  kernel.flap(1);
  EXPECT_FALSE(follower.advance()) << "nothing is settled";
  EXPECT_EQ(kernel.source.requests(RTM_GETROUTE), 1);
  ASSERT_TRUE(follower.patience());
  EXPECT_GT(*follower.patience(), std::chrono::minutes{59});
}

TEST(KernelFollower, TriesAReadingThatFailedAgainAndPublishesNothingMeanwhile) {
  Followed followed;
  KernelFollower& follower = followed.begin();
  ModelKernel& kernel = followed.kernel;
  kernel.add4(1, {{0}});
  kernel.notifications.lose();
  kernel.source.onlyAnswer(RTM_GETROUTE, {.error = EBUSY});
  EXPECT_FALSE(follower.advance());
  EXPECT_FALSE(follower.isSettled());
  kernel.add4(2, {{0}});  // sets the answers right
  EXPECT_TRUE(follower.advance());
  EXPECT_TRUE(followed.agrees());

  kernel.notifications.lose();
  kernel.source.onlyAnswer(RTM_GETNEIGH, {.overrun = true});
  EXPECT_FALSE(follower.advance());
  EXPECT_FALSE(follower.advance());
  EXPECT_THROW(follower.advance(), KernelError);
}

Message forwarding(std::uint8_t family, std::int32_t link, std::int32_t value) {
  netconfmsg header{};
  header.ncm_family = family;
  return Message{RTM_NEWNETCONF, header}.put(NETCONFA_IFINDEX, link).put(NETCONFA_FORWARDING, value);
}

TEST(KernelFollower, KeepsTheTimesOfChanges) {
  Followed followed;
  ModelKernel& kernel = followed.kernel;
  kernel.add4(0, {{0}});
  KernelFollower& follower = followed.begin();
  EXPECT_EQ(follower.figures().times, ChangeTimes{}) << "what was there before has no time";
  auto const timesAfter = [&](double now, auto const& change) {
    followed.now = now;
    change();
    static_cast<void>(followed.state());
    return follower.figures().times;
  };
  ChangeTimes expected;
  expected.ipv4.route = 1;
  EXPECT_EQ(timesAfter(1, [&] { kernel.add4(1, {{0}}); }), expected);
  expected.ipv4.route = expected.ipv4.defaultRoute = 2;
  EXPECT_EQ(timesAfter(2, [&] { kernel.replace4(0, {{1}}); }), expected);
  expected.ipv6.route = 3;
  EXPECT_EQ(timesAfter(3, [&] { kernel.add6(1, 0); }), expected);
  expected.ipv4.route = expected.ipv4.defaultRoute = 4;  // found gone
  EXPECT_EQ(timesAfter(4, [&] { kernel.flap(1); }), expected);
  expected.ipv4.forwardingOn = 5;
  EXPECT_EQ(timesAfter(5, [&] { kernel.notifications.tell(forwarding(AF_INET, NETCONFA_IFINDEX_ALL, 1)); }), expected);
  expected.ipv6.forwardingOff = 6;
  EXPECT_EQ(timesAfter(6, [&] { kernel.notifications.tell(forwarding(AF_INET6, NETCONFA_IFINDEX_ALL, 0)); }), expected);
  EXPECT_EQ(timesAfter(7, [&] { kernel.notifications.tell(forwarding(AF_INET, 1, 1)); }), expected) << "of one link";
  EXPECT_EQ(timesAfter(8, [&] { kernel.object(1, 1); }), expected) << "no route changed";
}

TEST(KernelFollower, ForgetsNextHopsAndSourcesThatNobodyUses) {
  Followed followed;
  followed.begin();
  RecordedNotifications& told = followed.kernel.notifications;
  for (unsigned i = 0; i < 20'000; ++i) {
    std::string const address = std::to_string(i / 256) + "." + std::to_string(i % 256);
    told.tell(routeVia(1, ("10.0." + address).c_str()), NLM_F_REPLACE);
    told.tell(nextHop(1, 1, ("10.1." + address).c_str()));  // no route goes by it
    rtmsg header{};
    header.rtm_family = AF_INET6;
    header.rtm_type = RTN_UNREACHABLE;
    header.rtm_src_len = 64;
    Message const route =
        Message{RTM_NEWROUTE, header}.put(RTA_SRC, ip(("fd00:" + std::to_string(i % 10'000) + "::").c_str()));
    told.tell(route, NLM_F_CREATE);
    told.tell(route.as(RTM_DELROUTE));
    if (i % 1000 == 0) static_cast<void>(followed.state());
  }
  KernelFigures const figures = followed.state();
  EXPECT_EQ(figures.ipv6, RouteCounts{});
  EXPECT_EQ(figures.ipv4, (RouteCounts{.routes = 1, .adjacencies = 1, .pendingRoutes = 1, .pendingAdjacencies = 1}));
  EXPECT_LT(followed.follower->keptEntries(), 20'000U);
}

RC_GTEST_PROP(KernelFollower, SurvivesAnySpoiledNotification, ()) {
  Followed followed;
  followed.begin();
  auto const bytes = *rc::gen::container<std::vector<std::pair<std::size_t, std::uint8_t>>>(
      rc::gen::pair(rc::gen::inRange<std::size_t>(0, 120), rc::gen::arbitrary<std::uint8_t>()));
  auto const end = *rc::gen::inRange<std::size_t>(sizeof(nlmsghdr), 200);
  Message const routeByLabels =
      route(AF_MPLS).put(RTA_DST, 100U).put(RTA_VIA, via("10.0.0.1")).put(RTA_NEWDST, std::uint32_t{1});
  Message const encapsulated =
      routeVia(3, "10.0.0.1").put(RTA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_IP}).put(RTA_ENCAP, Buffer(20));
  for (Message const& message :
       {routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(2, "10.0.0.5")}), encapsulated, routeByLabels,
        link(1, 0, "vxlan", 2, 3), linkAddress(1, 0), neighbour(1, "fd00::1", NUD_REACHABLE), nextHop(1, 3, "10.0.0.1"),
        nextHopGroup(10, {1, 2}), forwarding(AF_INET, -1, 1)}) {
    Buffer datagram = message.framed(0, NLM_F_REPLACE);
    for (auto const& [place, value] : bytes) {
      if (place < datagram.size()) datagram[place] = std::byte{value};
    }
    if (end < datagram.size()) {  // cut off, and well framed all the same
      datagram.resize(end);
      auto const length = static_cast<std::uint32_t>(end);
      std::memcpy(datagram.data(), &length, sizeof length);
    }
    datagram.shrink_to_fit();  // so that a sanitizer sees the first byte read behind the end
    followed.kernel.notifications.tellBytes(std::move(datagram));
  }
  static_cast<void>(followed.state());
}

}  // namespace
}  // namespace Apps::Kernel
