#include "dornl3/core/RbTreeMap.h"

#include "dornl3/platform/siblings/FapId.h"
#include "tests/core/LeakCheck.h"
#include "tests/core/MapScript.h"

#include <vector>

using Hardware::Dorn::FapId;
using namespace Vek;

namespace {

using Numbers = Ordered<U32>;
using Texts = Ordered<String8>;

template <class Kind>
struct RbTreeMaps : LeakCheck {};
using RbTreeMapKinds = testing::Types<Numbers, Texts>;
TYPED_TEST_SUITE(RbTreeMaps, RbTreeMapKinds);

TYPED_TEST(RbTreeMaps, KeepTheirWordWhateverHappens) { expectMapKeepsItsWord<TypeParam>(200); }

template <class Map>
std::vector<typename Map::Key> walked(Map const& map) {
  std::vector<typename Map::Key> keys;
  for (typename Map::IteratorConst it(&map); it; ++it) keys.push_back(it->key());
  return keys;
}

struct RbTreeMapOf : LeakCheck {};

TEST_F(RbTreeMapOf, NumbersIsWalkedByUnsignedValue) {
  Numbers::Map map;
  EXPECT_EQ(map.version(), 1U);
  for (U32 key : {0x80000000U, 1U, 0xffffffffU, 0U, 0x7fffffffU}) enter(map, key);
  EXPECT_EQ(walked(map), (std::vector<U32>{0, 1, 0x7fffffff, 0x80000000, 0xffffffff}));
}

TEST_F(RbTreeMapOf, AMemberThatDiesUnderAnIteratorMayTakeOutTheNextOne) {
  expectAMemberThatDiesUnderAnIteratorToTakeOutTheNextOne<Vek::RbTreeMap<Dying<Vek::RbElement<U32, U32>>, U32, U32>>(
      {1, 2, 3, 4});
}

template <class K>
void expectBookmark(K const& key, bool expected) {
  using Map = Vek::RbTreeMap<Vek::RbElement<K, U32>, K, U32>;
  Map map;
  EXPECT_FALSE(typename Map::IteratorConst(&map).hasBookmark());
  enter(map, key);
  EXPECT_EQ(typename Map::IteratorConst(&map).hasBookmark(), expected);
}

TEST_F(RbTreeMapOf, AnyKeyButTheDefaultIsABookmark) {
  expectBookmark<U32>(0, false);
  expectBookmark<U32>(2048, true);
  expectBookmark<FapId>(FapId(2048), false);
  expectBookmark<FapId>(FapId(0), true);
  EXPECT_FALSE(Numbers::Map::IteratorConst(nullptr));
}

}  // namespace
