#include "apps/kernel/Dump.h"

#include "tests/apps/RecordedSource.h"

#include <gtest/gtest.h>

namespace Apps::Kernel {
namespace {

class Dump : public testing::Test {
 protected:
  Outcome read(Table table = Table::routes) {
    return dumper_.read(
        table, [this] { taken_ = 0; }, [this](Bytes) { ++taken_; });
  }

  RecordedSource kernel_;
  Dumper dumper_{kernel_};
  int taken_ = 0;
};

TEST_F(Dump, StartsOverOnAFreshSocketWhenMessagesWereLost) {
  kernel_.answer(RTM_GETROUTE, {.messages = {route(AF_INET)}, .overrun = true});
  kernel_.answer(RTM_GETROUTE, {.messages = {route(AF_INET), Message{NLMSG_OVERRUN, 0}}});
  kernel_.messages(RTM_GETROUTE, std::vector<Message>(500, routeVia(1, "10.0.0.1")));  // several datagrams
  EXPECT_EQ(read(), Outcome::consistent);
  EXPECT_EQ(kernel_.reopened(), 2);
  EXPECT_EQ(taken_, 500);
}

TEST_F(Dump, GivesUpWhenMessagesAreLostEachTime) {
  kernel_.answer(RTM_GETROUTE, {.overrun = true});
  EXPECT_THROW((void)read(), KernelError);
  EXPECT_EQ(kernel_.requests(RTM_GETROUTE), Dumper::attempts);
}

TEST_F(Dump, PassesOverLeftoversOfAnEarlierRequestAndMessagesOfAnotherTable) {
  EXPECT_EQ(read(), Outcome::consistent);
  kernel_.answer(RTM_GETROUTE, {});
  kernel_.answer(RTM_GETROUTE, {.messages = {link(1, 0), route(AF_INET), route(AF_INET)},
                                .sequenceOfOthers = 1,
                                .othersMessages = {route(AF_INET), Message{NLMSG_DONE, 0}}});
  EXPECT_EQ(read(), Outcome::consistent);
  EXPECT_EQ(taken_, 2);
}

TEST_F(Dump, SaysWhatCouldNotBeReadAndWhy) {
  kernel_.answer(RTM_GETROUTE, {.error = EPERM});
  try {
    (void)read();
    FAIL();
  } catch (KernelError const& error) {
    EXPECT_STREQ(error.what(),
                 "The kernel's routes could not be read: Operation not permitted. Run dornl3 where rtnetlink may be "
                 "used: outside the sandbox or the policy that forbids it.");
  }
}

TEST_F(Dump, DoesWithoutNextHopObjectsWhereTheKernelHasNone) {
  kernel_.answer(RTM_GETNEXTHOP, {.error = EOPNOTSUPP});
  EXPECT_EQ(read(Table::nextHops), Outcome::absent);
  kernel_.answer(RTM_GETROUTE, {.error = EOPNOTSUPP});
  EXPECT_THROW((void)read(), KernelError) << "routes every kernel has";
}

TEST_F(Dump, OfBrokenBytesIsAnErrorAndNoEndlessLoop) {
  kernel_.messages(RTM_GETROUTE, {route(AF_INET)});
  for (std::size_t length = 1; length < sizeof(nlmsghdr) + sizeof(rtmsg); ++length) {
    kernel_.spoilWith([length](Buffer& datagram) { datagram.resize(length); });
    EXPECT_THROW((void)read(), KernelError) << length;
  }
}

}  // namespace
}  // namespace Apps::Kernel
