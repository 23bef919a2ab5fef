// Servers and clients over sockets, on both loops.
#include "Loops.h"
#include "dornl3/platform/link/Client.h"
#include "dornl3/platform/link/Server.h"
#include "dornl3/schema/Status.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <limits>
#include <string>

namespace {

using namespace LinkTest;
using namespace Hardware::DornL3Unicast;
using Vek::Ptr;
using namespace Vek::Link;
using namespace Vek::NboAttrLog;

template <class On>
class LinkTest : public testing::Test {
 protected:
  static Server::Settings serverSettings() { return {.connection = {"agent", {}}}; }
  static Client::Settings clientSettings() {
    Client::Settings settings{.connection = {"reader", {}}, .firstRest = 0.01, .longestRest = 0.1};
    settings.random = [] { return std::numeric_limits<Vek::U32>::max(); };
    return settings;
  }

  On on;
  Address const address = Address::parse(port(Listener(Address::parse(port(0)), 0).port()));
  static std::string port(int number) { return "tcp:127.0.0.1:" + std::to_string(number); }
  Ptr<Request> const request = requestFactory("request");
};

using Loops = testing::Types<OnPoll, OnAsio>;
TYPED_TEST_SUITE(LinkTest, Loops, );

TYPED_TEST(LinkTest, AWriteReachesTheOwnerAndIsAnsweredForWhereThePeerMayWrite) {
  auto settings = this->serverSettings();
  settings.mostAccess = [](Server::Peer const& peer, Vek::Entity const& entity) {
    return peer.credentials || entity.name() == "request" ? Access::writable : Access::readOnly;
  };
  Server server{this->on.loop(), this->address, settings};
  server.exportIs(this->request, Access::writable);
  Client client{this->on.loop(), this->address, this->clientSettings()};
  auto const mount = mountOf<Request>("request", Access::writable);
  client.mountIs(mount);
  ASSERT_TRUE(this->on.runUntil([&] { return mount->state() == Vek::Dir::inStep; })) << client.trouble();

  mountedWritable<Request>(*mount)->statusRequestIdInc(1);
  std::optional<Barriers::Outcome> outcome;
  mount->barrier([&](Barriers::Outcome said) { outcome = said; });
  ASSERT_TRUE(this->on.runUntil([&] { return outcome.has_value(); }));
  EXPECT_EQ(*outcome, Barriers::Outcome::applied);
  EXPECT_EQ(this->request->statusRequestId(), 1U);
  EXPECT_FALSE(server.peers().front().credentials) << "nobody is known";

  server.exportIs(requestFactory("other"), Access::writable);
  auto const refused = mountOf<Request>("other", Access::writable);
  client.mountIs(refused);
  ASSERT_TRUE(this->on.runUntil([&] { return !refused->refusal().empty(); }));
  EXPECT_EQ(refused->refusal(), "it may be mounted read-only");
}

// What was taken back, or lost with its server, comes again where it is wanted still, as the same replica.
TYPED_TEST(LinkTest, AnEntityThatIsServedAgainIsMountedAgain) {
  std::optional<Server> server;
  auto const serve = [&] {
    server.emplace(this->on.loop(), this->address, this->serverSettings());
    server->exportIs(this->request, Access::readOnly);
  };
  serve();
  Client client{this->on.loop(), this->address, this->clientSettings()};
  auto const mount = mountOf<Request>("request", Access::readOnly);
  client.mountIs(mount);
  Ptr<Vek::Entity const> replica;
  auto const needInStep = [&] {
    ASSERT_TRUE(this->on.runUntil([&] { return mount->state() == Vek::Dir::inStep; })) << client.trouble();
    if (!replica) replica = mount->entity();
    EXPECT_EQ(mount->entity(), replica);
    EXPECT_EQ(mounted<Request>(*mount)->statusRequestId(), this->request->statusRequestId());
  };
  needInStep();

  server->exportDel("request");
  ASSERT_TRUE(this->on.runUntil([&] { return mount->state() == Vek::Dir::stale; }));
  this->request->statusRequestIdIs(9);
  server->exportIs(this->request, Access::readOnly);
  needInStep();
  client.mountDel(*mount);
  client.mountIs(mount);
  needInStep();

  server.reset();
  double const lostAt = steadyClock()();
  ASSERT_TRUE(this->on.runUntil([&] { return mount->state() == Vek::Dir::stale && client.attempts() > 4; }));
  EXPECT_GE(steadyClock()() - lostAt, 1.5 * 0.01 * (1 + 2 + 4 + 8));
  EXPECT_EQ(client.error(), ECONNREFUSED) << client.trouble();
  this->request->statusRequestIdIs(7);
  serve();
  needInStep();
}

TYPED_TEST(LinkTest, WhoIsOneTooManyIsToldAndComesLessAndLessOften) {
  auto settings = this->serverSettings();
  settings.mostPeers = 1;
  Server server{this->on.loop(), this->address, settings};
  int cameAndLeft = 0;
  server.whenChangedIs([&](Server::Event event, Server::Peer const&) {
    if (event != Server::Event::turnedAway) ++cameAndLeft;
  });
  Client first{this->on.loop(), this->address, this->clientSettings()};
  ASSERT_TRUE(this->on.runUntil([&] { return first.state() == Client::State::connected; }));
  Client second{this->on.loop(), this->address, this->clientSettings()};
  EXPECT_TRUE(this->on.runUntil([&] { return second.attempts() > 2; })) << second.trouble();
  EXPECT_NE(second.trouble().find("the most that there may be"), std::string::npos) << second.trouble();
  EXPECT_EQ(server.peerCount(), 1U);
  EXPECT_EQ(cameAndLeft, 1);
}

TYPED_TEST(LinkTest, AWatchMayEndItselfAndAnotherWhoseTurnIsNext) {
  std::array<int, 2> ends{};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
  std::array<Socket, 2> const sockets{Socket{ends[0]}, Socket{ends[1]}};
  std::array<std::unique_ptr<Watch>, 2> watches;
  int calls = 0;
  for (auto& watch : watches) {
    watch = this->on.loop().watch(ends.at(static_cast<std::size_t>(&watch - watches.data())), [&](Readiness) {
      ++calls;
      watches = {};
    });
    watch->wishIs({.toWrite = true});
  }
  this->on.runUntil([] { return false; }, 0.1);
  EXPECT_EQ(calls, 1);
}

}  // namespace
