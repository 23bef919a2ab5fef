// Barriers that are asked for while others wait: each tells of all that was written before it.
#include "tests/attrlog/LogPair.h"
#include "tests/frame/Toy.h"

namespace LogTest {
namespace {

TEST(BarrierLine, EachOfThemWaitsForWhatWasWrittenBeforeIt) {
  PairOptions narrow;
  narrow.limits.outBytes = narrow.limits.messageBytes = narrow.turnBytes = 1;
  LogPair pair{narrow};
  auto const toy = Toys::toyFactory("toy");
  auto const mount = Vek::NboAttrLog::mountOf<Toys::Toy>("toy", Access::writable);
  pair.owner().exports().exportIs(toy, Access::writable);
  pair.reader().mounts().mountIs(mount);
  pair.settle();
  pair.readerTransport().capacityIs(7);  // an answer comes before another record is through
  int answers = 0;
  for (Vek::U32 written = 1; written <= 500; ++written) {
    auto const replica = Vek::NboAttrLog::mountedWritable<Toys::Toy>(*mount);
    replica->sizeIs(written);
    replica->playedIs(written);
    replica->placeIs({1, static_cast<double>(written), "here"});
    if (written % 3 == 0) {
      mount->barrier([&answers, &toy, written](auto) {
        ++answers;
        EXPECT_GE(std::min({static_cast<double>(toy->size()), toy->played(), toy->place().y()}), written);
      });
    }
    pair.step();
  }
  pair.settle();
  EXPECT_EQ(answers, 500 / 3);
}

}  // namespace
}  // namespace LogTest
