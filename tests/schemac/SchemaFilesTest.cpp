// The four schema files of the house against facts that stand here a second time: attribute numbers are for good.
#include "schemac/Names.h"
#include "tests/schemac/Schemas.h"

#include <algorithm>
#include <map>

namespace Schemac::Test {
namespace {

std::vector<File> houseFiles() {
  std::vector<File> files;
  for (std::string const& stem : houseStems()) files.push_back(houseFile(stem));
  return files;
}

struct Expected {
  char const* name;
  char kind;  // Entity or Value
  std::uint32_t last;
  char const* factory;
};

constexpr Expected allTypes[] = {
    {"Request", 'E', 258, "requestFactory"},
    {"RouteStats", 'V', 7, ""},
    {"SchanStats", 'V', 6, ""},
    {"JLpmStats", 'V', 12, ""},
    {"JLpmDetailStats", 'V', 5, ""},
    {"LpmStats", 'V', 5, ""},
    {"LpmDetailStats", 'V', 11, ""},
    {"PetraFecStats", 'V', 10, ""},
    {"FecStats", 'V', 11, ""},
    {"FecQuarantineStats", 'V', 8, ""},
    {"LemCmdsStats", 'V', 6, ""},
    {"LemRouteStats", 'E', 261, ""},
    {"InternalState", 'V', 3, ""},
    {"FecCountStats", 'V', 4, ""},
    {"Host6RouteStats", 'V', 3, ""},
    {"Host6RouteDetailStats", 'V', 13, ""},
    {"TimingMarkers", 'V', 17, ""},
    {"CmdRingStats", 'V', 7, ""},
    {"RestartHelperStats", 'V', 6, ""},
    {"Status", 'E', 318, "statusFactory"},
    {"AradVxlanRoutingStatus", 'E', 258, "aradVxlanRoutingStatusFactory"},
    {"RestartCompletionStatus", 'E', 258, "restartCompletionStatusFactory"},
    {"AuditRequest", 'E', 261, "auditRequestFactory"},
    {"TableFapAuditInfo", 'E', 263, ""},
    {"TableAuditInfo", 'E', 258, ""},
    {"ShadowAuditInfo", 'E', 258, ""},
    {"AuditStatus", 'E', 262, "auditStatusFactory"},
    {"LpmLevelBits", 'V', 7, ""},
    {"CliConfig", 'E', 261, "cliConfigFactory"},
    {"AclRoute::Ipv4EgressAclLabel", 'V', 2, ""},
    {"AclRoute::Config", 'E', 261, "configFactory"},
    {"AclRoute::Status", 'E', 261, "statusFactory"},
};

TEST(SchemaFiles, PassTheCheckTogether) {
  Complaints all;
  for (std::string const& stem : houseStems()) {
    Complaints const found = readFile(sourceDirectory() / "schema" / (stem + ".toml")).complaints;
    all.insert(all.end(), found.begin(), found.end());
  }
  Complaints const found = check(houseFiles());
  all.insert(all.end(), found.begin(), found.end());
  for (Complaint const& complaint : all) ADD_FAILURE() << toString(complaint);
}

TEST(SchemaFiles, HoldThe32TypesInDefinitionOrder) {
  auto expected = std::begin(allTypes);
  for (File const& file : houseFiles()) {
    for (Type const& type : file.types) {
      ASSERT_NE(expected, std::end(allTypes));
      EXPECT_EQ(fullName(file, type), std::string("Hardware::DornL3Unicast::") + expected->name);
      EXPECT_EQ(type.isEntity(), expected->kind == 'E') << type.name;
      EXPECT_EQ(type.attributes.front().number, expected->kind == 'E' ? 258u : 2u) << type.name;
      EXPECT_EQ(type.attributes.back().number, expected->last) << type.name;
      EXPECT_EQ(type.factory, expected->factory) << type.name;
      ++expected;
    }
  }
  EXPECT_EQ(expected, std::end(allTypes));
}

TEST(SchemaFiles, StatusHas45Scalars14CollectionsAnd2Children) {
  File const file = houseFile("Status");
  std::map<Shape, int> count;
  for (Attribute const& a : file.find("Status")->attributes) ++count[a.shape];
  std::map<Shape, int> const expected = {
      {Shape::scalar, 45}, {Shape::ordered, 9}, {Shape::hashed, 5}, {Shape::child, 2}};
  EXPECT_EQ(count, expected);
}

TEST(SchemaFiles, HaveNoRetiredNumberAndADocEverywhere) {
  for (File const& file : houseFiles()) {
    for (Type const& type : file.types) {
      for (Attribute const& a : type.attributes) {
        EXPECT_FALSE(a.retired()) << type.name << ' ' << a.number;
        EXPECT_FALSE(a.doc.empty()) << type.name << ' ' << a.name;
      }
    }
  }
}

TEST(SchemaFiles, IncrementersAreThoseOfTheRequestsAndTheirCounters) {
  std::vector<std::string> found;
  for (File const& file : houseFiles()) {
    for (Type const& type : file.types) {
      for (Attribute const& a : type.attributes) {
        if (a.increment) found.push_back(type.name + '.' + a.name);
      }
    }
  }
  std::vector<std::string> const expected = {"Request.statusRequestId",
                                             "Status.numBackupViaUpdates",
                                             "Status.numAradBackupViaUsed",
                                             "Status.numPetraBackupViaUsed",
                                             "AuditRequest.requestId",
                                             "AuditRequest.statusClearRequestId",
                                             "TableFapAuditInfo.totalEntriesFixed",
                                             "TableFapAuditInfo.totalUnreportedFixes",
                                             "AuditStatus.numAudits",
                                             "AuditStatus.auditDoneId"};
  EXPECT_EQ(found, expected);
}

TEST(SchemaFiles, LpmLevelBitsHasTheOnlyRanges) {
  File const file = houseFile("DornL3CliConfig");
  std::vector<Attribute> const& levels = file.find("LpmLevelBits")->attributes;
  ASSERT_EQ(levels.size(), 6u);
  for (Attribute const& level : levels) {
    bool const root = level.name == "level0";
    EXPECT_EQ(level.min, root ? 0 : 3) << level.name;
    EXPECT_EQ(level.max, root ? 14 : 7) << level.name;
    EXPECT_EQ(level.defaultValue, Literal{std::int64_t{root ? 0 : 3}}) << level.name;
  }
}

TEST(SchemaFiles, AclRouteConfigAndStatusDifferInNameAlone) {
  File const file = houseFile("AclIntf");
  std::vector<Attribute> const& config = file.find("Config")->attributes;
  std::vector<Attribute> const& status = file.find("Status")->attributes;
  ASSERT_EQ(config.size(), status.size());
  for (std::size_t i = 0; i < config.size(); ++i) {
    EXPECT_EQ(config[i].name, status[i].name);
    EXPECT_EQ(config[i].type, status[i].type);
    EXPECT_EQ(config[i].key, status[i].key);
  }
}

}  // namespace
}  // namespace Schemac::Test
