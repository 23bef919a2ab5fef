// Entities of the real types and their replicas: every type, filled by what the registry says of it; a text of the most
// that is allowed; and all that takes part in a replication, let go in any order.
#include "dornl3/generic/Digest.h"
#include "dornl3/schema/AuditStatus.h"
#include "dornl3/schema/Status.h"
#include "tests/attrlog/LogPair.h"
#include "tests/core/LeakCheck.h"
#include "tests/schema/Inventor.h"

#include <algorithm>
#include <set>

namespace LogTest {
namespace {

using namespace Hardware::DornL3Unicast;
using Vek::GenericIf;
using Vek::Ptr;

// Sets every attribute, three keys of each collection and two children of each name, all the way down.
void fill(Generic const& entity, Inventor& inventor) {
  for (auto const& attr : entity->type()->attributes()) {
    if (!isOwn(*entity->type(), *attr)) continue;
    auto const flags = attr->flags();
    GenericIf::AttributeOp const set{attr->id(), GenericIf::OpSet};
    if (flags.isInstantiating()) {
      for (char const* name : {"'one'", "'other'"}) {
        fill(entity->attributeOp(set, nullptr, listOf({valueOf(keyTypeOf(*attr), name)})), inventor);
      }
    } else if (flags.isSettable()) {
      for (int keys = flags.isCollection() ? 3 : 1; keys > 0; --keys) {
        Generic const key = flags.isCollection() ? inventor.value(keyTypeOf(*attr)) : Generic{};
        entity->attributeOp(set, key, inventor.value(*attr->valueType()));
      }
    }
  }
}

struct OfEveryType : LeakCheck {
  LogPair pair;
};

TEST_F(OfEveryType, FollowsItsOwnerAndIsFollowed) {
  std::set<Vek::VekType const*> replicated;
  for (Vek::VekType const* type : entityTypes()) {
    SCOPED_TRACE(type->fullName());
    Generic const made = newRoot(*type, "'root'");
    Ptr<Vek::Entity> const owner = made ? Ptr<Vek::Entity>(&entityOf(made)) : Vek::make<TableFapAuditInfo>("root", "f");
    Inventor inventor{7};
    auto const filled = [&](Vek::Entity& entity) {
      Vek::U64 const before = digest(entity);
      while (digest(entity) == before) fill(Vek::VekType::genericIf(&entity, false), inventor);
    };
    filled(*owner);
    Mounted<Vek::Entity> mounted(pair, owner);
    ASSERT_EQ(mounted.mount->state(), Vek::Dir::inStep) << mounted.mount->refusal();
    Ptr<Vek::Entity> const replica = mounted.replica();
    EXPECT_EQ(digest(*replica), digest(*owner));
    for (auto const& adapter : pair.reader().demuxer().adapters().all()) {
      replicated.insert(static_cast<Vek::Entity::VekNboAttrLogSa&>(*adapter).vekNotifierEntity()->fwkType());
    }
    for (auto const& [who, to] : {std::pair{owner, replica}, std::pair{replica, owner}}) {
      filled(*who);
      pair.settle();
      EXPECT_EQ(digest(*to), digest(*who));
    }
    pair.connect();
    filled(*owner);
    mounted.bind(pair, owner);
    pair.settle();
    EXPECT_EQ(digest(*replica), digest(*owner));
    pair.connect();
  }
  EXPECT_EQ(replicated.size(), entityTypes().size());
  EXPECT_EQ(replicated.size(), 13U);
}

struct OfTheLongestText : LeakCheck {
  static PairOptions slow() {
    PairOptions options;
    options.capacity = 64 * 1024;
    return options;
  }
  LogPair pair{slow()};
};

TEST_F(OfTheLongestText, ComesWholeOrNotAtAllThroughSmallBuffers) {
  Vek::NboAttrLog::Limits const limits;
  auto const request = auditRequestFactory("request");
  request->tableToAuditIs("before");
  Mounted<AuditRequest> mounted(pair, request);
  auto const replica = mounted.replica();
  ASSERT_EQ(replica->tableToAudit(), "before");

  std::size_t mostUnsent = 0;
  std::size_t mostUnderWay = 0;
  int steps = 0;
  auto const step = [&] {
    pair.owner().writable();
    mostUnsent = std::max(mostUnsent, pair.owner().out()->unsent());
    mostUnderWay = std::max(mostUnderWay, pair.readerTransport().incoming().size());
    pair.step();
    ++steps;
  };
  request->tableToAuditIs(std::string_view(std::string(limits.textBytes, 'x')));
  mostUnsent = pair.owner().out()->unsent();
  for (int half = 0; half < 100; ++half) step();
  EXPECT_EQ(replica->tableToAudit(), "before");
  pair.cut();
  EXPECT_EQ(replica->tableToAudit(), "before");

  pair.connect();
  mounted.bind(pair, request);
  auto const writes = replica->writeCount();
  do {
    step();
    EXPECT_TRUE(replica->tableToAudit() == "before" || replica->tableToAudit().length() == limits.textBytes);
  } while (!pair.isAtRest());
  EXPECT_EQ(replica->tableToAudit(), request->tableToAudit());
  EXPECT_EQ(replica->writeCount(), writes + 1);
  EXPECT_GT(steps, 100);
  EXPECT_LE(mostUnsent, limits.outBytes + limits.messageBytes);
  EXPECT_LE(mostUnderWay, 64U * 1024);
}

struct LetGo : LeakCheck {};

// The owner's entity, its adapter, what that owes, its export and
// connection; the reader's mount, its generic, its connection.
TEST_F(LetGo, InAnyOrderNothingIsLeft) {
  std::string order = "eafxlmgr";
  std::sort(order.begin(), order.end());
  PairOptions options;
  options.limits.outBytes = options.limits.messageBytes = 1;
  do {
    SCOPED_TRACE(order);
    World world;
    auto owner = std::make_unique<End>(world, Connection::Settings{"owner", options.limits}, 100, 100);
    auto reader = std::make_unique<End>(world, Connection::Settings{"reader", options.limits}, 100, 100);
    MemoryTransport::join(owner->transport, reader->transport);
    auto const step = [&] {
      for (auto const& end : {&owner, &reader}) {
        if (*end) (*end)->connection->writable(), (*end)->connection->readable();
      }
    };
    Ptr<AuditStatus> status = auditStatusFactory("audit");
    status->auditDoneIs("t", true);
    status->auditInfoIs("shadow")->tableIs("table")->perFapInfoIs("fap");
    owner->connection->exports().exportIs(status, Access::writable);
    Ptr<Mount> mount = Vek::NboAttrLog::mountOf<AuditStatus>("audit", Access::writable);
    reader->connection->mounts().mountIs(mount);
    for (int times = 0; times < 30; ++times) step();
    ASSERT_EQ(mount->state(), Vek::Dir::inStep);
    Generic generic = mount->generic();
    Ptr<Vek::StreamAdapter> adapter = status->vekNboAttrLogSa(owner->connection->out());
    adapter->oweEverything();
    step();  // the walk stops in the middle
    Ptr<Vek::NboAttrLog::FlowOut> owed = adapter->flowOut();
    ASSERT_NE(owed, nullptr);
    for (char const who : order) {
      switch (who) {
      case 'e': status = nullptr; break;
      case 'a': adapter = nullptr; break;
      case 'f': owed = nullptr; break;
      case 'l': owner = nullptr; break;
      case 'x':
        if (owner) owner->connection->exports().exportDel("audit");
        break;
      case 'm': mount = nullptr; break;
      case 'g': generic = nullptr; break;
      default: reader = nullptr;
      }
      for (int times = 0; times < 3; ++times) step();
    }
  } while (std::next_permutation(order.begin(), order.end()) && !HasFailure());
}

}  // namespace
}  // namespace LogTest
