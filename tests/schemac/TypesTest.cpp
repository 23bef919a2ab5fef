#include "schemac/Types.h"

#include "schemac/Literal.h"
#include "schemac/Suggest.h"
#include "tests/schemac/Schemas.h"

#include <limits>
#include <tuple>

namespace Schemac::Test {
namespace {

TEST(Types, WidthAndPassingOfTheHouseValues) {
  std::tuple<char const*, char const*, std::uint32_t, char const*> const table[] = {
      {"Status", "RouteStats", 48, "RouteStats const&"},
      {"Status", "LpmStats", 0, "LpmStats const&"},  // holds a string
      {"Status", "InternalState", 2, "InternalState"},
      {"AclIntf", "Kiln::Fapmask", 16, "Kiln::Fapmask const&"},
      {"AclIntf", "U64", 8, "Vek::U64 const&"},
      {"AclIntf", "Vek::Seconds", 8, "double const&"},
      {"AclIntf", "Vek::String", 0, "Vek::String8"},
  };
  for (auto const& [stem, name, width, parameter] : table) {
    AttributeType const type = Types(houseFile(stem)).at(name);
    EXPECT_EQ(type.wireWidth, width) << name;
    EXPECT_EQ(type.parameter(), parameter) << name;
  }
  File const toy = good(acme + typed("value", "Toy", R"(
  { number = 2, name = "a", type = "U8", doc = "d" },
  { number = 3, retired = true },
  { number = 4, name = "b", type = "U8", doc = "d" },)"));
  EXPECT_EQ(Types(toy).at("Toy").wireWidth, 2U);
  EXPECT_THROW((void)Types(houseFile("AclIntf")).at("RouteStats"), std::out_of_range);  // of another file
}

TEST(SchemaFiles, KeepTheirOrderAndHaveIncrementersForTheRequestsAndTheirCounters) {
  File const status = houseFile("Status");
  EXPECT_EQ(status.types[0].name + status.types[1].name, "RequestRouteStats") << "an entity, and a value behind it";
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

TEST(Literal, IsCppThatReadsBackTheSame) {
  EXPECT_EQ(cppLiteral(true), "true");
  EXPECT_EQ(cppLiteral(std::int64_t{3}), "3");
  EXPECT_EQ(cppLiteral(2.0), "2.0");
  EXPECT_EQ(cppLiteral(0.1), "0.1");
  EXPECT_EQ(cppLiteral(1e300), "1e+300");
  EXPECT_EQ(cppLiteral(std::string("say \"no\\\"\n\xc3\xa9?")), R"("say \042no\134\042\012\303\251\077")");
}

TEST(Suggest, OnlyWhatIsNear) {
  EXPECT_EQ(didYouMean("incremnt", {"number", "increment"}), "; did you mean 'increment'?");
  EXPECT_EQ(didYouMean("colour", {"number", "increment"}), "");
  EXPECT_EQ(didYouMean(std::string(100000, 'x'), {"increment"}), "");
}

}  // namespace
}  // namespace Schemac::Test
