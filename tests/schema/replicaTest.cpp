// Entities of the real types and their replicas: every type, filled by what the registry says of it; and all that takes
// part in a replication, let go in any order.
#include "dornl3/generic/Digest.h"
#include "dornl3/schema/AuditStatus.h"
#include "tests/attrlog/LogPair.h"
#include "tests/core/LeakCheck.h"
#include "tests/schema/Inventor.h"

#include <algorithm>
#include <set>

namespace LogTest {
namespace {

using namespace Hardware::DornL3Unicast;
using namespace Vek;

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

struct LetGo : LeakCheck {};

// The owner's entity, its adapter, what that owes, its export and
// connection; the reader's mount, its generic, its connection.
TEST_F(LetGo, InAnyOrderNothingIsLeft) {
  std::string order = "eafxlmgr";
  std::sort(order.begin(), order.end());
  PairOptions const options{.limits = {.outBytes = 1, .messageBytes = 1}, .capacity = 100, .slice = 100};
  do {
    SCOPED_TRACE(order);
    World world;
    auto owner = std::make_unique<End>(world, "owner", options, -1);
    auto reader = std::make_unique<End>(world, "reader", options, -1);
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
