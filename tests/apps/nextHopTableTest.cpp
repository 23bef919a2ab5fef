#include "apps/kernel/NextHopTable.h"

#include "tests/apps/MessageBuilder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <set>

namespace Apps::Kernel {
namespace {

Path path(std::uint32_t link, char const* gateway = "10.0.0.1") {
  Path made;
  made.adjacency.link = link;
  EXPECT_TRUE(made.adjacency.gateway.set(familyOf(gateway), ip(gateway)));
  return made;
}

TEST(NextHopTable, FindsEachOfManyPathsAgainAndTellsThemApart) {
  NextHopTable table;
  for (int round = 0; round < 2; ++round) {
    for (std::uint32_t i = 0; i < 3000; ++i) EXPECT_EQ(table.pathOf(path(i)), i) << round;
  }
  EXPECT_EQ(table.pathOf(path(1, "a00:1::")), 3000U) << "same first bytes, another family";
}

RC_GTEST_PROP(NextHopTable, GivesEqualSetsAndOnlyThemTheSameNumber, ()) {
  NextHopTable table;
  std::map<std::set<std::uint32_t>, std::uint32_t> model{{{}, NextHopTable::noSet}};
  for (auto& paths : *rc::gen::container<std::vector<std::vector<std::uint32_t>>>(
           rc::gen::container<std::vector<std::uint32_t>>(rc::gen::inRange(0U, 5U)))) {
    std::set<std::uint32_t> const members(paths.begin(), paths.end());
    std::uint32_t const number = table.setOf(paths);
    RC_ASSERT(model.try_emplace(members, number).first->second == number);
    if (number == NextHopTable::noSet) continue;
    RC_ASSERT(std::set<std::uint32_t>(table.set(number).begin(), table.set(number).end()) == members);
  }
  RC_ASSERT(table.setCount() == model.size() - 1);
}

}  // namespace
}  // namespace Apps::Kernel
