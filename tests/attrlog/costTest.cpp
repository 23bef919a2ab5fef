// What a change costs that everybody has to pay for: no memory in step, one record for a burst where the log is short.
#include "tests/attrlog/LogPair.h"
#include "tests/core/AllocationCount.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"

namespace LogTest {
namespace {

struct CostTest : LeakCheck {
  LogPair pair;
  Vek::Ptr<Toys::ToyBox> box = Toys::toyBoxFactory("box");
  Vek::Ptr<Toys::Toy> toy = Toys::toyFactory("toy");
  Mounted<Toys::ToyBox> mountedBox{pair, box, Access::readOnly};
  Mounted<Toys::Toy> mountedToy{pair, toy, Access::readOnly};
};

TEST_F(CostTest, ChangeInStepAllocatesNothingFromTheSetterToTheReplica) {
  auto const changeAll = [this](Vek::U32 value) {
    toy->sizeIs(value);
    toy->brokenIs(value % 2 == 0);
    toy->placeIs({value, 0.5, {}});
    box->countsIs(1, value);
    box->wantedIs(7, value % 2 == 0);
    for (int i = 0; i < 4; ++i) pair.step();
  };
  changeAll(1);
  changeAll(2);
  int const before = allocationCount();
  for (Vek::U32 value = 3; value < 1000; ++value) changeAll(value);
  EXPECT_EQ(allocationCount(), before);
  EXPECT_EQ(mountedToy.replica()->size(), 999U);
}

TEST_F(CostTest, BurstWhileTheLogIsShortCostsOneRecordOfTheLastValue) {
  pair.ownerTransport().capacityIs(0);
  while (pair.owner().out()->hasSufficientBuffer()) toy->sizeInc(1);
  auto const records = pair.owner().out()->records();
  for (Vek::U32 value = 0; value < 1'000'000; ++value) toy->sizeIs(value);
  EXPECT_EQ(pair.owner().out()->records(), records);
  pair.ownerTransport().capacityIs(std::numeric_limits<std::size_t>::max());
  pair.settle();
  EXPECT_EQ(pair.owner().out()->records(), records + 1);
  EXPECT_EQ(mountedToy.replica()->size(), 999'999U);
}

}  // namespace
}  // namespace LogTest
