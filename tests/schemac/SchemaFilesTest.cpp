// The four schema files of the house: what neither a list of attributes by number nor one of symbols shows of them.
#include "tests/schemac/Schemas.h"

#include <map>

namespace Schemac::Test {
namespace {

std::vector<File> houseFiles() {
  std::vector<File> files;
  for (std::string const& stem : houseStems()) files.push_back(houseFile(stem));
  return files;
}

TEST(SchemaFiles, PassTheCheckTogether) {
  Complaints all;
  for (std::string const& stem : houseStems()) {
    Complaints const found = readFile(sourceDirectory() / "dornl3/schema" / (stem + ".toml")).complaints;
    all.insert(all.end(), found.begin(), found.end());
  }
  Complaints const found = check(houseFiles());
  all.insert(all.end(), found.begin(), found.end());
  for (Complaint const& complaint : all) ADD_FAILURE() << toString(complaint);
}

TEST(SchemaFiles, StatusHas45Scalars14CollectionsAnd2Children) {
  File const file = houseFile("Status");
  std::map<Shape, int> count;
  for (Attribute const& a : file.find("Status")->attributes) ++count[a.shape];
  std::map<Shape, int> const expected = {
      {Shape::scalar, 45}, {Shape::ordered, 9}, {Shape::hashed, 5}, {Shape::child, 2}};
  EXPECT_EQ(count, expected);
}

TEST(SchemaFiles, IncrementersAreThoseOfTheRequestsAndTheirCounters) {
  std::string found;
  for (File const& file : houseFiles()) {
    for (Type const& type : file.types) {
      for (Attribute const& a : type.attributes) {
        if (a.increment) found += type.name + '.' + a.name + ' ';
      }
    }
  }
  EXPECT_EQ(found, "Request.statusRequestId Status.numBackupViaUpdates Status.numAradBackupViaUsed "
                   "Status.numPetraBackupViaUsed AuditRequest.requestId AuditRequest.statusClearRequestId "
                   "TableFapAuditInfo.totalEntriesFixed TableFapAuditInfo.totalUnreportedFixes AuditStatus.numAudits "
                   "AuditStatus.auditDoneId ");
}

}  // namespace
}  // namespace Schemac::Test
