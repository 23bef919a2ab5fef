#include "dornl3/platform/vek/Entity.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstddef>

namespace {

using Vek::Entity;

// Where a virtual operation stands in the table of its class: in the ABI of all our platforms, a pointer to it tells.
template <class Member>
std::ptrdiff_t slot(Member member) {
  return std::bit_cast<std::array<std::ptrdiff_t, 2>>(member)[0] / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(Entity, ItsAdapterIsSetBetweenTheNamesOfItsAttributesAndTheChangeOfItsParent) {
  std::ptrdiff_t const adapter = slot(&Entity::vekNotifieeAdapterIs);
  EXPECT_EQ(slot(&Entity::attributeString), adapter - 1);
  EXPECT_EQ(slot(&Entity::handleParent), adapter + 1);
}

}  // namespace
