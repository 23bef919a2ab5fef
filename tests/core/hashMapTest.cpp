#include "dornl3/core/HashMap.h"

#include "tests/core/LeakCheck.h"
#include "tests/core/MapScript.h"
#include "tests/core/SmallStack.h"

#include <vector>

using namespace Vek;

namespace {

using Numbers = Hashed<U32>;
using Coarse = Hashed<CoarseKey>;
using Texts = Hashed<String8>;
using Children = Hashed<String8, ChildLike>;

// What a map makes for good on first use, its key operations, is no counted object.
template <class Kind>
struct HashMaps : LeakCheck {};
using HashMapKinds = testing::Types<Numbers, Coarse, Texts, Children>;
TYPED_TEST_SUITE(HashMaps, HashMapKinds);

TYPED_TEST(HashMaps, KeepTheirWordWhateverHappens) { expectMapKeepsItsWord<TypeParam>(150); }

struct HashMapOf : LeakCheck {};

TEST_F(HashMapOf, NumbersIsWalkedByReversedBits) {
  Numbers::Map map;
  for (U32 key : {0U, 1U, 2U, 3U}) enter(map, key);
  EXPECT_EQ(map.bits(), 4U);
  std::vector<int> buckets;
  std::vector<U32> keys;
  for (Numbers::Map::IteratorConst it(&map); it; ++it) {
    keys.push_back(it->key());
    buckets.push_back(it.bucket());
  }
  EXPECT_EQ(keys, (std::vector<U32>{0, 2, 1, 3}));
  EXPECT_EQ(buckets, (std::vector<int>{0, 4, 8, 12}));
  EXPECT_EQ(Numbers::Map::IteratorConst(&map, 2).bucket(), 4);
  EXPECT_EQ(Numbers::Map::IteratorConst(&map, 8).bucket(), 4) << "the member behind the place of an absent key";
  EXPECT_GE(Numbers::Map::IteratorConst(&map, 7).bucket(), 16) << "behind all";
  EXPECT_EQ(Numbers::Map::IteratorConst(nullptr).bucket(), -1);
}

using DyingMap = Vek::HashMap<Dying<Vek::HashElement<U32, U32>>, U32, U32>;

TEST_F(HashMapOf, AMemberThatDiesUnderAnIteratorMayTakeOutTheNextOne) {
  expectAMemberThatDiesUnderAnIteratorToTakeOutTheNextOne<DyingMap>({0, 32, 16, 48});
}

TEST_F(HashMapOf, AMemberThatDiesWhenItsMapIsEmptiedFindsItInOrderAndAnIteratorGoesNoFurther) {
  DyingMap map;
  std::vector<U32> left;
  for (U32 key : {0U, 16U, 1U, 2U}) {
    enter(map, key);
    map[key]->atEnd = [&map, &left] {
      map.verify();
      left.push_back(map.count());
    };
  }
  DyingMap::Iterator it(&map);
  map.emptyAllBuckets();
  EXPECT_EQ(left, (std::vector<U32>{2, 1, 0})) << "all but the one under the iterator";
  EXPECT_FALSE(++it);
}

TEST_F(HashMapOf, ChildrenCountsWritesByTheOperationThatLinksThem) {
  auto const& operations = Children::Map::vekVTable();
  auto const child = make<ChildLike>("a", 0U);
  auto const next = make<ChildLike>("b", 0U);
  operations.setNext(child.ptr(), next.ptr());
  EXPECT_EQ(child->writeCount(), 1U);
  EXPECT_EQ(next->references(), 2U);
  operations.setNext(child.ptr(), next.ptr());
  EXPECT_EQ(child->writeCount(), 2U) << "an unchanged link counts too";
  EXPECT_EQ(next->references(), 2U);
  operations.setNext(child.ptr(), nullptr);
  EXPECT_EQ(child->writeCount(), 3U);
  EXPECT_EQ(next->references(), 1U);
}

TEST_F(HashMapOf, ManyHasNoMoreMembersThanBucketsNorFewerThanHalfAndIsWalkedToItsEnd) {
  Numbers::Map map;
  for (U32 n = 0; n < 100'000; ++n) enter(map, n * 0x10001);
  EXPECT_LE(map.count(), U64{1} << map.bits());
  EXPECT_GE(map.count(), U64{1} << (map.bits() - 1));
  U32 walked = 0;
  for (Numbers::Map::IteratorConst it(&map); it; ++it) ++walked;
  EXPECT_EQ(walked, 100'000U);
}

TEST_F(HashMapOf, OneChainOf100000GoesOnASmallStack) {
  withSmallStack([] {
    Coarse::Map map;
    for (U32 n = 300'000; n > 0; n -= 3) enter(map, CoarseKey{n});  // from behind, so that each is entered at once
    U32 count = 0;
    for (Coarse::Map::IteratorConst it(&map); it; ++it) ++count;
    EXPECT_EQ(count, 100'000U);
  });
}

}  // namespace
