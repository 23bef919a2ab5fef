#include "apps/kernel/NextHopTable.h"

#include "tests/apps/MessageBuilder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <set>

namespace Apps::Kernel {
namespace {

Path path(std::uint32_t link, char const* gateway = nullptr) {
  Path made;
  made.adjacency.link = link;
  if (gateway != nullptr) {
    EXPECT_TRUE(made.adjacency.gateway.set(familyOf(gateway), ip(gateway)));
  }
  return made;
}

TEST(NextHopTable, KeepsTheSamePathOnce) {
  NextHopTable table;
  std::uint32_t const first = table.pathOf(path(1, "10.0.0.1"));
  Path same = path(1, "10.0.0.1");
  same.flags = RTNH_F_DEAD;
  EXPECT_EQ(table.pathOf(same), first) << "its state is no part of it";
  EXPECT_NE(table.pathOf(path(2, "10.0.0.1")), first);
  EXPECT_NE(table.pathOf(path(1, "10.0.0.2")), first);
  EXPECT_NE(table.pathOf(path(1, "a00:1::")), first) << "same first bytes, another family";
  EXPECT_NE(table.pathOf(path(1)), first);
}

RC_GTEST_PROP(NextHopTable, GivesEqualSetsAndOnlyThemTheSameNumber, ()) {
  NextHopTable table;
  std::map<std::set<std::uint32_t>, std::uint32_t> model;
  auto const count = *rc::gen::inRange(0, 60);
  for (int i = 0; i < count; ++i) {
    auto const links = *rc::gen::container<std::vector<std::uint32_t>>(rc::gen::inRange(1U, 6U));
    std::vector<std::uint32_t> paths;
    for (std::uint32_t link : links) paths.push_back(table.pathOf(path(link)));
    std::set<std::uint32_t> const members(paths.begin(), paths.end());
    std::uint32_t const number = table.setOf(paths);
    if (members.empty()) {
      RC_ASSERT(number == NextHopTable::noSet);
      continue;
    }
    RC_ASSERT(model.try_emplace(members, number).first->second == number);
    RC_ASSERT(std::set<std::uint32_t>(table.set(number).begin(), table.set(number).end()) == members);
  }
  RC_ASSERT(table.setCount() == model.size());
}

TEST(AdjacencyTable, FindsEachOfManyAgain) {
  AdjacencyTable table;
  for (std::uint32_t i = 0; i < 5000; ++i) EXPECT_EQ(table.numberOf(Adjacency{i, {}}), i);
  for (std::uint32_t i = 0; i < 5000; ++i) EXPECT_EQ(table.numberOf(Adjacency{i, {}}), i);
  EXPECT_EQ(table.size(), 5000U);
}

}  // namespace
}  // namespace Apps::Kernel
