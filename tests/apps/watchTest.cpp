// What a watch follows, tells and refuses.
#include "apps/attributes/Watch.h"

#include "tests/apps/AttributeTest.h"

#include <cstdlib>
#include <ctime>

namespace Apps::Attributes {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr char const* deep = "auditStatus.auditInfo[kernel].table[ipv4].perFapInfo[Fap0].totalEntriesFixed";

class WatchTest : public AttributeTest {
 protected:
  void act(std::string const& command, std::string const& rest) {
    auto const equals = rest.find(" = ");
    std::string const path = rest.substr(0, equals);
    if (command == "del") {
      static_cast<void>(del(*directory_, path, Form::text));
    } else {
      std::optional<std::string> const value =
          equals < rest.size() ? std::optional{rest.substr(equals + 3)} : std::nullopt;
      static_cast<void>(set(*directory_, path, value, Missing::make, Form::text));
    }
  }

  static std::string indented(std::vector<Change> const& changes) {
    std::string lines;
    for (Change const& change : changes) lines += "  " + linesOf({change}, 0, Form::text, Stamp::none);
    return lines;
  }
};

TEST_F(WatchTest, TellsWhatThereIsAndThenWhatDiffers) {
  act("set", "status.inUseArpEntries[1] = 10");
  act("set", "auditStatus.auditInfo[a]");
  Watch watch{*directory_,
              {"status.numVrfs", "status.ipFecs", "status.inUseArpEntries", "status.inUseArpEntries[3]", "auditStatus",
               "status.lemV4RouteStats"},
              {Depth::one, Records::byField}};
  EXPECT_EQ(indented(watch.start()), R"(  status.numVrfs = 0
  status.ipFecs.numNonEcmpFecs = 0
  status.ipFecs.numEcmpFecs = 0
  status.ipFecs.numFecEntries = 0
  status.inUseArpEntries[1] = 10
  auditStatus.numAudits = 0
  auditStatus.auditDoneId = 0
  auditStatus.statusClearDoneId = 0
  auditStatus.auditInfo[a] = auditStatus.auditInfo[a]
  status.lemV4RouteStats = None
)");
  act("set", "status.numVrfs = 3");
  act("set", "status.numVrfs = 0");
  act("set", "status.ipFecs = Value('Hardware::DornL3Unicast::FecCountStats', ** {'numEcmpFecs': 1})");
  act("set", "status.inUseArpEntries[3] = 30");
  act("del", "status.inUseArpEntries[1]");
  act("set", std::string(deep) + " = 7");
  act("set", "auditStatus.auditDone['a\\n'] = True");
  act("del", "auditStatus.auditInfo[a]");
  act("set", "status.lemV4RouteStats.routeCount[24] = 2");
  EXPECT_EQ(indented(watch.changes()), R"(  status.ipFecs.numEcmpFecs = 1
  status.inUseArpEntries[3] = 30
  status.inUseArpEntries[1]: gone
  status.inUseArpEntries[3] = 30
  auditStatus.auditInfo[kernel] = auditStatus.auditInfo[kernel]
  auditStatus.auditInfo[a]: gone
  auditStatus.auditDone['a\n'] = True
  status.lemV4RouteStats.hostsInLem = False
  status.lemV4RouteStats.hostCount = 0
  status.lemV4RouteStats.routeCount[24] = 2
)");
  auto const gone = roots_.status->lemV4RouteStats();
  act("del", "status.lemV4RouteStats");
  EXPECT_EQ(indented(watch.changes()), "  status.lemV4RouteStats = None\n");
  gone->hostCountIs(9);
  EXPECT_EQ(indented(watch.changes()), "");
}

TEST_F(WatchTest, WithoutAPathFollowsAllThatIsFilled) {
  Filled const filled{{"status.numVrfs", "status.lemV4RouteStats.hostCount", "status.ipFecs.numEcmpFecs"}};
  Watch watch{*directory_, {}, {Depth::one, Records::whole, &filled}};
  roots_.status->lemV4RouteStatsIs("it");
  EXPECT_EQ(indented(watch.start()), "  status.numVrfs = 0\n"
                                     "  status.ipFecs.numEcmpFecs = 0\n"
                                     "  status.lemV4RouteStats.hostCount = 0\n");
  EXPECT_EQ(watch.notes().size(), 1U);
  act("set", "status.ipFecs = Value('Hardware::DornL3Unicast::FecCountStats', ** {'numFecEntries': 2})");
  act("set", "status.numAradBackupViaUsed = 1");
  act("set", "status.lemV4RouteStats.routeCount[24] = 1");
  act("set", "status.lemV4RouteStats.hostCount = 1");
  act("set", "cliConfig.ecmpPreferLocal = False");
  EXPECT_EQ(indented(watch.changes()), "  status.lemV4RouteStats.hostCount = 1\n");
}

TEST_F(WatchTest, RefusesWhatCanNeverBeThereOrIsNeverToldOf) {
  std::pair<char const*, char const*> const cases[] = {
      {"auditStatus.auditInfo[x].tables", "has no attribute 'tables'; did you mean 'table'? 'dornl3 types "},
      {"aclRouteConfig.ipv4EgAclLabel[8].value.x", "is a Bridging::VlanIdOrNone, which has no attributes."},
      {"status.writeCount", "status.writeCount is never told of: 'dornl3 get' reads it."},
      {"status.parent.x", "status.parent is a Vek::PtrInterface, which has no attributes."},
      {"auditStatus.auditInfo[k].parent.numAudits", "auditStatus.auditInfo[k].parent is never told of: "},
  };
  for (auto const& refused : cases) {
    SCOPED_TRACE(refused.first);
    EXPECT_THAT(refusal([&] {
                  return Watch{*directory_, {"status", refused.first}, {Depth::one}}.start();
                }),
                HasSubstr(refused.second));
  }
  std::vector<std::string> many(Watch::maxPaths, "status");
  EXPECT_EQ(refusal([&] { return Watch{*directory_, many, {Depth::one}}.start(); }), "accepted");
  many.emplace_back("status");
  EXPECT_THAT(refusal([&] {
                return Watch{*directory_, many, {Depth::one}}.start();
              }),
              StartsWith("There are 1001 paths, more than 1000."));
}

TEST_F(WatchTest, PrintsTimesAndJson) {
  std::vector<std::string> const paths{"status.numVrfs", "auditRequest.tableToAudit", "status.ipFecs"};
  roots_.auditRequest->tableToAuditIs(std::string_view("it's \xff\n"));
  std::vector<Change> changes = Watch{*directory_, paths, {Depth::one}}.start();
  changes.push_back({"a['\xff']", nullptr});
  EXPECT_EQ(linesOf(changes, 1.5, Form::json, Stamp::none),
            "{\"time\":1.5,\"path\":\"status.numVrfs\",\"value\":0}\n"
            "{\"time\":1.5,\"path\":\"auditRequest.tableToAudit\",\"value\":\"it's \xef\xbf\xbd\\n\"}\n"
            "{\"time\":1.5,\"path\":\"status.ipFecs\",\"value\":"
            "{\"numNonEcmpFecs\":0,\"numEcmpFecs\":0,\"numFecEntries\":0}}\n"
            "{\"time\":1.5,\"path\":\"a['\xef\xbf\xbd']\",\"gone\":true}\n");
  setenv("TZ", "UTC-1", 1);
  tzset();
  EXPECT_THAT(
      linesOf(changes, 0.0625, Form::text, Stamp::time),
      StartsWith("1970-01-01T01:00:00.063+01:00 status.numVrfs = 0\n1970-01-01T01:00:00.063+01:00 auditRequest."));
  EXPECT_EQ(linesOf({{"a", nullptr}}, 86399.9996, Form::text, Stamp::time), "1970-01-02T01:00:00.000+01:00 a: gone\n");
  setenv("TZ", "UTC+3:30", 1);
  tzset();
  EXPECT_EQ(linesOf({{"a", nullptr}}, -0.5, Form::text, Stamp::time), "1969-12-31T20:29:59.500-03:30 a: gone\n");
  EXPECT_THAT(linesOf({{"a", nullptr}}, 1e300, Form::text, Stamp::time), StartsWith("1e+300 a: gone"));
  unsetenv("TZ");
  tzset();
}

TEST_F(WatchTest, ForgetsWhatHasLeftItsPlace) {
  Watch watch{*directory_, {"status.lemV4RouteStats.hostCount", deep}, {Depth::one}};
  act("set", std::string(deep) + " = 7");
  EXPECT_EQ(indented(watch.start()), "  " + std::string(deep) + " = 7\n") << "of what never was there, nothing";
  auto const leaving = roots_.auditStatus->auditInfo("kernel")->table("ipv4")->perFapInfo("Fap0");
  auto const goesForGood = roots_.status->lemV4RouteStatsIs("it");
  static_cast<void>(watch.changes());
  leaving->totalEntriesFixedIs(8);
  act("del", "auditStatus.auditInfo[kernel]");
  act("set", std::string(deep) + " = 9");
  goesForGood->hostCountIs(2);  // it waits to be asked when it goes
  act("del", "status.lemV4RouteStats");
  leaving->totalEntriesFixedIs(10);
  EXPECT_EQ(indented(watch.changes()), "  status.lemV4RouteStats: gone\n  " + std::string(deep) + " = 9\n");
  leaving->totalEntriesFixedIs(11);
  goesForGood->hostCountIs(3);
  EXPECT_EQ(indented(watch.changes()), "");
}

TEST_F(WatchTest, AsksNoMoreOfTheEntitiesThanWasHeardOf) {
  for (unsigned short fap = 0; fap < 100; ++fap) roots_.status->inUseArpEntriesIs(fap, fap);
  Watch watch{*directory_, {"status"}, {Depth::all}};
  EXPECT_EQ(indented(watch.changes()), "") << "it has not been started";
  static_cast<void>(watch.start());
  Vek::U32 const before = roots_.status->readCount();
  static_cast<void>(watch.changes());
  roots_.status->inUseArpEntriesIs(Hardware::Dorn::FapId(7), 8);
  EXPECT_EQ(indented(watch.changes()), "  status.inUseArpEntries[7] = 8\n");
  EXPECT_EQ(roots_.status->readCount() - before, 1U);
}

TEST_F(WatchTest, MayEndBeforeOrAfterWhatItFollowsWithEventsWaiting) {
  std::optional<Show::Roots> fresh{std::in_place};
  directory_->entryIs(fresh->auditStatus);
  Watch after{*directory_, {"auditStatus"}, {Depth::all}};
  static_cast<void>(after.start());
  {
    Watch before{*directory_, {"auditStatus", deep}, {Depth::all}};
    static_cast<void>(before.start());
    act("set", std::string(deep) + " = 7");
    static_cast<void>(before.changes());
    act("set", std::string(deep) + " = 8");
    act("del", "auditStatus.auditInfo[kernel].table[ipv4]");
  }
  fresh.reset();
  directory_->entryDel("auditStatus");
  EXPECT_EQ(indented(after.changes()), "") << "what came and went in between";
}

}  // namespace
}  // namespace Apps::Attributes
