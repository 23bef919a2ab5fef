// A kernel that is followed by its notifications is known as well as one that is read afresh.
#include "apps/kernel/KernelFollower.h"

#include "apps/kernel/KernelReader.h"
#include "tests/apps/ModelKernel.h"
#include "tests/core/Property.h"

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

TEST(KernelFollower, KnowsWhatAFreshReadingKnows) {
  expectLaw(300, [] {
    Followed followed{*differences()};
    for (Step const& step : *steps(17)) live(followed.kernel, step);
    followed.begin();  // what has been told until now is stale by now
    RC_ASSERT(followed.agrees());
    for (Step const& step : *steps(17)) {
      live(followed.kernel, step);
      if (std::get<2>(step) % 4 == 0) RC_ASSERT(followed.agrees());
    }
    RC_ASSERT(followed.agrees());
  });
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
  ifinfomsg const port{AF_BRIDGE, {}, {}, 1, {}, {}};
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
  kernel.add4(0, {{0}}), kernel.replaceByLocal4(0);
  expectReadings(1, "a local route in the place of another");
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

TEST(KernelFollower, GivesUpAfterThreeReadingsThatFailed) {
  Followed followed;
  KernelFollower& follower = followed.begin();
  followed.kernel.notifications.lose();
  followed.kernel.source.onlyAnswer(RTM_GETNEIGH, {.overrun = true});
  EXPECT_FALSE(follower.advance());
  EXPECT_FALSE(follower.advance());
  EXPECT_THROW(follower.advance(), KernelError);
}

Message forwarding(std::uint8_t family, std::int32_t link, std::int32_t value) {
  return Message{RTM_NEWNETCONF, netconfmsg{family}}.put(NETCONFA_IFINDEX, link).put(NETCONFA_FORWARDING, value);
}

TEST(KernelFollower, KeepsTheTimesOfChanges) {
  Followed followed;
  ModelKernel& kernel = followed.kernel;
  kernel.add4(0, {{0}});
  KernelFollower& follower = followed.begin();
  auto const expectTimes = [&](ChangeTimes const& expected, char const* after) {
    static_cast<void>(followed.state());
    EXPECT_EQ(follower.figures().times, expected) << after;
    ++followed.now;
  };
  followed.now = 1;
  expectTimes({}, "what was there before has no time");
  kernel.add4(1, {{0}});
  expectTimes({.ipv4 = {2}, .ipv6 = {}}, "a route");
  kernel.replace4(0, {{1}}), kernel.add6(1, 0);
  expectTimes({.ipv4 = {3, 3}, .ipv6 = {3}}, "a default route, and an IPv6 one");
  kernel.flap(1);
  expectTimes({.ipv4 = {4, 4}, .ipv6 = {3}}, "what is found gone");
  kernel.notifications.tell(forwarding(AF_INET, NETCONFA_IFINDEX_ALL, 1));
  kernel.notifications.tell(forwarding(AF_INET6, NETCONFA_IFINDEX_ALL, 0));
  expectTimes({.ipv4 = {4, 4, 5}, .ipv6 = {.route = 3, .forwardingOff = 5}}, "forwarding");
  kernel.notifications.tell(forwarding(AF_INET, 1, 1)), kernel.object(1, 1);
  expectTimes({.ipv4 = {4, 4, 5}, .ipv6 = {.route = 3, .forwardingOff = 5}}, "forwarding of one link, and no route");
}

TEST(KernelFollower, ForgetsNextHopsAndSourcesThatNobodyUses) {
  Followed followed;
  followed.begin();
  RecordedNotifications& told = followed.kernel.notifications;
  for (unsigned i = 0; i < 100; ++i) {
    std::string const number = std::to_string(i);
    told.tell(routeVia(1, ("10.0.0." + number).c_str()), NLM_F_REPLACE);
    told.tell(nextHop(1, 1, ("10.1.0." + number).c_str()));  // no route goes by it
    rtmsg header = routeHeader(AF_INET6, 0, RTN_UNREACHABLE);
    header.rtm_src_len = 64;
    Message const route = Message{RTM_NEWROUTE, header}.put(RTA_SRC, ip(("fd00:" + number + "::").c_str()));
    told.tell(route, NLM_F_CREATE);
    told.tell(route.as(RTM_DELROUTE));
    static_cast<void>(followed.state());
  }
  EXPECT_LT(followed.follower->keptEntries(), 10U);
}

}  // namespace
}  // namespace Apps::Kernel
