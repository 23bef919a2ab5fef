// The digest of an entity: equal for equal state however it came to be, another for any difference.
#include "dornl3/generic/Digest.h"

#include "dornl3/platform/vek/Builtin.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <set>
#include <vector>

namespace {

using namespace Toys;
using Vek::digest;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class Digest : public LeakCheck {};

Vek::Ptr<ToyBox> filledBox() {
  auto const box = toyBoxFactory("box");
  for (Vek::U32 key : {1U, 2U, 3U}) {
    box->countsIs(key, 10 * key);
    box->wantedIs(key, key % 2 == 0);
  }
  box->lidIs("top");
  box->shelvesIs("low")->drawersIs("left");
  return box;
}

TEST_F(Digest, IsTheSameWhateverTheHistory) {
  auto const box = filledBox();
  auto const other = toyBoxFactory("another name");
  other->shelvesIs("high");
  other->shelvesIs("low")->drawersIs("left");
  other->shelvesDel("high");
  other->lidIs("bottom");
  other->lidIs("top");
  for (Vek::U32 key = 500; key > 0; --key) {
    other->wantedIs(key, key % 2 == 0);
    other->countsIs(key, 10 * key);
  }
  for (Vek::U32 key = 500; key > 3; --key) {
    other->wantedDel(key);
    other->countsDel(key);
  }
  EXPECT_EQ(digest(*box), digest(*other));
  EXPECT_EQ(digest(*box), digest(*box)) << "reading does not change it";
}

TEST_F(Digest, IsAnotherAfterEveryKindOfChange) {
  std::vector<std::function<void(ToyBox&)>> const changes{
      [](ToyBox&) {},
      [](ToyBox& box) { box.countsIs(2, 21); },
      [](ToyBox& box) { box.countsIs(4, 0); },
      [](ToyBox& box) { box.countsDel(2); },
      [](ToyBox& box) { box.countsDel(2), box.countsIs(5, 20); },
      [](ToyBox& box) { box.countsIs(1, 20), box.countsIs(2, 10); },
      [](ToyBox& box) { box.wantedIs(1, true); },
      [](ToyBox& box) { box.wantedDel(2); },
      [](ToyBox& box) { box.lid()->openIs(!box.lid()->open()); },
      [](ToyBox& box) { box.lidIs("bottom"); },
      [](ToyBox& box) { box.lidIs(std::string_view("top\0", 4)); },
      [](ToyBox& box) { box.lidDel(); },
      [](ToyBox& box) { box.shelvesIs("high"); },
      [](ToyBox& box) { box.shelvesDel("low"); },
      [](ToyBox& box) { box.shelvesDel("low"), box.shelvesIs("LOW")->drawersIs("left"); },
      [](ToyBox& box) { box.shelves("low")->drawersIs("right"); },
  };
  std::set<Vek::U64> digests;
  for (auto const& change : changes) {
    auto const box = filledBox();
    change(*box);
    EXPECT_TRUE(digests.insert(digest(*box)).second) << "change " << digests.size();
  }
}

TEST_F(Digest, TellsEmptyEntitiesOfTwoTypesApart) { EXPECT_NE(digest(*toyFactory("x")), digest(*toyBoxFactory("x"))); }

TEST_F(Digest, TakesAllNaNAndBothZerosForOneInRecordsToo) {
  auto const with = [](double played, ToyPoint const& place) {
    auto const toy = toyFactory("toy");
    toy->playedIs(played);
    toy->placeIs(place);
    return digest(*toy);
  };
  EXPECT_EQ(with(nan, ToyPoint(1, nan, "l")), with(-nan, ToyPoint(1, -std::nan("7"), "l")));
  EXPECT_EQ(with(0.0, ToyPoint(1, -0.0, "l")), with(-0.0, ToyPoint(1, 0.0, "l")));
  EXPECT_NE(with(0.0, ToyPoint(1, 2, "l")), with(1e-300, ToyPoint(1, 2, "l")));
  EXPECT_NE(with(0.0, ToyPoint(1, 0.1 + 0.2, "l")), with(0.0, ToyPoint(1, 0.3, "l")));
}

}  // namespace
