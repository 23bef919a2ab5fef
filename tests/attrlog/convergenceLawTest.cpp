// Whatever the history, the buffers, the budget of a turn, the slices of the stream and the cuts: the replica ends as
// its owner is, and nobody was told of what had not changed.
#include "tests/attrlog/LawScript.h"
#include "tests/core/LeakCheck.h"
#include "tests/core/Property.h"

namespace LogTest {
namespace {

rc::Gen<Act> anAct(int replicaShare) {
  return rc::gen::map(rc::gen::tuple(rc::gen::inRange(0, Act::end + 6), rc::gen::inRange(0, 10), rc::gen::inRange(0, 6),
                                     rc::gen::inRange(0, 4)),
                      [replicaShare](std::tuple<int, int, int, int> const& t) {
                        int const kind = std::get<0>(t) < Act::end ? std::get<0>(t) : static_cast<int>(Act::step);
                        return Act{static_cast<Act::Kind>(kind), std::get<1>(t) < replicaShare,
                                   static_cast<Vek::U32>(std::get<2>(t)), static_cast<Vek::U32>(std::get<3>(t))};
                      });
}

// Of any size down to logs that hold one record and streams that take one byte.
LawOptions someOptions(Joined joined, Access access) {
  return {.pair = {.limits = {.outBytes = *rc::gen::element(1U, 40U, 90U, 300U, 65536U),
                              .messageBytes = *rc::gen::element(1U, 3U, 30U, 200U),
                              .entities = *rc::gen::element(5U, 7U, 65536U),
                              .marks = *rc::gen::element(0U, 1U, 1024U)},
                   .turnBytes = *rc::gen::element(1U, 50U, 400U, 65536U),
                   .capacity = *rc::gen::element<std::size_t>(1, 30, 200, 100000),
                   .slice = *rc::gen::element<std::size_t>(1, 7, 100000)},
          .access = access,
          .joined = joined};
}

// Leaves no more entities than every peer takes, over connections that may have ended for that.
std::vector<Act> const makeRoom = {{Act::shelfDel, false, 0, 0}, {Act::shelfDel, false, 2, 0},
                                   {Act::shelfDel, false, 4, 0}, {Act::lidDel, false, 0, 0},
                                   {Act::cut, false, 0, 0},      {Act::cut, false, 1, 0}};

void expectConvergence(Joined joined, Access access, int replicaShare, int cases) {
  expectLaw(cases, [=] {
    LawOptions const options = someOptions(joined, access);
    auto const acts = *rc::gen::container<std::vector<Act>>(anAct(replicaShare));
    LawScript script(options);
    script.play(acts);
    if (options.pair.limits.entities < 10) {
      script.play(makeRoom);
      script.play({makeRoom.begin(), makeRoom.begin() + 4});
    }
    std::string const complaint = script.complaint();
    if (!complaint.empty()) RC_FAIL(complaint);
  });
}

struct Convergence : LeakCheck {};

TEST_F(Convergence, OfOneWriter) { expectConvergence(Joined::pair, Access::readOnly, 2, 300); }
TEST_F(Convergence, OfWritersAtBothEnds) { expectConvergence(Joined::pair, Access::writable, 5, 300); }
TEST_F(Convergence, OfTwoReplicas) { expectConvergence(Joined::star, Access::readOnly, 2, 100); }
TEST_F(Convergence, OfTwoReplicasThatWrite) { expectConvergence(Joined::star, Access::writable, 5, 200); }
TEST_F(Convergence, OfAChain) { expectConvergence(Joined::chain, Access::readOnly, 2, 100); }
TEST_F(Convergence, OfAChainThatWrites) { expectConvergence(Joined::chain, Access::writable, 5, 200); }

// The smallest histories in which the law once failed.
TEST_F(Convergence, OfHistoriesThatOnceFailed) {
  using Acts = std::vector<Act>;
  Act const step{Act::step, false, 0, 0};
  Act const settle{Act::settle, false, 0, 0};
  Act const cut{Act::cut, true, 0, 0};
  auto const text = [](bool byReplica, Vek::U32 key, Vek::U32 value) { return Act{Act::text, byReplica, key, value}; };
  auto const ofLid = [](Act::Kind kind, bool byReplica) { return Act{kind, byReplica, byReplica ? 3U : 0U, 0}; };
  auto const expectLawOf = [](char const* what, LawOptions const& options, Acts const& acts) {
    LawScript script(options);
    script.play(acts);
    EXPECT_EQ(script.complaint(), "") << what;
  };
  auto const pair = [](Access access, Vek::U32 outBytes, Vek::U32 messageBytes, Vek::U32 turnBytes, std::size_t slice,
                       Joined joined = Joined::pair) {
    return LawOptions{
        {.limits = {.outBytes = outBytes, .messageBytes = messageBytes}, .turnBytes = turnBytes, .slice = slice},
        access,
        joined};
  };
  LawOptions const chain = pair(Access::writable, 40, 30, 50, 100000, Joined::chain);
  expectLawOf("a change behind a walk whose end is due to be told", pair(Access::readOnly, 300, 30, 400, 100000),
              {step, step, step, step, {Act::counts, false, 0, 0}});
  expectLawOf("a text that waits for one that comes in, and is then left", pair(Access::writable, 300, 30, 50, 7),
              {settle, text(false, 3, 0), step, text(true, 1, 0), text(false, 0, 0)});
  expectLawOf("a text that waits while others go on", pair(Access::writable, 40, 30, 65536, 1),
              {settle, text(false, 2, 0), step, text(true, 3, 1), {Act::size, true, 0, 1}, text(false, 3, 0)});
  expectLawOf("a text that changes while it is part-way out", pair(Access::readOnly, 90, 3, 400, 200),
              {settle, text(false, 1, 0), text(false, 0, 0)});
  expectLawOf("texts in pieces that cross", pair(Access::writable, 1, 1, 50, 1),
              {settle, text(true, 1, 0), text(false, 1, 1)});
  expectLawOf("a text in pieces that comes to a relay while that is out of step", chain,
              {settle, text(true, 3, 0), step, step, cut, step, step, settle, text(true, 3, 0)});
  expectLawOf("a child taken away below a relay that is out of step", chain,
              {ofLid(Act::lid, false), ofLid(Act::lidOpen, false), settle, ofLid(Act::lidDel, true), cut, step, step});
  LawOptions slow = pair(Access::writable, 1, 200, 1, 7);
  slow.pair.limits.marks = 0;
  slow.pair.capacity = 1;
  Act const shelf{Act::shelf, true, 4, 0};
  expectLawOf("a child that the owner walks before it has heard what it holds", slow,
              {settle,
               {Act::wanted, false, 0, 0},
               {Act::counts, false, 0, 0},
               {Act::size, false, 0, 1},
               shelf,
               {Act::size, true, 0, 1},
               {Act::drawer, true, 4, 1}});
  slow.pair = {.limits = {.outBytes = 90, .messageBytes = 3, .marks = 0}, .turnBytes = 400, .capacity = 200};
  expectLawOf("a child of one that is taken away and made again", slow,
              {{Act::shelf, false, 2, 0},
               settle,
               {Act::vlans, false, 0, 0},
               {Act::drawer, true, 2, 0},
               {Act::size, false, 0, 1},
               {Act::size, false, 0, 0},
               {Act::shelfDel, false, 2, 0},
               {Act::shelf, false, 2, 0}});
  slow = pair(Access::writable, 300, 30, 50, 1, Joined::chain);
  slow.pair.limits.marks = 1;
  expectLawOf("a child of one that a relay out of step has itself", slow,
              {settle,
               {Act::shelf, false, 0, 0},
               {Act::shelf, true, 0, 0},
               step,
               cut,
               {Act::shelf, true, 1, 0},
               {Act::drawer, true, 1, 0},
               settle});
  expectLawOf("a child that a relay out of step does not take", slow, {settle, {Act::shelf, true, 1, 0}, step, cut});
  slow.pair = {.limits = {.outBytes = 40, .messageBytes = 30, .marks = 1}, .turnBytes = 400, .capacity = 1, .slice = 1};
  expectLawOf("a child that is taken away there once more", slow,
              {ofLid(Act::lid, false), ofLid(Act::lidOpen, false), settle, ofLid(Act::lidDel, true), cut, step});
}

}  // namespace
}  // namespace LogTest
