// A session that holds every kind of record, broken off at every place: bound again, both ends are equal, and all that
// came, changed or went was told once.
#include "dornl3/generic/Digest.h"
#include "tests/attrlog/BareLog.h"
#include "tests/attrlog/LawScript.h"
#include "tests/core/AllocationCount.h"

namespace LogTest {
namespace {

struct Broken : LeakCheck {};

std::vector<Act> operator+(std::vector<Act> acts, std::vector<Act> const& more) {
  acts.insert(acts.end(), more.begin(), more.end());
  return acts;
}

std::vector<Act> steps(int count) {
  return std::vector<Act>(static_cast<std::size_t>(count), {Act::step, false, 0, 0});
}

// The last of three processes, which writes, and the one between, which hands on: cut from each other after every byte
// of what both say.
TEST_F(Broken, AnywhereInASessionOfEveryKindOfRecord) {
  auto const owners = [](Act::Kind kind, U32 key, U32 value = 0) { return Act{kind, false, key, value}; };
  auto const lasts = [](Act::Kind kind, U32 key, U32 value = 0) { return Act{kind, true, key, value}; };  // key odd
  Act const settle{Act::settle, false, 0, 0};
  auto const session = std::vector<Act>{{Act::size, false, 0, 3},
                                        {Act::broken, false, 0, 1},
                                        {Act::played, false, 0, 1},
                                        {Act::place, false, 1, 2},
                                        {Act::text, false, 2, 1},
                                        {Act::counts, false, 1, 1},
                                        {Act::counts, false, 2, 2},
                                        {Act::faps, false, 1, 1},
                                        {Act::wanted, false, 1, 1},
                                        {Act::notes, false, 1, 1},
                                        {Act::vlans, false, 1, 1},
                                        {Act::lid, false, 0, 0},
                                        {Act::lidOpen, false, 0, 0},
                                        {Act::shelf, false, 0, 0},
                                        {Act::drawer, false, 0, 2},
                                        {Act::shelf, false, 2, 0},
                                        settle,
                                        owners(Act::beat, 0),
                                        lasts(Act::text, 3, 1)} +
                       steps(60) +
                       std::vector<Act>{lasts(Act::text, 3, 2),   lasts(Act::size, 1, 9),   lasts(Act::countsDel, 1),
                                        lasts(Act::wantedDel, 1), lasts(Act::notes, 3, 3),  lasts(Act::shelfDel, 3),
                                        lasts(Act::shelf, 5),     lasts(Act::drawer, 5, 1), settle,
                                        owners(Act::text, 5)} +
                       steps(550) +
                       std::vector<Act>{owners(Act::text, 1, 2),
                                        owners(Act::notesDel, 1),
                                        owners(Act::wanted, 3),
                                        settle,
                                        owners(Act::countsDel, 2),
                                        owners(Act::wantedDel, 3),
                                        owners(Act::lidDel, 0),
                                        owners(Act::shelfDel, 0),
                                        lasts(Act::refused, 1),
                                        lasts(Act::takenBack, 1),
                                        settle};
  std::vector<Act> const boundAgain = {lasts(Act::cut, 1), owners(Act::size, 0, 1)};
  LawOptions const options{.pair = {.limits = {.outBytes = 90, .messageBytes = 30}, .capacity = 1, .slice = 1},
                           .access = Access::writable,
                           .joined = Joined::chain};
  bool isWhole = false;
  for (int bytes = 0; !isWhole; bytes += countsAllocations ? 1 : 5) {  // where sanitizers slow it down, every fifth
    LawScript script(options);
    isWhole = script.playOn(session, bytes) > 0;
    script.play(boundAgain);
    ASSERT_EQ(script.complaint(), "") << "cut after " << bytes << " bytes";
    ASSERT_EQ(script.wentTwice(), "") << "cut after " << bytes << " bytes";
  }
}

TEST_F(Broken, AtAnyWriteThatThrows) {
  for (bool const ownersBreaks : {true, false}) {
    bool hasThrown = true;
    for (int writes = 0; hasThrown; ++writes) {
      SCOPED_TRACE(std::to_string(writes) + (ownersBreaks ? " of the owner's" : " of the reader's"));
      auto const box = Toys::toyBoxFactory("box");
      box->shelvesIs("s")->drawersIs("d");
      box->countsIs(1, 1);
      auto const dir = Vek::make<Vek::Dir>();
      auto const mount = Vek::make<Mount>("box", *ToyBox::_fwkType(), Access::writable, dir);
      LogPair pair(
          {.slice = 20, .ownerWrites = ownersBreaks ? writes : -1, .readerWrites = ownersBreaks ? -1 : writes});
      pair.owner().exports().exportIs(box, Access::writable);
      pair.reader().mounts().mountIs(mount);
      auto const steps = [&] {
        for (int times = 0; times < 20; ++times) pair.step();
      };
      steps();
      box->countsIs(1, 2);
      box->shelvesDel("s");
      if (mount->state() == Vek::Dir::inStep) Vek::ptrCast<ToyBox>(mount->writableEntity())->wantedIs(3, true);
      steps();
      Connection& broken = ownersBreaks ? pair.owner() : pair.reader();
      hasThrown = broken.state() == Vek::NboAttrLog::dead;
      EXPECT_TRUE(!hasThrown || broken.closeReason() == "broken pipe");
      box->lidIs("lid");

      pair.owner().closeIs("over");
      pair.reader().closeIs("over");
      LogPair again;
      again.owner().exports().exportIs(box, Access::writable);
      again.reader().mounts().mountIs(mount);
      again.settle();
      EXPECT_EQ(Vek::digest(*box), Vek::digest(*mount->entity()));
      EXPECT_EQ(mount->state(), Vek::Dir::inStep);
    }
  }
}

}  // namespace
}  // namespace LogTest
