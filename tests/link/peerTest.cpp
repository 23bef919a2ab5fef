// What peers may do to a server that say nothing, or stop reading.
#include "dornl3/generic/Digest.h"
#include "dornl3/platform/link/Client.h"
#include "dornl3/platform/link/PollLoop.h"
#include "dornl3/platform/link/Server.h"
#include "dornl3/schema/Status.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace {

using namespace Vek::Link;
using namespace Hardware::DornL3Unicast;
using Vek::Ptr;
using namespace Vek::NboAttrLog;

constexpr Vek::U32 keys = 2000;

class Peers : public testing::Test {
 protected:
  Peers() {
    for (Vek::U32 fap = 0; fap < keys; ++fap) change(fap, fap);
  }

  void change(Vek::U32 key, Vek::U32 value) {
    status->inUseArpEntriesIs(Hardware::Dorn::FapId(static_cast<unsigned short>(key % keys)), value);
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
  auto const clock = Vek::NboAttrLog::steadyClock();
  auto const rounds = [&](double heartbeat, double seconds) {
    Server server{loop, address, settings(heartbeat)};
    server.exportIs(status, Access::readOnly);
    auto const mount = mountOf<Status>("status", Access::readOnly);
    auto const link = reader(loop, mount, heartbeat);
    EXPECT_TRUE(loop.runUntil([&] { return mount->state() == Vek::Dir::inStep; }, 20));
    while (loop.runOnce(0)) {
    }
    int count = 0;
    double const end = clock() + seconds;
    for (double left = seconds; left > 0; left = end - clock(), ++count) loop.runOnce(left);
    return count;
  };
  EXPECT_EQ(rounds(10, 1.2), 1);
  EXPECT_LE(rounds(0.1, 0.3), 2 * (2 * 4 + 1) + 1);  // each end says and hears four words, and looks once too early
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

}  // namespace
