// A kernel that is followed by its notifications is known as well as one that is read afresh.
#include "apps/kernel/KernelFollower.h"

#include "apps/kernel/KernelReader.h"
#include "tests/apps/ModelKernel.h"

#include <gtest/gtest.h>
#include <linux/netconf.h>
#include <rapidcheck/gtest.h>

namespace Apps::Kernel {
namespace {

constexpr KernelFollower::Pace atOnce{std::chrono::milliseconds{0}, 0, 0};

struct Followed {
  explicit Followed(ModelKernel::Differ differ = ModelKernel::Differ::prefix) : kernel{differ} {}

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
  case 1: return kernel.add4(key, route, ModelKernel::Place::last);
  case 2: return kernel.add4(key, route, ModelKernel::Place::first);
  case 3: return kernel.replace4(key, route);
  case 4: return kernel.erase(AF_INET, key, n % 3);
  case 5:
  case 6: return kernel.add6(key, n % 8);
  case 7: return kernel.replace6(key, pathsOf(n));
  case 8: return kernel.delete6(key, n % 8);
  case 9: return kernel.erase(AF_INET6, key, n % 2);
  case 10: return kernel.object(1 + n % 2, n % 6);
  case 11: return kernel.deleteObject(1 + n % 2);
  case 12: return kernel.neighbour(n % 2, n % 4 < 2 ? NUD_REACHABLE : NUD_FAILED);
  case 13: return kernel.deleteNeighbour(n % 2);
  case 14: return kernel.flap(1 + n % 2);
  case 15: return kernel.replaceByLocal4(key);
  default: return kernel.notifications.lose();
  }
}

rc::Gen<std::vector<Step>> steps(unsigned operations) {
  return rc::gen::container<std::vector<Step>>(
      rc::gen::tuple(rc::gen::inRange(0U, operations), rc::gen::inRange(0U, 3U), rc::gen::inRange(0U, 64U)));
}

rc::Gen<ModelKernel::Differ> differences() {
  return rc::gen::map(rc::gen::inRange(0, static_cast<int>(ModelKernel::Differ::count)),
                      [](int number) { return static_cast<ModelKernel::Differ>(number); });
}

RC_GTEST_PROP(KernelFollower, KnowsWhatAFreshReadingKnows, ()) {
  Followed followed{*differences()};
  for (Step const& step : *steps(17)) live(followed.kernel, step);
  followed.begin();  // what has been told until now is stale by now
  RC_ASSERT(followed.agrees());
  for (Step const& step : *steps(17)) {
    live(followed.kernel, step);
    if (std::get<2>(step) % 4 == 0) RC_ASSERT(followed.agrees());
  }
  RC_ASSERT(followed.agrees());
}

RC_GTEST_PROP(KernelFollower, CountsWhatWasDone, ()) {
  Followed followed{*differences()};
  followed.begin();
  for (Step const& step : *steps(10)) {
    auto const [op, key, n] = step;
    if (op == 1 || op == 2) continue;  // of several IPv4 routes to one prefix, which was replaced is not told
    live(followed.kernel, {op, key, n % 5 == 0 ? n + 1 : n});
    static_cast<void>(followed.state());
  }
  RC_ASSERT(followed.follower->figures().commands == followed.kernel.commands);
}

TEST(KernelFollower, ReadsAfreshOnlyWhenItMust) {
  Followed followed;
  followed.begin();
  ModelKernel& kernel = followed.kernel;
  int expected = 1;
  auto const expectReadings = [&](int more, char const* after) {
    static_cast<void>(followed.state());
    EXPECT_EQ(kernel.source.requests(RTM_GETROUTE), expected += more) << after;
  };
  for (unsigned key = 0; key < 3; ++key) kernel.add4(key, {{0, 1}});
  kernel.replace4(1, {{2}});
  kernel.erase(AF_INET, 2, 0);
  kernel.add6(1, 0), kernel.add6(1, 1), kernel.delete6(1, 0);
  kernel.object(1, 0), kernel.object(1, 1);
  kernel.neighbour(0, NUD_REACHABLE), kernel.deleteNeighbour(0);
  kernel.notifications.tell(link(1, IFF_UP | IFF_RUNNING));  // as it was
  kernel.notifications.tell(link(9, 0, "dummy"));            // new
  kernel.notifications.tell(linkAddress(1, 0));
  ifinfomsg port{};
  port.ifi_family = AF_BRIDGE;
  port.ifi_index = 1;
  kernel.notifications.tell(Message{RTM_DELLINK, port});  // it left its bridge and is there all the same
  expectReadings(0, "all that is told whole");
  EXPECT_EQ(followed.state(), followed.read());
  ++expected;  // by this test

  Message const address = linkAddress(1, 0).put(IFA_LOCAL, ip("10.0.0.7"));
  kernel.notifications.tell(address);
  expectReadings(1, "an IPv4 address");
  kernel.notifications.tell(address);
  expectReadings(1, "which the reading did not find");
  kernel.notifications.lose();
  expectReadings(1, "lost messages");
  kernel.flap(1);
  expectReadings(1, "a link that lost its carrier for a while");
  kernel.notifications.tellBytes(Buffer(7));
  expectReadings(1, "bytes that are no message");
  kernel.notifications.tell(route(AF_INET).put(RTA_GATEWAY, Buffer(3)));
  expectReadings(1, "a malformed route");
}

TEST(KernelFollower, SettlesAndRestsBeforeItReadsAfresh) {
  using std::chrono::milliseconds;
  for (KernelFollower::Pace const& pace :
       {KernelFollower::Pace{std::chrono::hours{1}, 0}, KernelFollower::Pace{milliseconds{0}, 100'000'000}}) {
    Followed followed;
    ModelKernel& kernel = followed.kernel;
    KernelFollower follower{kernel.source, kernel.notifications, [] { return 0.0; }, pace};
    EXPECT_FALSE(follower.patience());
    EXPECT_FALSE(follower.advance()) << "nothing has come";
    kernel.flap(1);
    EXPECT_FALSE(follower.advance()) << "nothing is settled";
    EXPECT_EQ(kernel.source.requests(RTM_GETROUTE), 1);
    ASSERT_TRUE(follower.patience());
    EXPECT_GT(*follower.patience(), std::chrono::seconds{10});
    for (int i = 0; i < 5000; ++i) kernel.notifications.tell(link(9, 0));
    static_cast<void>(follower.advance());
    EXPECT_EQ(*follower.patience(), milliseconds{0}) << "it left some for the next time";
  }
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
  for (unsigned i = 0; i < 200; ++i) {
    std::string const number = std::to_string(i);
    told.tell(routeVia(1, ("10.0.0." + number).c_str()), NLM_F_REPLACE);
    told.tell(nextHop(1, 1, ("10.1.0." + number).c_str()));  // no route goes by it
    rtmsg header{};
    header.rtm_family = AF_INET6;
    header.rtm_type = RTN_UNREACHABLE;
    header.rtm_src_len = 64;
    Message const route = Message{RTM_NEWROUTE, header}.put(RTA_SRC, ip(("fd00:" + number + "::").c_str()));
    told.tell(route, NLM_F_CREATE);
    told.tell(route.as(RTM_DELROUTE));
    static_cast<void>(followed.state());
  }
  KernelFigures const figures = followed.state();
  EXPECT_EQ(figures.ipv6, RouteCounts{});
  EXPECT_EQ(figures.ipv4, (RouteCounts{.routes = 1, .adjacencies = 1, .pendingRoutes = 1, .pendingAdjacencies = 1}));
  EXPECT_LT(followed.follower->keptEntries(), 10U);
}

RC_GTEST_PROP(KernelFollower, SurvivesAnySpoiledNotificationAndAnswer, ()) {
  Followed followed;
  auto const bytes = *rc::gen::container<std::vector<std::pair<std::size_t, std::uint8_t>>>(
      rc::gen::pair(rc::gen::inRange<std::size_t>(0, 120), rc::gen::arbitrary<std::uint8_t>()));
  auto const end = *rc::gen::inRange<std::size_t>(sizeof(nlmsghdr), 200);
  auto const spoil = [&](Buffer& datagram) {
    for (auto const& [place, value] : bytes) {
      if (place < datagram.size()) datagram[place] = std::byte{value};
    }
    if (end < datagram.size()) {  // cut off, and well framed all the same
      datagram.resize(end);
      auto const length = static_cast<std::uint32_t>(end);
      std::memcpy(datagram.data(), &length, sizeof length);
    }
    datagram.shrink_to_fit();  // so that a sanitizer sees the first byte read behind the end
  };
  Message const routeByLabels =
      route(AF_MPLS).put(RTA_DST, 100U).put(RTA_VIA, via("10.0.0.1")).put(RTA_NEWDST, std::uint32_t{1});
  Message const encapsulated =
      routeVia(3, "10.0.0.1").put(RTA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_IP}).put(RTA_ENCAP, Buffer(20));
  std::vector<Message> const routes{routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(2, "10.0.0.5")}), encapsulated,
                                    routeByLabels};
  followed.kernel.source.onlyMessages(RTM_GETROUTE, routes);
  followed.begin();
  for (Message const& message : {routes[0], routes[1], routes[2], link(1, 0, "vxlan", 2, 3), linkAddress(1, 0),
                                 neighbour(1, "fd00::1", NUD_REACHABLE), nextHop(1, 3, "10.0.0.1"),
                                 nextHopGroup(10, {1, 2}), forwarding(AF_INET, -1, 1)}) {
    Buffer datagram = message.framed(0, NLM_F_REPLACE);
    spoil(datagram);
    followed.kernel.notifications.tellBytes(std::move(datagram));
  }
  static_cast<void>(followed.state());
  followed.kernel.source.spoilWith(spoil);
  followed.kernel.notifications.lose();
  try {
    static_cast<void>(followed.follower->advance());  // once: tables may be told to keep changing for ever
  } catch (KernelError const&) {                      // as good an end: it says that the answer could not be read
  }
}

}  // namespace
}  // namespace Apps::Kernel
