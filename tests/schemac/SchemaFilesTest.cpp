// The four schema files of the house: what neither a list of attributes by number nor one of symbols shows of them.
#include "tests/schemac/Schemas.h"

#include <map>

namespace Schemac::Test {
namespace {

TEST(SchemaFiles, StatusHas45Scalars14CollectionsAnd2Children) {
  File const file = houseFile("Status");
  std::map<Shape, int> count;
  for (Attribute const& a : file.find("Status")->attributes) ++count[a.shape];
  std::map<Shape, int> const expected = {
      {Shape::scalar, 45}, {Shape::ordered, 9}, {Shape::hashed, 5}, {Shape::child, 2}};
  EXPECT_EQ(count, expected);
  EXPECT_EQ(file.types[0].name + ' ' + file.types[1].name, "Request RouteStats");  // an entity, and a value behind it
}

TEST(SchemaFiles, IncrementersAreThoseOfTheRequestsAndTheirCounters) {
  std::string found;
  for (std::string const& stem : houseStems()) {
    for (Type const& type : houseFile(stem).types) {
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
