// What the schema files say of the types in them and no law over all types tells: defaults, limits, keys, their order.
#include "dornl3/schema/AclIntf.h"
#include "dornl3/schema/AuditStatus.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "dornl3/schema/Status.h"
#include "dornl3/text/ValueText.h"
#include "tests/core/LeakCheck.h"

#include <string>
#include <vector>

namespace {

using namespace Hardware::DornL3Unicast;
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

TEST_F(SchemaFacts, LimitsHoldForTextOnceItIsComplete) {
  std::pair<char const*, char const*> const cases[] = {
      {"'level0': 14, 'level1': 3, 'level5': 7", ""},
      {"'level0': 15", "LpmLevelBits::level0 < 0 or > 14 not allowed"},
      {"'level1': 2", "LpmLevelBits::level1 < 3 or > 7 not allowed"},
      {"'level5': 0, 'level3': 8", "LpmLevelBits::level3 < 3 or > 7 not allowed"},
      {"'level4': 259", ""},  // cut to 3
  };
  for (auto const& [attributes, expected] : cases) {
    std::string const text = "Value('Hardware::DornL3Unicast::LpmLevelBits', ** {" + std::string(attributes) + "})";
    std::string complaint;
    try {
      static_cast<void>(Vek::valueFromText<LpmLevelBits>(std::string_view(text)));
    } catch (Vek::RangeException const& exception) {
      complaint = exception.what();
    }
    EXPECT_EQ(complaint, expected) << attributes;
  }
}

}  // namespace
