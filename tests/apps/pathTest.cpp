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
  std::pair<char const*, char const*> const cases[] = {
      {"status", "status"},
      {"status.\"numVrfs\"", "status.numVrfs"},
      {"status.inUseArpEntries[+0002]", "status.inUseArpEntries[2]"},
      {"auditStatus.auditInfo[kernel].table['ipv4 main'].perFapInfo[\"Fap0\"].totalEntriesFixed",
       "auditStatus.auditInfo[kernel].table['ipv4 main'].perFapInfo[Fap0].totalEntriesFixed"},
      {"auditStatus.auditDone['']", "auditStatus.auditDone['']"},
      {"auditStatus.auditInfo[None]", "auditStatus.auditInfo['None']"},
      {"aclRouteConfig.ipv4EgAclLabel[7].value", "aclRouteConfig.ipv4EgAclLabel[7].value"},
      {"auditStatus.auditInfo[kernel].parent.numAudits", "auditStatus.auditInfo[kernel].parent.numAudits"},
  };
  for (auto const& [typed, written] : cases) EXPECT_EQ(canonical(typed), written);
}

TEST_F(Path, IsRefusedWithWhatWouldFit) {
  std::string deep = "auditStatus.auditInfo[kernel]";
  for (int i = 0; i < 15; ++i) deep += ".parent.auditInfo[kernel]";
  EXPECT_EQ(canonical(deep + ".parent"), deep + ".parent") << "32 attributes";
  std::pair<std::string, char const*> const cases[] = {
      {"statusx", "There is no root entity 'statusx'; did you mean 'status'? There are: aclRouteConfig, "},
      {"status.numVrf", "status has no attribute 'numVrf'; did you mean 'numVrfs'? 'dornl3 types "},
      {"status.numVrfs.x", "status.numVrfs is a U32, which has no attributes."},
      {"status.numVrfs[3]", "status.numVrfs is no collection: leave out the key"},
      {"status.inUseArpEntries[0][0]", "expected . at column 25, found '[0]'"},
      {"status.inUseArpEntries.x", "is a collection: name one member, as status.inUseArpEntries[KEY]. The key "
                                   "is a Hardware::Dorn::FapId, such as 2048."},
      {"status.inUseArpEntries[x]", "The key of status.inUseArpEntries is a Hardware::Dorn::FapId, such as "
                                    "2048; 'x' is none: expected a whole number at column 0, found 'x'."},
      {"status.lemV4RouteStats.hostCount", "status.lemV4RouteStats is not there. Make it first: "},
      {"aclRouteConfig.ipv4EgAclLabel[8].value", "aclRouteConfig.ipv4EgAclLabel[8] is not there."},
      {"auditStatus.auditInfo[a b]", "expected ] at column 23"},
      {"", "'' is no path: "},
      {"\x1b[31m", "'\\x1b[31m' is no path: "},
      {deep + ".parent.auditInfo", "The path has more than 32 attributes."},
      {std::string(4097, 'a'), "The path is longer than 4096 bytes."},
      {std::string(4096, 'a'), "aaa'..."},
  };
  for (auto const& [path, says] : cases) {
    SCOPED_TRACE(path);
    EXPECT_THAT(refused(path), HasSubstr(says));
  }
}

}  // namespace
}  // namespace Apps::Attributes
