// What the commands on attributes print, change and refuse.
#include "apps/attributes/CommandLine.h"
#include "tests/apps/AttributeTest.h"

#include <nlohmann/json.hpp>

namespace Apps::Attributes {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr char const* deep = "auditStatus.auditInfo[kernel].table[ipv4].perFapInfo[Fap0].totalEntriesFixed";

class Commands : public AttributeTest {
 protected:
  std::string get(std::vector<std::string> const& paths, Depth depth = Depth::one, Form form = Form::text) {
    return Attributes::get(*directory_, paths, {depth}, form).text;
  }
  json getJson(std::vector<std::string> const& paths) { return json::parse(get(paths, Depth::one, Form::json)); }
  std::string set(std::string const& path, std::optional<std::string> const& value = {},
                  Missing missing = Missing::refuse) {
    return Attributes::set(*directory_, path, value, missing, Form::text).text;
  }
  std::string del(std::string const& path) { return Attributes::del(*directory_, path, Form::text).text; }
  std::string count(std::string const& path) {
    return Attributes::count(*directory_, path, Filled::everything(), Form::text).text;
  }
  std::string ls(std::optional<std::string> const& path, Form form = Form::text) {
    return Attributes::ls(*directory_, path, Filled::everything(), form).text;
  }
};

TEST_F(Commands, GetPrintsASingleValueByItselfAndMembersInTheirOrder) {
  roots_.status->numVrfsIs(3);
  EXPECT_EQ(get({"status.numVrfs"}), "3\n");
  EXPECT_EQ(get({"auditRequest.tableToAudit"}), "''\n");
  EXPECT_EQ(get({"status.lemV4RouteStats"}), "None\n");
  EXPECT_EQ(get({"status.numVrfs", "status.ipv4RouteStats.routes"}),
            "status.numVrfs = 3\nstatus.ipv4RouteStats.routes = 0\n");
  for (int fap : {7, 1, 3}) set("status.inUseArpEntries[" + std::to_string(fap) + "]", std::to_string(fap * 10));
  EXPECT_EQ(get({"status.inUseArpEntries"}),
            "status.inUseArpEntries[1] = 10\nstatus.inUseArpEntries[3] = 30\nstatus.inUseArpEntries[7] = 70\n");
  EXPECT_EQ(get({"status.inUseArpEntries[3]"}), "30\n");
  EXPECT_EQ(get({"status.inUseArpBanks"}), "");
}

TEST_F(Commands, GetGoesIntoChildrenOnlyWhereItIsAskedTo) {
  set(deep, "7", Missing::make);
  std::string const one = get({"auditStatus"});
  EXPECT_THAT(one, HasSubstr("auditStatus.numAudits = 0\n"));
  EXPECT_THAT(one, HasSubstr("auditStatus.auditInfo: 1 member\n"));
  EXPECT_THAT(one, HasSubstr("auditStatus.auditDone: 0 members\n"));
  EXPECT_EQ(get({"auditStatus.auditInfo"}), "auditStatus.auditInfo[kernel] = auditStatus.auditInfo[kernel]\n");
  EXPECT_EQ(get({"auditStatus.auditInfo[kernel].parent"}), "auditStatus\n") << "what is referred to is named alone";
  EXPECT_THAT(get({"auditStatus"}, Depth::all), HasSubstr(std::string(deep) + " = 7\n"));
  EXPECT_EQ(getJson({"auditStatus"})["auditInfo"]["kernel"]["table"]["ipv4"]["perFapInfo"]["Fap0"]["totalEntriesFixed"],
            7);
}

// What a command shows, and below it what it says of the rest.
std::string shown(Answer const& answer) {
  std::string all = answer.text;
  for (std::string const& note : answer.notes) all += "  " + note + '\n';
  return all;
}

TEST_F(Commands, OfWhatIsFilledGetAndLsShowItAndNameTheRest) {
  roots_.auditStatus->auditDoneIs("t", true);
  Filled const filled{{"status.numVrfs", "status.schan", "status.timingMarkers.lastRouteUpdateTime",
                       "status.timingMarkers.lastV6RouteUpdateTime", "request"}};
  auto const found = [&](std::vector<std::string> const& paths, Records records = Records::byField) {
    return shown(Attributes::get(*directory_, paths, {Depth::one, records, &filled}, Form::text));
  };
  constexpr char const* times = "status.timingMarkers.lastRouteUpdateTime = 0.0\n"
                                "status.timingMarkers.lastV6RouteUpdateTime = 0.0\n";
  constexpr char const* rest =
      " attributes, such as those of forwarding chips, are not filled here; --all shows them.\n";
  std::string const ofStatus = "status.numVrfs = 0\n" + std::string{times} + "  73" + rest;
  EXPECT_EQ(found({"status"}), ofStatus);
  EXPECT_EQ(found({}), "request.statusRequestId = 0\nstatus.numVrfs = 0\n" + std::string{times} + "  96" + rest);
  EXPECT_EQ(found({"status.timingMarkers"}), times + ("  14" + std::string{rest}));
  EXPECT_EQ(found({"status.timingMarkers"}, Records::whole), found({"status.timingMarkers"})) << "not all of it";
  EXPECT_EQ(found({"status.ipFecs.numEcmpFecs"}),
            "0\n  status.ipFecs.numEcmpFecs is not filled here: what it shows are defaults.\n");
  EXPECT_EQ(found({"auditStatus"}), "auditStatus.numAudits = 0\nauditStatus.auditDoneId = 0\n"
                                    "auditStatus.statusClearDoneId = 0\nauditStatus.auditInfo: 0 members\n"
                                    "auditStatus.auditDone: 1 member\n"
                                    "  auditStatus is not filled here: what it shows are defaults.\n");
  EXPECT_EQ(found({"status.writeCount"}), "0\n") << "the framework keeps it";
  auto const listed = [&](std::optional<std::string> const& path) {
    return shown(Attributes::ls(*directory_, path, filled, Form::text));
  };
  EXPECT_THAT(listed({}), EndsWith("  7 root entities are not filled here; --all lists them.\n"));
  EXPECT_THAT(listed("status"),
              AllOf(StartsWith("numVrfs "), HasSubstr("\ntimingMarkers "), EndsWith("  59" + std::string{rest})));
  EXPECT_THAT(listed("cliConfig"), EndsWith("  cliConfig is not filled here: what it shows are defaults.\n"));
  EXPECT_EQ(
      json::parse(Attributes::get(*directory_, {"status"}, {Depth::one, Records::whole, &filled}, Form::json).text),
      json::parse(R"({"numVrfs": 0, "timingMarkers": {"lastRouteUpdateTime": 0.0, "lastV6RouteUpdateTime": 0.0}})"));
}

TEST_F(Commands, JsonHoldsNumbersTextsRecordsAndStrangeBytes) {
  roots_.request->statusRequestIdIs(18446744073709551615U);
  roots_.auditRequest->tableToAuditIs(std::string_view("it's \xff\n"));
  roots_.auditStatus->auditDoneIs("a.b", true);
  roots_.aclRouteConfig->ipv4EgAclLabelIs(Bridging::VlanIdOrNone(7), {});
  EXPECT_EQ(getJson({"request.statusRequestId"}), 18446744073709551615U);
  EXPECT_EQ(getJson({"auditRequest.tableToAudit"}), "it's \xef\xbf\xbd\n");
  EXPECT_EQ(getJson({"auditStatus.auditDone"}), json({{"a.b", true}}));
  EXPECT_EQ(getJson({"aclRouteConfig.ipv4EgAclLabel"}), json({{"7", 0}}));
  EXPECT_EQ(getJson({"status.lemV4RouteStats"}), nullptr);
  EXPECT_EQ(getJson({"status.ipFecs", "status.numVrfs"}),
            json({{"status.ipFecs", {{"numNonEcmpFecs", 0}, {"numEcmpFecs", 0}, {"numFecEntries", 0}}},
                  {"status.numVrfs", 0}}));
}

TEST_F(Commands, SetAssignsAndPrintsWhatIsThereThen) {
  EXPECT_EQ(set("status.numVrfs", "17"), "status.numVrfs = 17\n");
  EXPECT_EQ(roots_.status->numVrfs(), 17U);
  EXPECT_EQ(set("status.inUseArpEntries[0]", "5"), "status.inUseArpEntries[0] = 5\n");
  EXPECT_EQ(roots_.status->inUseArpEntries(Hardware::Dorn::FapId(0)), 5U);
  EXPECT_EQ(set("auditRequest.tableToAudit", "\"ipv4\""), "auditRequest.tableToAudit = 'ipv4'\n");
  EXPECT_EQ(set("status.statusUpdatedTime", "-1"), "status.statusUpdatedTime = -1.0\n");
  EXPECT_THAT(set("status.ipFecs", "Value('Hardware::DornL3Unicast::FecCountStats', ** {'numEcmpFecs': 2})"),
              EndsWith("** {'numNonEcmpFecs': 0, 'numEcmpFecs': 2, 'numFecEntries': 0})\n"));
}

TEST_F(Commands, SetMakesChildrenAndKeepsThoseThatAreThere) {
  EXPECT_EQ(set("auditStatus.auditInfo[kernel]"), "auditStatus.auditInfo[kernel].table: 0 members\n");
  set("status.lemV4RouteStats", "'my own'");
  EXPECT_EQ(roots_.status->lemV4RouteStats()->name(), "my own");
  EXPECT_THAT(set("status.lemV4RouteStats"), StartsWith("status.lemV4RouteStats.hostsInLem = "));
  EXPECT_EQ(roots_.status->lemV4RouteStats()->name(), "my own");
  set("status.lemV6RouteStats");
  EXPECT_EQ(roots_.status->lemV6RouteStats()->name(), "lemV6RouteStats");
}

TEST_F(Commands, DelRemovesAndPrintsWhatWasThere) {
  set(deep, "7", Missing::make);
  set("status.inUseArpEntries[0]", "5");
  set("status.lemV4RouteStats");
  EXPECT_EQ(del("status.inUseArpEntries[0]"), "status.inUseArpEntries[0] = 5\n");
  EXPECT_THAT(del("auditStatus.auditInfo[kernel]"), HasSubstr(std::string(deep) + " = 7\n"));
  EXPECT_THAT(del("status.lemV4RouteStats"), HasSubstr("status.lemV4RouteStats.hostCount = 0\n"));
  EXPECT_EQ(count("auditStatus.auditInfo") + count("status.inUseArpEntries"), "0\n0\n");
  EXPECT_FALSE(roots_.status->lemV4RouteStats());
}

TEST_F(Commands, WhatDoesNotFitIsRefusedAndChangesNothing) {
  struct Case {
    char const* path;
    std::optional<std::string> value;
    char const* says;
  };
  for (Case const& c : {
           Case{"status.numVrfs", "abc",
                "The value of status.numVrfs is a U32, such as 0; 'abc' is none: expected a "
                "whole number at column 0, found 'abc'."},
           Case{"status.numVrfs", "4294967296", "'4294967296' does not fit into one."},
           Case{"status.numVrfs", {}, "status.numVrfs needs a value: a U32, such as 0."},
           Case{"status.displayAradStats", "1", "a bool, such as False"},
           Case{"status.ipFecs", "Value('X', ** {})", "FecCountStats"},
           Case{"cliConfig.lpmLevelBits", "Value('Hardware::DornL3Unicast::LpmLevelBits', ** {'level1': 9})", "level1"},
           Case{"status.inUseArpEntries", "1", "is a collection: name one member, as status.inUseArpEntries[KEY]."},
           Case{"status.ipFecs.numEcmpFecs", "1", "is part of a value, which is set as a whole: set status.ipFecs."},
           Case{"status.writeCount", "1", "status.writeCount is read only."},
           Case{"cliConfig.aradIp6HostRouteInLemDefault", "False", "is read only."},
           Case{"status", "1", "is a root entity, which is there already: set one of its attributes."},
           Case{"auditStatus.auditInfo[kernel]", "1", "is made by its key alone: leave out the value."},
           Case{"auditStatus.auditInfo[kernel].table[x]", {}, "auditStatus.auditInfo[kernel] is not there."},
           Case{"status.lemV4RouteStats", "a b", "whose value is its name; 'a b' is none: "},
       }) {
    SCOPED_TRACE(c.path);
    EXPECT_THAT(refusal([&] { return set(c.path, c.value); }), HasSubstr(c.says));
  }
  for (auto const& [path, says] : std::vector<std::pair<char const*, char const*>>{
           {"status", "status is always there: only members of collections and children can be removed."},
           {"status.inUseArpEntries", "is a collection: name one member"},
           {"status.inUseArpEntries[9]", "status.inUseArpEntries[9] is not there."},
           {"status.lemV4RouteStats", "is not there: there is nothing to remove."},
       }) {
    SCOPED_TRACE(path);
    EXPECT_THAT(refusal([&, p = path] { return del(p); }), HasSubstr(says));
  }
  roots_.forEach([](Vek::Ptr<Vek::Entity> const& root) { EXPECT_EQ(root->writeCount(), 0U); });
  EXPECT_THAT(refusal([&] { return count("status.numVrfs"); }), HasSubstr("is no collection"));
  EXPECT_THAT(refusal([&] { return ls("status.numVrfs"); }), HasSubstr("has nothing in it to list."));
}

TEST_F(Commands, LsListsRootsAttributesAndKeys) {
  set(deep, "7", Missing::make);
  EXPECT_THAT(ls({}), AllOf(HasSubstr("\ncliConfig                CliConfig "),
                            HasSubstr("\naclRouteStatus           Hardware::DornL3Unicast::AclRoute::Status "),
                            HasSubstr("  Configuration from the command line; the forwarding agent follows it.\n")));
  EXPECT_THAT(ls("auditStatus"), HasSubstr("auditInfo[Name]    ShadowAuditInfo  the shadows, by name\n"));
  EXPECT_THAT(ls("cliConfig"), HasSubstr("aradIp6HostRouteInLemDefault"));
  EXPECT_THAT(ls("status.lemV4RouteStats"),
              AllOf(HasSubstr("routeCount[U32]      U32   routes in the LEM"), HasSubstr("\nLEM   ")))
      << "also where it is not there";
  EXPECT_THAT(ls("status.ipFecs"), StartsWith("numNonEcmpFecs  U32  entries with one path\n"));
  set("auditStatus.auditDone['a.b']", "True");
  EXPECT_EQ(ls("auditStatus.auditDone"), "'a.b'\n");
  EXPECT_EQ(json::parse(ls("auditStatus.auditDone", Form::json)), json({"a.b"}));
}

TEST_F(Commands, TypesListsTypesAndTheirAttributes) {
  EXPECT_THAT(types({}, Form::text), HasSubstr("Vek::Name "));
  std::string const audit = types("AuditStatus", Form::text);
  EXPECT_THAT(audit, HasSubstr("261  auditInfo"));
  EXPECT_THAT(audit, HasSubstr("children by key  the shadows, by name\n"));
  EXPECT_THAT(audit, HasSubstr("read only        its path\n"));
  EXPECT_EQ(json::parse(types("Ipv4EgressAclLabel", Form::json)),
            json::parse(R"([{"number": 2, "name": "value", "type": "Bridging::VlanIdOrNone", "kind": "read only",
                            "doc": "the VLAN that stands for the ACL"}])"));
  EXPECT_THAT(refusal([] { return types("Status", Form::text); }), HasSubstr("Several types are named 'Status': "));
  EXPECT_EQ(refusal([] { return types("RouteStat", Form::text); }),
            "There is no type 'RouteStat'; did you mean 'RouteStats'? 'dornl3 types' lists all.");
}

TEST_F(Commands, DigestsTellEqualTreesFromOthers) {
  auto const digest = [&] { return digests(*directory_, {"auditStatus"}, Form::text); };
  std::string const before = digest();
  EXPECT_EQ(before.size(), 17U);
  set(deep, "7", Missing::make);
  EXPECT_NE(digest(), before);
  EXPECT_THAT(refusal([&] { return digests(*directory_, {"status.numVrfs"}, Form::text); }), HasSubstr("is no entity"));
}

TEST_F(Commands, TheOwnerMakesSomethingElseOfAChange) {
  auto const changing = [this](char const* path, char const* value) {
    return Attributes::set(*directory_, path, value, Missing::refuse, Form::text, [&] { set(path, "9"); });
  };
  Answer const other = changing("status.inUseArpEntries[0]", "5");
  EXPECT_EQ(other.text, "status.inUseArpEntries[0] = 9\n");
  EXPECT_FALSE(other.isAsAsked);
  EXPECT_TRUE(changing("status.numVrfs", "9").isAsAsked);

  auto const isAsAsked = [this](bool removes, std::function<void()> const& owner) {
    std::string const path = "status.inUseArpEntries[0]";
    set(path, "1");
    return (removes ? Attributes::del(*directory_, path, Form::text, owner)
                    : Attributes::set(*directory_, path, "5", Missing::refuse, Form::text, owner))
        .isAsAsked;
  };
  EXPECT_FALSE(isAsAsked(false, [this] { del("status.inUseArpEntries[0]"); })) << "removed by its owner";
  EXPECT_FALSE(isAsAsked(true, [this] { set("status.inUseArpEntries[0]", "1"); })) << "and made again";
}

TEST_F(Commands, TheCommandLineTellsWhatItWorksOn) {
  auto const isChange = [](char const* line) {
    CLI::App app;
    CommandLine const commands{app, [](CLI::App&) {}};
    app.parse(line);
    return commands.isChange();
  };
  EXPECT_FALSE(isChange("get status"));
  EXPECT_FALSE(isChange("types Status"));
  EXPECT_TRUE(isChange("del status.inUseArpEntries[0]"));
  EXPECT_THROW(isChange("set"), CLI::RequiredError);
  EXPECT_THROW(isChange("get -r --digest status"), CLI::ExcludesError);

  CLI::App app;
  CommandLine const commands{app, [](CLI::App&) {}};
  app.parse("set status.inUseArpEntries[0] 5");
  EXPECT_EQ(commands.run(*directory_, Filled::everything(), [] {}).text, "status.inUseArpEntries[0] = 5\n");
  EXPECT_EQ(commands.paths(), std::vector<std::string>{"status.inUseArpEntries[0]"});
}

}  // namespace
}  // namespace Apps::Attributes
