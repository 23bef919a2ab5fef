// The audit tree, three levels of children below its root, and the LEM's routes below Status: the keys and numbers of
// the real types, by one walk through each.
#include "schema/AuditStatus.h"
#include "schema/Status.h"
#include "tests/core/LeakCheck.h"

#include <string>
#include <vector>

namespace {

using namespace Hardware::DornL3Unicast;
using Vek::Ptr;

struct AuditTree : LeakCheck {};

template <class R, class X>
Ptr<R> listening(Ptr<X> const& entity) {
  Ptr<R> const reactor = Vek::make<R>();
  reactor->isRegisteredNotifieeIs(true);
  reactor->notifierIs(entity);
  return reactor;
}

TEST_F(AuditTree, HasThreeLevelsEachWithItsKey) {
  Ptr<AuditStatus> const root = auditStatusFactory("auditStatus");
  Ptr<ShadowAuditInfo> const shadow = root->auditInfoIs("kernel");
  Ptr<TableAuditInfo> const table = shadow->tableIs("lem");
  Ptr<TableFapAuditInfo> const fap = table->perFapInfoIs("fap0");
  EXPECT_EQ(fap->name(), "fap0");
  EXPECT_EQ(fap->fapName(), "fap0");
  EXPECT_EQ(fap->fullName(), "auditStatus.auditInfo[kernel].table[lem].perFapInfo[fap0]");
  EXPECT_EQ(fap->uriPath(), "/auditStatus/auditInfo/kernel/table/lem/perFapInfo/fap0");
  EXPECT_EQ(shadow->parentAttrId(), 261U);
  EXPECT_EQ(table->parentAttrId(), 258U);
  EXPECT_EQ(fap->parentAttrId(), 258U);
  EXPECT_FALSE(root->auditInfo("no such"));
  EXPECT_EQ(root->auditInfoCount(), 1U);
}

TEST_F(AuditTree, AFapsFiguresStartAtZeroAndItsTotalsRise) {
  Ptr<TableFapAuditInfo> const fap = Vek::make<TableFapAuditInfo>("name", "fap0");
  EXPECT_EQ(fap->lastAuditTime(), 0.0);
  EXPECT_EQ(fap->lastFixedTime(), 0.0);
  EXPECT_EQ(fap->lastNumEntriesFixed(), 0U);
  EXPECT_EQ(fap->totalEntriesFixedInc(3), 3U);
  EXPECT_EQ(fap->totalUnreportedFixesInc(~0U), ~0U);
  EXPECT_EQ(fap->totalUnreportedFixesInc(1), 0U);
  EXPECT_EQ(fap->writeCount(), 0U);
}

TEST_F(AuditTree, TheRootTellsOfItsFiguresItsShadowsAndWhatIsDone) {
  struct Trace : AuditStatus::Notifiee {
    using AuditStatus::Notifiee::onAuditDone;
    using AuditStatus::Notifiee::onAuditInfo;
    void onNumAudits() override { heard.emplace_back("numAudits"); }
    void onAuditDoneId() override { heard.emplace_back("auditDoneId"); }
    void onStatusClearDoneId() override { heard.emplace_back("statusClearDoneId"); }
    void onAuditInfo(Vek::Name key) override { heard.push_back("auditInfo " + std::string(key.view())); }
    void onAuditDone(Vek::String8 key) override { heard.push_back("auditDone " + std::string(key.view())); }
    std::vector<std::string> heard;
  };
  Ptr<AuditStatus> const root = auditStatusFactory("auditStatus");
  auto const trace = listening<Trace>(root);
  root->numAuditsInc(1);
  root->auditDoneIdInc(1);
  root->statusClearDoneIdIs(1);
  root->auditInfoIs("kernel");
  root->auditDoneIs("lem", false);
  root->auditInfoDelAll();
  EXPECT_FALSE(root->auditDoneDel("lem"));
  EXPECT_FALSE(root->auditDoneDel("lem"));
  EXPECT_EQ(trace->heard, (std::vector<std::string>{"numAudits", "auditDoneId", "statusClearDoneId", "auditInfo kernel",
                                                    "auditDone lem", "auditInfo kernel", "auditDone lem"}));
}

TEST_F(AuditTree, AnOrphanReadsOnWhenAllAboveItIsGone) {
  Ptr<AuditStatus> root = auditStatusFactory("auditStatus");
  Ptr<TableFapAuditInfo> const fap = root->auditInfoIs("kernel")->tableIs("lem")->perFapInfoIs("fap0");
  fap->lastNumEntriesFixedIs(7);
  root = nullptr;
  EXPECT_FALSE(fap->parent());
  EXPECT_EQ(fap->lastNumEntriesFixed(), 7U);
  EXPECT_EQ(fap->fullName(), "fap0");
}

TEST_F(AuditTree, ARequestStartsEmptyAndItsNumbersWrapAtTheirWidths) {
  Ptr<AuditRequest> const request = auditRequestFactory("auditRequest");
  EXPECT_EQ(request->tableToAudit(), "");
  EXPECT_FALSE(request->bypassReporting());
  EXPECT_EQ(request->requestIdInc(~0ULL), ~0ULL);
  EXPECT_EQ(request->requestIdInc(1), 0U);
  EXPECT_EQ(request->statusClearRequestIdInc(~0U), ~0U);
  EXPECT_EQ(request->statusClearRequestIdInc(1), 0U);
}

struct LemRoutes : LeakCheck {
  Ptr<Status> const status = statusFactory("status");
};

TEST_F(LemRoutes, EachFamilyHasItsOwn) {
  struct Trace : Status::Notifiee {
    void onLemV4RouteStats() override { heard.emplace_back("v4"); }
    void onLemV6RouteStats() override { heard.emplace_back("v6"); }
    std::vector<std::string> heard;
  };
  auto const trace = listening<Trace>(status);
  Ptr<LemRouteStats> const v4 = status->lemV4RouteStatsIs("lem");
  Ptr<LemRouteStats> const v6 = status->lemV6RouteStatsIs("lem");
  EXPECT_FALSE(v4 == v6);
  EXPECT_EQ(v4->fullName(), "status.lemV4RouteStats");
  EXPECT_EQ(v6->uriPath(), "/status/lemV6RouteStats");
  EXPECT_EQ(v4->parentAttrId(), 308U);
  EXPECT_EQ(v6->parentAttrId(), 309U);
  EXPECT_EQ(status->lemV4RouteStatsDel(), v4);
  EXPECT_EQ(status->lemV6RouteStats(), v6);
  EXPECT_EQ(trace->heard, (std::vector<std::string>{"v4", "v6", "v4"}));
}

TEST_F(LemRoutes, CountRoutesByPrefixLengthInTheOrderOfTheLengths) {
  Ptr<LemRouteStats> const lem = status->lemV4RouteStatsIs("lem");
  EXPECT_FALSE(lem->hostsInLem());
  EXPECT_EQ(lem->hostCount(), 0U);
  EXPECT_FALSE(lem->prefixLenInLem(24));
  for (Vek::U32 const length : {32U, 24U, 0U}) {
    lem->prefixLenInLemIs(length, true);
    lem->routeCountIs(length, length + 1);
  }
  std::vector<Vek::U32> lengths;
  for (auto it = lem->routeCountIteratorConst(); it; ++it) lengths.push_back(it->key());
  EXPECT_EQ(lengths, (std::vector<Vek::U32>{0, 24, 32}));
  EXPECT_TRUE(lem->prefixLenInLem(24));
  auto it = lem->routeCountIterator();
  EXPECT_EQ(lem->routeCountDel(it), 1U);
  EXPECT_EQ((++it)->key(), 24U);
  EXPECT_EQ(lem->routeCountDel(32), 33U);
  EXPECT_EQ(lem->routeCountCount(), 1U);
}

TEST_F(LemRoutes, AnEntryPerFapIsFoundByItsFap) {
  status->inUseArpEntriesIs(1, 5);
  status->inUseArpEntriesIs(0, 6);
  EXPECT_EQ(status->inUseArpEntries(1), 5U);
  EXPECT_EQ(status->inUseArpEntries(2), 0U);
  EXPECT_FALSE(status->inUseArpBanks(1));
  EXPECT_EQ(status->inUseArpEntriesIterator()->key(), 0);
}

}  // namespace
