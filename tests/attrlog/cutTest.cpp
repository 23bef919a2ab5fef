// A session that holds every kind of record, broken off at every place: bound again, both ends are equal, and all that
// came, changed or went was told once.
#include "dornl3/generic/Digest.h"
#include "tests/attrlog/BareLog.h"
#include "tests/attrlog/LawScript.h"
#include "tests/core/AllocationCount.h"

#include <set>
#include <stdexcept>

namespace LogTest {
namespace {

struct Broken : LeakCheck {};

std::vector<Act> filled() {
  return {
      {Act::size, false, 0, 3},    {Act::broken, false, 0, 1}, {Act::played, false, 0, 1}, {Act::place, false, 1, 2},
      {Act::text, false, 2, 1},    {Act::counts, false, 1, 1}, {Act::counts, false, 2, 2}, {Act::faps, false, 1, 1},
      {Act::wanted, false, 1, 1},  {Act::notes, false, 1, 1},  {Act::vlans, false, 1, 1},  {Act::lid, false, 0, 0},
      {Act::lidOpen, false, 0, 0}, {Act::shelf, false, 0, 0},  {Act::drawer, false, 0, 2}, {Act::shelf, false, 2, 0}};
}

std::vector<Act> operator+(std::vector<Act> acts, std::vector<Act> const& more) {
  acts.insert(acts.end(), more.begin(), more.end());
  return acts;
}

std::vector<Act> steps(int count) {
  return std::vector<Act>(static_cast<std::size_t>(count), {Act::step, false, 0, 0});
}

// The kinds of records in what an end has heard: of the connection c and the number; of an entity s and the sync mode,
// m and the kind of marker, otherwise + or - as it comes or goes, with ~ where its length is its own and # for a child.
std::set<std::string> kindsIn(std::string_view heard) {
  std::set<std::string> kinds;
  for (Record const& each : recordsIn(heard)) {
    std::string const number = std::to_string(each.attribute);
    if (each.isOfConnection) {
      kinds.insert('c' + number);
    } else if (each.attribute == Vek::NboAttrLog::syncModeRecord) {
      kinds.insert('s' + std::to_string(numberAt(each.payload, 0)));
    } else if (each.attribute == Vek::NboAttrLog::transactionRecord) {
      kinds.insert('m' + std::to_string(numberAt(each.payload, 4)));
    } else {
      std::string const size = each.isVariable ? "~" : each.payload.empty() ? "0" : "";
      kinds.insert((each.attribute < 0 ? '-' : '+') + size + (each.kind != 0 ? "#" : ""));
    }
  }
  return kinds;
}

// The last of three processes, which writes, and the one between, which hands on: cut from each other after every byte
// of what both say.
TEST_F(Broken, AnywhereInASessionOfEveryKindOfRecord) {
  auto const owners = [](Act::Kind kind, U32 key, U32 value = 0) { return Act{kind, false, key, value}; };
  auto const lasts = [](Act::Kind kind, U32 key, U32 value = 0) { return Act{kind, true, key, value}; };  // key odd
  Act const settle{Act::settle, false, 0, 0};
  auto const session = filled() + std::vector<Act>{settle, owners(Act::beat, 0), lasts(Act::text, 3, 1)} + steps(60) +
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
  LawOptions options;
  options.access = Access::writable;
  options.joined = Joined::chain;
  options.pair.limits.outBytes = 90;
  options.pair.limits.messageBytes = 30;
  options.pair.capacity = options.pair.slice = 1;
  options.pair.isRecorded = true;
  bool isWhole = false;
  for (int bytes = 0; !isWhole; bytes += countsAllocations ? 1 : 5) {  // where sanitizers slow it down, every fifth
    LawScript script(options);
    isWhole = script.playOn(session, bytes) > 0;
    if (isWhole) {
      EXPECT_EQ(kindsIn(script.lastLink().readerHeard),
                (std::set<std::string>{"c136", "c161", "c162", "c163", "c166", "s1", "s2", "m0", "m1", "m2", "+", "+~",
                                       "+~#", "-", "-~", "-0"}));
      EXPECT_EQ(kindsIn(script.lastLink().ownerHeard),
                (std::set<std::string>{"c160", "c163", "c164", "m1", "+", "+~", "+~#", "-", "-~"}));
    }
    script.play(boundAgain);
    ASSERT_EQ(script.complaint(), "") << "cut after " << bytes << " bytes";
    ASSERT_EQ(script.wentTwice(), "") << "cut after " << bytes << " bytes";
  }
}

// A stream that throws at one of its writes.
class Faulty final : public Vek::NboAttrLog::Transport {
 public:
  explicit Faulty(int writes) : left_(writes) {}
  std::size_t write(std::string_view bytes) override {
    if (left_-- == 0) throw std::runtime_error("broken pipe");
    return inner.write(bytes);
  }
  std::size_t read(char* into, std::size_t room) override { return inner.read(into, room); }
  [[nodiscard]] bool isEnded() const override { return inner.isEnded(); }

  MemoryTransport inner;

 private:
  int left_;
};

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
      World world;
      Faulty ends[] = {Faulty(ownersBreaks ? writes : -1), Faulty(ownersBreaks ? -1 : writes)};
      MemoryTransport::join(ends[0].inner, ends[1].inner);
      for (Faulty& end : ends) end.inner.sliceIs(20);
      auto const owner =
          Vek::make<Connection>(Connection::Settings{"owner", {}}, ends[0], world.clock(), world.random());
      auto const reader =
          Vek::make<Connection>(Connection::Settings{"reader", {}}, ends[1], world.clock(), world.random());
      owner->exports().exportIs(box, Access::writable);
      reader->mounts().mountIs(mount);
      auto const steps = [&] {
        for (int times = 0; times < 20; ++times) {
          for (auto const& end : {owner, reader}) end->writable(), end->readable();
        }
      };
      steps();
      box->countsIs(1, 2);
      box->shelvesDel("s");
      if (mount->state() == Vek::Dir::inStep) Vek::ptrCast<ToyBox>(mount->writableEntity())->wantedIs(3, true);
      steps();
      Connection& broken = ownersBreaks ? *owner : *reader;
      hasThrown = broken.state() == Vek::NboAttrLog::dead;
      EXPECT_TRUE(!hasThrown || broken.closeReason() == "broken pipe");
      box->lidIs("lid");

      owner->closeIs("over");
      reader->closeIs("over");
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
