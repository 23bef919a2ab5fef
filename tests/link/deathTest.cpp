// Processes that die after any byte of what they say, as who is at the other end of the socket sees it.
#include "dornl3/generic/Digest.h"
#include "dornl3/platform/link/Client.h"
#include "dornl3/platform/link/PollLoop.h"
#include "dornl3/platform/link/Server.h"
#include "dornl3/schema/AuditStatus.h"
#include "tests/core/LeakCheck.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <random>

namespace {

using namespace Vek::Link;
using namespace Vek::NboAttrLog;
using namespace Hardware::DornL3Unicast;
using Vek::Ptr;
using Vek::U64;

constexpr std::size_t textBytes = 1500;  // two pieces, for who takes small records

// What must be the same afterwards.
struct Held {
  std::ptrdiff_t descriptors =
      std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
  U64 objects = Vek::CountedHeap::liveObjects();
  bool operator==(Held const&) const = default;
};

// A text, and a tree of which one branch is there under this word alone.
void fill(AuditRequest& request, AuditStatus& status, std::string const& word, std::size_t bytes = textBytes) {
  request.tableToAuditIs(std::string_view(word + std::string(bytes - word.size(), '.')));
  Vek::Name const other(word == "old" ? "new" : "old");
  status.auditInfoDel(other);
  for (Vek::Name const& name : {Vek::Name("both"), Vek::Name(word)}) {
    auto const fap = status.auditInfoIs(name)->tableIs("table")->perFapInfoIs("fap");
    fap->totalEntriesFixedIs(static_cast<Vek::U32>(word[0]));
  }
}

using Mounted = std::array<Ptr<Mount>, 2>;

Mounted mount(auto&& by, Access access) {
  Mounted const mounts{mountOf<AuditRequest>("request", access), mountOf<AuditStatus>("status", access)};
  for (auto const& one : mounts) by.mountIs(one);
  return mounts;
}
bool are(Vek::Dir::State state, Mounted const& mounts) {
  return std::all_of(mounts.begin(), mounts.end(), [&](auto const& one) { return one->state() == state; });
}

// A process that has said so many bytes when it dies.
class Mortal : public Transport {
 public:
  Mortal(Socket socket, std::size_t life) : socket_(std::move(socket)), left_(life) {
    Limits limits;
    limits.recordBytes = leastLimit;
    connection = Vek::make<Connection>(Connection::Settings{"mortal", limits}, *this, steadyClock(), systemRandom());
  }

  std::size_t write(std::string_view bytes) override {
    std::size_t const count = socket_.write(bytes.substr(0, left_));
    left_ -= count;
    said_.append(bytes, 0, count);
    return count;
  }
  std::size_t read(char* into, std::size_t room) override { return socket_.read(into, room); }
  [[nodiscard]] bool isEnded() const override { return socket_.isEnded(); }

  void turn() const {
    connection->readable();
    connection->writable();
  }
  [[nodiscard]] bool isSpent() const { return left_ == 0; }
  // Whether its last word, the greeting or a record, was a whole one.
  [[nodiscard]] bool endedWell() const {
    std::size_t at = 32;
    if (said_.size() >= at) at += takeNumber<unsigned short>(said_.data() + at - 2);
    while (at + headerSize <= said_.size())
      at += headerSize + tokensSize + takeNumber<Vek::U32>(said_.data() + at + 12);
    return at == said_.size();
  }

 private:
  SocketTransport socket_;
  std::size_t left_;
  std::string said_;

 public:
  Ptr<Connection> connection;
};

class Deaths : public testing::Test {
 protected:
  Deaths() { fill(*request, *status, "old"); }

  void giveTo(auto&& exports, Access access) const {
    exports.exportIs(request, access);
    exports.exportIs(status, access);
  }
  [[nodiscard]] Mortal caller(std::size_t life = std::string::npos) const {
    Socket socket = Socket::of(address);
    EXPECT_TRUE(socket.connect(address));
    return {std::move(socket), life};
  }
  [[nodiscard]] bool areOwned(Mounted const& mounts) const {
    return are(Vek::Dir::inStep, mounts) && Vek::digest(*mounts[1]->entity()) == Vek::digest(*status) &&
           Vek::digest(*mounts[0]->entity()) == Vek::digest(*request);
  }
  // One death after the other: what there is then is as it was after the death before, but for whole records.
  void look(Vek::Entity const& tree, AuditRequest const& text, bool hasEndedWell) {
    ASSERT_EQ(text.tableToAudit().view().size(), textBytes);
    auto const found = std::pair(Vek::digest(tree), Vek::digest(text));
    bool const isFirst = known == decltype(known)();
    ASSERT_TRUE(isFirst || hasEndedWell || known == found) << "a part of a record was applied";
    known = found;
  }
  bool runUntil(auto const& condition) {
    for (int turn = 0; turn < 100'000; ++turn) {
      if (condition()) return true;
      loop.runOnce(0);
    }
    return false;
  }

  PollLoop loop;
  Address const address = Address::parse("unix:" + testing::TempDir() + "death" + std::to_string(getpid()) + ".sock");
  Ptr<AuditRequest> const request = Hardware::DornL3Unicast::auditRequestFactory("request");
  Ptr<AuditStatus> const status = Hardware::DornL3Unicast::auditStatusFactory("status");
  std::pair<U64, U64> known;
};

TEST_F(Deaths, OfAnOwnerAtAnyByteLeaveWhatItHadSaidAndNothingElse) {
  Client::Settings atOnce;
  atOnce.firstRest = 0;
  Client client{loop, address, atOnce};
  Mounted const mounts = mount(client, Access::readOnly);
  std::optional<Server> server;
  auto const live = [&] {
    server.emplace(loop, address, Server::Settings());
    giveTo(*server, Access::readOnly);
    ASSERT_TRUE(runUntil([&] { return areOwned(mounts); })) << client.trouble();
    server.reset();
    ASSERT_TRUE(runUntil([&] { return are(Vek::Dir::stale, mounts) && client.attempts() > 2; }));
  };
  live();
  auto const tree = mounts[1]->entity();
  fill(*request, *status, "new");
  Held const before;
  {
    Listener listener{address, 0600};
    bool isWhole = false;
    for (std::size_t life = 0; !isWhole && !HasFatalFailure(); ++life) {
      SCOPED_TRACE(life);
      Socket socket;
      ASSERT_TRUE(runUntil([&] { return listener.accept(socket) == Listener::Taken::one; })) << client.trouble();
      double const begin = steadyClock()();
      std::optional<Mortal> owner(std::in_place, std::move(socket), life);
      giveTo(owner->connection->exports(), Access::readOnly);
      ASSERT_TRUE(runUntil([&] {
        owner->turn();
        return owner->isSpent() || areOwned(mounts);
      }));
      isWhole = !owner->isSpent();
      bool const hasEndedWell = owner->endedWell();
      owner.reset();
      ASSERT_TRUE(runUntil([&] { return client.state() == Client::State::resting; }));
      ASSERT_TRUE(are(Vek::Dir::stale, mounts));
      ASSERT_TRUE(life == 0 || mounts[1]->lastWord() >= begin);
      look(*tree, *mounted<AuditRequest>(*mounts[0]), hasEndedWell);
    }
  }
  fill(*request, *status, "old");
  live();
  EXPECT_EQ(Held(), before);
  EXPECT_EQ(mounts[1]->entity(), tree);
}

TEST_F(Deaths, OfAWriterAtAnyByteLeaveWhatItHadSaidAndOthersInStep) {
  Server server{loop, address, {}};
  giveTo(server, Access::writable);
  Mortal const other = caller();
  Mounted const others = mount(other.connection->mounts(), Access::readOnly);
  auto const isOtherAlone = [&] {
    other.turn();
    return server.peerCount() == 1 && areOwned(others);
  };
  ASSERT_TRUE(runUntil(isOtherAlone));
  Held const before;
  bool isWhole = false;
  for (std::size_t life = 0; !isWhole && !HasFatalFailure(); ++life) {
    SCOPED_TRACE(life);
    fill(*request, *status, "old");
    bool hasEndedWell = false;
    {
      Mortal const writer = caller(life);
      Mounted const mounts = mount(writer.connection->mounts(), Access::writable);
      bool hasWritten = false;
      ASSERT_TRUE(runUntil([&] {
        writer.turn();
        if (are(Vek::Dir::inStep, mounts) && !std::exchange(hasWritten, true)) {
          fill(*mountedWritable<AuditRequest>(*mounts[0]), *mountedWritable<AuditStatus>(*mounts[1]), "new");
          mounts[1]->barrier([&](auto outcome) { isWhole = outcome == Barriers::Outcome::applied; });
        }
        return writer.isSpent() || isWhole;
      }));
      hasEndedWell = writer.endedWell();
    }
    ASSERT_TRUE(runUntil(isOtherAlone));
    look(*status, *request, hasEndedWell);
  }
  EXPECT_EQ(Held(), before);
}

// Of long texts, and of trees that change, some of it is always under way.
TEST_F(Deaths, OfReadersAtAnyMomentLeaveNothingBehind) {
  Server server{loop, address, {}};
  giveTo(server, Access::readOnly);
  Held const before;
  std::mt19937 random{20};  // NOLINT(cert-msc51-cpp): the same deaths each time
  for (int death = 0; death < 1000; ++death) {
    Mortal const dying = caller();
    Mounted const mounts = mount(dying.connection->mounts(), Access::readOnly);
    for (auto rounds = random() % 12; rounds > 0; --rounds) {
      if (random() % 4 == 0) fill(*request, *status, random() % 2 == 0 ? "old" : "new", 100'000);
      loop.runOnce(0);
      if (random() % 4 != 0) dying.turn();
    }
  }
  ASSERT_TRUE(runUntil([&] { return server.peerCount() == 0; }));
  EXPECT_EQ(Held(), before);
}

}  // namespace
