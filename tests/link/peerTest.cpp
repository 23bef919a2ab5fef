// What peers may do to a server: nothing, or end at the worst moment, or stop reading.
#include "dornl3/generic/Digest.h"
#include "dornl3/platform/attrlog/MemoryTransport.h"
#include "dornl3/platform/link/Client.h"
#include "dornl3/platform/link/PollLoop.h"
#include "dornl3/platform/link/Server.h"
#include "dornl3/schema/Status.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace Vek::Link;
using Hardware::DornL3Unicast::Status;
using Hardware::DornL3Unicast::statusFactory;
using Vek::Ptr;
using Vek::NboAttrLog::Access;
using Vek::NboAttrLog::Mount;
using Vek::NboAttrLog::mountOf;

constexpr Vek::U32 keys = 2000;

class Peers : public testing::Test {
 protected:
  Peers() {
    for (Vek::U32 fap = 0; fap < keys; ++fap) change(fap, fap);
    status->lemV4RouteStatsIs("v4")->routeCountIs(24, 7);
  }

  void change(std::uint_fast32_t key, std::uint_fast32_t value) {
    status->inUseArpEntriesIs(Hardware::Dorn::FapId(static_cast<unsigned short>(key % keys)),
                              static_cast<Vek::U32>(value));
  }
  [[nodiscard]] static Server::Settings settings(double heartbeat) {
    return {.connection = {"agent", {.heartbeatSeconds = heartbeat}}};
  }
  [[nodiscard]] std::unique_ptr<PeerLink> reader(Loop& on, Ptr<Mount> const& mount, double heartbeat = 10) {
    Socket socket = Socket::of(address);
    EXPECT_TRUE(socket.connect(address));
    Vek::NboAttrLog::Connection::Settings const own{"reader", {.heartbeatSeconds = heartbeat}};
    auto link = std::make_unique<PeerLink>(on, std::move(socket), own, [] {});
    link->connection().mounts().mountIs(mount);
    return link;
  }

  PollLoop loop;
  Address const address = Address::parse("unix:" + testing::TempDir() + "peer" + std::to_string(getpid()) + ".sock");
  Ptr<Status> const status = statusFactory("status");
};

TEST_F(Peers, WhoIsNotHeardIsLetGoAfterThreeHeartbeatsAndOthersStay) {
  constexpr double heartbeat = 0.2;
  auto const clock = Vek::NboAttrLog::steadyClock();
  Server server{loop, address, settings(heartbeat)};
  std::vector<std::string> reasons;
  double firstLeft = 0;
  server.whenChangedIs([&](Server::Event event, Server::Peer const& peer) {
    if (event != Server::Event::left) return;
    if (reasons.empty()) firstLeft = clock();
    reasons.emplace_back(peer.connection.closeReason().view());
  });
  double const start = clock();
  Socket silent = Socket::of(address);
  ASSERT_TRUE(silent.connect(address));
  PollLoop wedged;
  auto const stops = reader(wedged, mountOf<Status>("status", Access::readOnly), heartbeat);
  auto const stays = reader(loop, mountOf<Status>("other", Access::readOnly), heartbeat);
  for (int i = 0; i < 5; ++i) {
    wedged.runOnce(0);
    loop.runOnce(0.01);
  }
  EXPECT_EQ(server.peerCount(), 3U);
  EXPECT_TRUE(loop.runUntil([&] { return server.peerCount() == 1; }, 3 * heartbeat + 0.3));
  EXPECT_GE(firstLeft - start, 3 * heartbeat);
  ASSERT_EQ(reasons.size(), 2U);
  for (auto const& reason : reasons) EXPECT_EQ(reason.rfind("nothing was heard for 0.", 0), 0U) << reason;
  EXPECT_EQ(stays->connection().state(), Vek::NboAttrLog::open);
}

TEST_F(Peers, NothingWakesALoopButHeartbeats) {
  Server server{loop, address, settings(0.1)};
  server.exportIs(status, Access::readOnly);
  auto const mount = mountOf<Status>("status", Access::readOnly);
  auto const link = reader(loop, mount, 0.1);
  ASSERT_TRUE(loop.runUntil([&] { return mount->state() == Vek::Dir::inStep; }, 20));
  auto const clock = Vek::NboAttrLog::steadyClock();
  int calls = 0;
  for (double const end = clock() + 1; clock() < end; ++calls) loop.runOnce(end - clock());
  EXPECT_GE(calls, 10);
  EXPECT_LE(calls, 60);  // two ends, ten times each: said, heard, and a deadline that has moved
}

TEST_F(Peers, WhoDoesNotReadDelaysNobodyAndCostsABoundedLog) {
  Server server{loop, address, settings(10)};
  server.exportIs(status, Access::readOnly);
  PollLoop slow;
  auto const slowMount = mountOf<Status>("status", Access::readOnly);
  auto const mount = mountOf<Status>("status", Access::readOnly);
  auto const slowReader = reader(slow, slowMount);
  auto const quickReader = reader(loop, mount);
  auto const areBothInStep = [&] {
    slow.runOnce(0);
    return slowMount->state() == Vek::Dir::inStep && mount->state() == Vek::Dir::inStep;
  };
  ASSERT_TRUE(loop.runUntil(areBothInStep, 20));

  Vek::NboAttrLog::Limits const limits;
  for (Vek::U32 i = 0; i < 100'000; ++i) {
    change(i, i);
    if (i % 100 == 0) loop.runOnce(0);
    for (auto const& peer : i % 5000 == 0 ? server.peers() : std::vector<Server::Peer>()) {
      ASSERT_LE(peer.connection.out()->unsent(), std::size_t{limits.outBytes} + limits.recordBytes);
    }
  }
  auto const isSame = [&](Mount const& one) { return Vek::digest(*one.entity()) == Vek::digest(*status); };
  EXPECT_TRUE(loop.runUntil([&] { return isSame(*mount); }, 20));
  EXPECT_FALSE(isSame(*slowMount));
  EXPECT_TRUE(loop.runUntil(
      [&] {
        slow.runOnce(0);
        return isSame(*slowMount);
      },
      20));
}

TEST_F(Peers, ThatDieAtAnyMomentLeaveNothingBehind) {
  Server server{loop, address, settings(10)};
  server.exportIs(status, Access::readOnly);
  auto const descriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
  };
  auto const before = descriptors();
  std::mt19937 random{20};  // NOLINT(cert-msc51-cpp): the same deaths each time
  auto const mount = mountOf<Status>("status", Access::readOnly);
  for (int death = 0; death < 1000; ++death) {
    auto dying = reader(loop, mount);
    for (auto rounds = random() % 12; rounds > 0; --rounds) {
      change(random(), random());
      if (random() % 8 == 0) status->lemV4RouteStatsDel();
      if (random() % 8 == 0) status->lemV4RouteStatsIs("v4")->routeCountIs(24, static_cast<Vek::U32>(death));
      loop.runOnce(0);
    }
    // Without a farewell, and with what is under way lost.
    shutdown(dying->socket().descriptor(), SHUT_RDWR);
    dying.reset();
  }
  EXPECT_TRUE(loop.runUntil([&] { return server.peerCount() == 0; }, 20));
  EXPECT_EQ(descriptors(), before);
  auto const last = reader(loop, mount);
  ASSERT_TRUE(loop.runUntil([&] { return mount->state() == Vek::Dir::inStep; }, 20));
  EXPECT_EQ(Vek::digest(*mount->entity()), Vek::digest(*status));
}

// What a reader says until it is in step, as far as each byte of it: the server has any part of a greeting or record.
TEST_F(Peers, ThatDieAtAnyByteHarmNobody) {
  using Vek::NboAttrLog::Connection;
  using Vek::NboAttrLog::MemoryTransport;
  MemoryTransport here;
  MemoryTransport there;
  MemoryTransport::join(here, there);
  auto const end = [](char const* name, MemoryTransport& transport) {
    return Vek::make<Connection>(Connection::Settings{name, {}}, transport, Vek::NboAttrLog::steadyClock(),
                                 Vek::NboAttrLog::systemRandom());
  };
  auto const owner = end("owner", here);
  auto const living = end("reader", there);
  auto const mount = mountOf<Status>("status", Access::readOnly);
  owner->exports().exportIs(status, Access::readOnly);
  living->mounts().mountIs(mount);
  std::string said;
  for (int turn = 0; turn < 1000 && mount->state() != Vek::Dir::inStep; ++turn) {
    living->writable();
    said += here.incoming();
    owner->readable();
    owner->writable();
    living->readable();
  }
  ASSERT_EQ(mount->state(), Vek::Dir::inStep);
  ASSERT_GT(said.size(), 40U);  // a greeting and a request

  Server server{loop, address, settings(10)};
  server.exportIs(status, Access::readOnly);
  std::size_t came = 0;
  server.whenChangedIs([&](Server::Event event, Server::Peer const&) { came += event == Server::Event::came ? 1 : 0; });
  for (std::size_t length = 0; length <= said.size(); ++length) {
    Socket dying = Socket::of(address);
    ASSERT_TRUE(dying.connect(address));
    ASSERT_EQ(send(dying.descriptor(), said.data(), length, MSG_NOSIGNAL), static_cast<ssize_t>(length));
    if (length % 2 == 0) {
      ASSERT_TRUE(loop.runUntil([&] { return came == length + 1; }, 5));
    }
    dying = Socket();
    ASSERT_TRUE(loop.runUntil([&] { return came == length + 1 && server.peerCount() == 0; }, 5)) << length;
  }
  auto const afterwards = mountOf<Status>("status", Access::readOnly);
  auto const last = reader(loop, afterwards);
  ASSERT_TRUE(loop.runUntil([&] { return afterwards->state() == Vek::Dir::inStep; }, 20));
  EXPECT_EQ(Vek::digest(*afterwards->entity()), Vek::digest(*status));
}

}  // namespace
