// What the schema files say of the types in them and no law over all types tells: defaults, keys, and their order.
#include "dornl3/schema/AclIntf.h"
#include "dornl3/schema/AuditStatus.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "dornl3/schema/Status.h"
#include "tests/core/LeakCheck.h"

#include <vector>

namespace {

using namespace Hardware::DornL3Unicast;
using Bridging::VlanIdOrNone;
using Kiln::Fapmask;
using Vek::Ptr;

struct SchemaFacts : LeakCheck {};

TEST_F(SchemaFacts, TakeTheDefaultsOfTheSchema) {
  Ptr<CliConfig> const config = cliConfigFactory("config");
  EXPECT_TRUE(config->aradIp6HostRouteInLem());
  EXPECT_TRUE(config->ecmpPreferLocal());
  EXPECT_EQ(config->lpmLevelBits(), LpmLevelBits(0, 3, 3, 3, 3, 3));
  EXPECT_TRUE(CliConfig::aradIp6HostRouteInLemDefault());
  config->lpmLevelBitsIs(LpmLevelBits(0, 8, 3, 3, 3, 3));
  EXPECT_EQ(config->lpmLevelBits().level1(), 8) << "limits do not hold for what code builds";
}

TEST_F(SchemaFacts, AuditsHaveThreeLevelsEachWithItsKey) {
  Ptr<AuditStatus> const root = auditStatusFactory("auditStatus");
  Ptr<TableFapAuditInfo> const fap = root->auditInfoIs("kernel")->tableIs("lem")->perFapInfoIs("fap0");
  EXPECT_EQ(fap->name(), "fap0");
  EXPECT_EQ(fap->fapName(), "fap0");
  EXPECT_EQ(fap->fullName(), "auditStatus.auditInfo[kernel].table[lem].perFapInfo[fap0]");
  EXPECT_EQ(fap->uriPath(), "/auditStatus/auditInfo/kernel/table/lem/perFapInfo/fap0");
  EXPECT_EQ(fap->parentAttrId(), 258U);
  EXPECT_EQ(fap->parent()->parentAttrId(), 258U);
  EXPECT_EQ(fap->parent()->parent()->parentAttrId(), 261U);
  Ptr<Status> const status = statusFactory("status");
  EXPECT_EQ(status->lemV4RouteStatsIs("lem")->parentAttrId(), 308U);
  EXPECT_EQ(status->lemV6RouteStatsIs("lem")->parentAttrId(), 309U);
}

TEST_F(SchemaFacts, FiguresByFapAndByPrefixLengthAreWalkedInTheirOrder) {
  Ptr<Status> const status = statusFactory("status");
  for (int const fap : {2048, 1, 0}) status->inUseArpEntriesIs(static_cast<unsigned short>(fap), 5);
  std::vector<int> faps;
  for (auto it = status->inUseArpEntriesIteratorConst(); it; ++it) faps.push_back(it->key().value());
  EXPECT_EQ(faps, (std::vector<int>{0, 1, 2048}));
  Ptr<LemRouteStats> const lem = status->lemV4RouteStatsIs("lem");
  for (Vek::U32 const length : {32U, 24U, 0U}) lem->routeCountIs(length, length + 1);
  std::vector<Vek::U32> lengths;
  for (auto it = lem->routeCountIteratorConst(); it; ++it) lengths.push_back(it->key());
  EXPECT_EQ(lengths, (std::vector<Vek::U32>{0, 24, 32}));
}

template <class X>
struct AclRoutes : LeakCheck {};
using Both = testing::Types<AclRoute::Config, AclRoute::Status>;
TYPED_TEST_SUITE(AclRoutes, Both);

TYPED_TEST(AclRoutes, EachCollectionIsKeyedByVlan) {
  auto const acl = Vek::make<TypeParam>("acl");
  VlanIdOrNone const last(4094);
  AclRoute::Ipv4EgressAclLabel const label(last);
  for (int i = 0; i < 2; ++i) {
    acl->ipv6EgrAclOnVlanIs({}, false);
    acl->egrRaclVlanToFapmaskIs(last, Fapmask({1, 2, 3, 4}));
    acl->ipv4EgAclLabelIs(last, label);
    acl->egressRaclSharingConfiguredIs(true);
  }
  EXPECT_EQ(acl->writeCount(), 4U) << "equal values change nothing";
  EXPECT_EQ(acl->ipv6EgrAclOnVlanCount(), 1U);
  EXPECT_EQ(acl->egrRaclVlanToFapmaskDel(last), Fapmask({1, 2, 3, 4}));
  EXPECT_EQ(acl->egrRaclVlanToFapmaskDel(last), Fapmask());
  EXPECT_EQ(acl->ipv4EgAclLabelDel(last), label);
  EXPECT_EQ(acl->ipv4EgAclLabelDel(last), AclRoute::Ipv4EgressAclLabel());
}

}  // namespace
