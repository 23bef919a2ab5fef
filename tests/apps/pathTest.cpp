// Paths that people and programs type, good and bad.
#include "tests/apps/AttributeTest.h"

namespace Apps::Attributes {
namespace {

using testing::HasSubstr;

class Path : public AttributeTest {
 protected:
  Path() {
    roots_.status->inUseArpEntriesIs(Hardware::Dorn::FapId(0), 5);
    roots_.auditStatus->auditInfoIs("kernel")->tableIs("ipv4 main")->perFapInfoIs("Fap0");
    roots_.auditStatus->auditDoneIs("a.b", true);
    roots_.aclRouteConfig->ipv4EgAclLabelIs(Bridging::VlanIdOrNone(7), {});
  }

  std::string canonical(std::string_view path) { return resolve(*directory_, path).path; }
  std::string refused(std::string_view path) {
    return refusal([&] { return resolve(*directory_, path); });
  }
};

TEST_F(Path, LeadsToEveryKindOfPlaceAndIsWrittenOneWay) {
  struct Case {
    char const* typed;
    char const* canonical;
  };
  for (Case const& c : {
           Case{"status", "status"},
           Case{"status.\"numVrfs\"", "status.numVrfs"},
           Case{"status.inUseArpEntries[+0002]", "status.inUseArpEntries[2]"},
           Case{"auditStatus.auditInfo[kernel].table['ipv4 main'].perFapInfo[\"Fap0\"].totalEntriesFixed",
                "auditStatus.auditInfo[kernel].table['ipv4 main'].perFapInfo[Fap0].totalEntriesFixed"},
           Case{"auditStatus.auditDone['']", "auditStatus.auditDone['']"},
           Case{"auditStatus.auditInfo[None]", "auditStatus.auditInfo['None']"},
           Case{"aclRouteConfig.ipv4EgAclLabel[7].value", "aclRouteConfig.ipv4EgAclLabel[7].value"},
           Case{"auditStatus.auditInfo[kernel].parent.numAudits", "auditStatus.auditInfo[kernel].parent.numAudits"},
       }) {
    EXPECT_EQ(canonical(c.typed), c.canonical);
  }
}

TEST_F(Path, IsRefusedWithWhatWouldFit) {
  struct Case {
    std::string path;
    char const* says;
  };
  std::string deep = "auditStatus.auditInfo[kernel]";
  for (int i = 0; i < 15; ++i) deep += ".parent.auditInfo[kernel]";
  EXPECT_EQ(canonical(deep + ".parent"), deep + ".parent") << "32 attributes";
  for (Case const& c : {
           Case{"statusx", "There is no root entity 'statusx'; did you mean 'status'? There are: aclRouteConfig, "},
           Case{"status.numVrf", "status has no attribute 'numVrf'; did you mean 'numVrfs'? 'dornl3 types "},
           Case{"status.numVrfs.x", "status.numVrfs is a U32, which has no attributes."},
           Case{"status.numVrfs[3]", "status.numVrfs is no collection: leave out the key"},
           Case{"status.inUseArpEntries[0][0]", "expected . at column 25, found '[0]'"},
           Case{"status.inUseArpEntries.x", "is a collection: name one member, as status.inUseArpEntries[KEY]. The key "
                                            "is a Hardware::Dorn::FapId, such as 2048."},
           Case{"status.inUseArpEntries[x]", "The key of status.inUseArpEntries is a Hardware::Dorn::FapId, such as "
                                             "2048; 'x' is none: expected a whole number at column 0, found 'x'."},
           Case{"status.lemV4RouteStats.hostCount", "status.lemV4RouteStats is not there. Make it first: "},
           Case{"aclRouteConfig.ipv4EgAclLabel[8].value", "aclRouteConfig.ipv4EgAclLabel[8] is not there."},
           Case{"auditStatus.auditInfo[a b]", "expected ] at column 23"},
           Case{"", "'' is no path: "},
           Case{"\x1b[31m", "'\\x1b[31m' is no path: "},
           Case{deep + ".parent.auditInfo", "The path has more than 32 attributes."},
           Case{std::string(4097, 'a'), "The path is longer than 4096 bytes."},
           Case{std::string(4096, 'a'), "aaa'..."},
       }) {
    SCOPED_TRACE(c.path);
    EXPECT_THAT(refused(c.path), HasSubstr(c.says));
  }
}

}  // namespace
}  // namespace Apps::Attributes
