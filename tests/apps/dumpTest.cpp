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

TEST_F(Dump, TakesEachMessageOnce) {
  kernel_.messages(RTM_GETROUTE, std::vector<Message>(500, routeVia(1, "10.0.0.1")));  // several datagrams
  EXPECT_EQ(read(), Outcome::consistent);
  EXPECT_EQ(taken_, 500);
}

TEST_F(Dump, StartsOverOnAFreshSocketWhenMessagesWereLost) {
  kernel_.answer(RTM_GETROUTE, {.messages = {route(AF_INET)}, .overrun = true});
  kernel_.messages(RTM_GETROUTE, {route(AF_INET), route(AF_INET)});
  EXPECT_EQ(read(), Outcome::consistent);
  EXPECT_EQ(kernel_.reopened(), 1);
  EXPECT_EQ(taken_, 2);
}

TEST_F(Dump, GivesUpWhenMessagesAreLostEachTime) {
  kernel_.answer(RTM_GETROUTE, {.overrun = true});
  EXPECT_THROW((void)read(), KernelError);
  EXPECT_EQ(kernel_.requests(RTM_GETROUTE), Dumper::attempts);
}

TEST_F(Dump, PassesOverLeftoversOfAnotherRequestAndMessagesOfAnotherTable) {
  kernel_.answer(RTM_GETROUTE, {.messages = {link(1, 0), route(AF_INET)},
                                .sequenceOfOthers = 77,
                                .othersMessages = {route(AF_INET), Message{NLMSG_DONE, 0}}});
  EXPECT_EQ(read(), Outcome::consistent);
  EXPECT_EQ(taken_, 1);
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

// A source of one datagram as it stands.
class OneDatagram final : public MessageSource {
 public:
  explicit OneDatagram(Buffer bytes) : bytes_{std::move(bytes)} {}
  void send(Bytes) override {}
  std::optional<Bytes> receive() override { return Bytes{bytes_}; }
  void reopen() override {}

 private:
  Buffer bytes_;
};

TEST(DumpOfBrokenBytes, IsAnErrorAndNoEndlessLoop) {
  Buffer const good = route(AF_INET).framed(1);
  for (std::size_t length = 1; length < good.size(); ++length) {
    OneDatagram source{Buffer(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length))};
    Dumper dumper{source};
    EXPECT_THROW((void)dumper.read(
                     Table::routes, [] {}, [](Bytes) {}),
                 KernelError)
        << length;
  }
}

}  // namespace
}  // namespace Apps::Kernel
