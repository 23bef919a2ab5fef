#include "core/RbTreeMap.h"

#include "platform/siblings/FapId.h"
#include "tests/core/LeakCheck.h"
#include "tests/core/MapScript.h"
#include "tests/core/SmallStack.h"

#include <cmath>
#include <functional>
#include <vector>

using Hardware::Dorn::FapId;
using Vek::make;
using Vek::Ptr;
using Vek::String8;
using Vek::U32;

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

template <class Map>
void enter(Map& map, typename Map::Key const& key, U32 value = 0) {
  map.newMember(make<typename Map::Member>(key, value));
}

template <class Map>
void takeOut(Map& map, typename Map::Key const& key) {
  map.deleteMember(Ptr<typename Map::Member>(map[key]));
}

struct RbTreeMapOf : LeakCheck {
  static void expectShallow(Numbers::Map const& map) {
    EXPECT_LT(map.verify(), 2 * std::log2(map.count() + 1.0)) << map.count();
  }
};

TEST_F(RbTreeMapOf, NothingIsInItsFirstVersion) {
  Numbers::Map const map;
  EXPECT_EQ(map.version(), 1U);
  EXPECT_EQ(map.count(), 0U);
  EXPECT_FALSE(Numbers::Map::IteratorConst(&map));
  EXPECT_FALSE(Numbers::Map::IteratorConst(&map, 7));
  EXPECT_FALSE(Numbers::Map::IteratorConst(nullptr));
}

TEST_F(RbTreeMapOf, NumbersIsWalkedByUnsignedValue) {
  Numbers::Map map;
  for (U32 key : {0x80000000U, 1U, 0xffffffffU, 0U, 0x7fffffffU}) enter(map, key);
  EXPECT_EQ(walked(map), (std::vector<U32>{0, 1, 0x7fffffff, 0x80000000, 0xffffffff}));
}

TEST_F(RbTreeMapOf, NumbersStaysShallowWhateverTheOrderOfItsKeys) {
  constexpr U32 count = 3000;
  struct Case {
    char const* order;
    U32 (*key)(U32);
  };
  for (Case const& c : {Case{"rising", [](U32 n) { return n; }}, Case{"falling", [](U32 n) { return count - n; }},
                        Case{"from both ends", [](U32 n) { return n % 2 == 0 ? n : 2 * count - n; }},
                        Case{"at random", [](U32 n) { return n * 0x9e3779b9; }}}) {
    SCOPED_TRACE(c.order);
    Numbers::Map map;
    for (U32 n = 0; n < count; ++n) {
      enter(map, c.key(n));
      if (n % 97 == 0) expectShallow(map);
    }
    for (U32 n = 0; n < count; ++n) {
      if (n % 8 != 0) takeOut(map, c.key(n));
      if (n % 97 == 0) expectShallow(map);
    }
    expectShallow(map);
  }
}

TEST_F(RbTreeMapOf, NumbersPutsANewMemberInThePlaceOfTheOldOne) {
  Numbers::Map map;
  for (U32 key : {1U, 2U, 3U}) enter(map, key);
  Ptr<Numbers::Member> const old = map[2];
  U32 const version = map.version();
  enter(map, 2, 20);
  EXPECT_EQ(map.count(), 3U);
  EXPECT_NE(map.version(), version);
  EXPECT_EQ(map[2]->value(), 20U);
  EXPECT_EQ(old->references(), 1U);
  map.verify();
}

TEST_F(RbTreeMapOf, AMemberThatLeftKeepsNoTies) {
  Numbers::Map map;
  for (U32 key = 0; key < 8; ++key) enter(map, key);
  for (U32 key = 0; key < 8; ++key) {
    Ptr<Numbers::Member> const left = map[key];
    if (key % 2 == 0) {
      takeOut(map, key);
    } else {
      enter(map, key);  // in its place
    }
    Numbers::Map another;
    another.newMember(left);
    EXPECT_EQ(another.verify(), 1U);
    EXPECT_FALSE(++Numbers::Map::Iterator(&another));
  }
  map.verify();
}

TEST_F(RbTreeMapOf, AnIteratorOnTheLastMemberEndsUnlessAGreaterKeyHasCome) {
  Numbers::Map map;
  for (U32 key : {1U, 2U}) enter(map, key);
  Numbers::Map::Iterator ends(&map, 2);
  Numbers::Map::Iterator goesOn = ends;
  takeOut(map, 2);
  ++ends;
  EXPECT_FALSE(ends);
  ++ends;
  EXPECT_FALSE(ends) << "and stays at the end";
  enter(map, 9);
  ++goesOn;
  ASSERT_TRUE(goesOn);
  EXPECT_EQ(goesOn->key(), 9U);
}

TEST_F(RbTreeMapOf, AnIteratorGoesOnBehindAMemberThatLeftWithAllItsNeighbours) {
  Numbers::Map map;
  for (U32 key = 0; key < 64; ++key) enter(map, key);
  Numbers::Map::Iterator it(&map, 32);
  for (U32 key = 10; key < 50; ++key) takeOut(map, key);
  EXPECT_EQ(it->references(), 1U) << "the iterator alone holds it";
  ++it;
  EXPECT_EQ(it->key(), 50U);
}

struct Dying : Vek::RbElement<U32, U32> {
  using RbElement::RbElement;
  ~Dying() override {
    if (atEnd) atEnd();
  }
  std::function<void()> atEnd;
};

TEST_F(RbTreeMapOf, AMemberThatDiesUnderAnIteratorMayTakeOutTheNextOne) {
  using Map = Vek::RbTreeMap<Dying, U32, U32>;
  Map map;
  for (U32 key : {1U, 2U, 3U, 4U}) enter(map, key);
  Map::Iterator it(&map);
  it->atEnd = [&map] { takeOut(map, 2); };
  takeOut(map, 1);
  ++it;
  ASSERT_EQ(it->key(), 2U) << "it was the next one when the step was taken";
  EXPECT_EQ(map[2], nullptr);
  ++it;
  ASSERT_TRUE(it);
  EXPECT_EQ(it->key(), 3U);
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
}

TEST_F(RbTreeMapOf, AMillionMembersGoOnASmallStack) {
  withSmallStack([] {
    Numbers::Map map;
    for (U32 n = 0; n < 1'000'000; ++n) enter(map, n);
    expectShallow(map);
  });
}

}  // namespace
